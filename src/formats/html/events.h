#pragma once

#include "style.h"
#include "tokens.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace pluvo::formats::html {

/// A character that is not one byte of ASCII, and the bytes that stand for it.
struct Character {
  enum class Kind : std::uint8_t {
    ordinary,
    paragraph,  ///< a line end where they count
    section,
    fieldBegin,
    fieldSeparator,
    fieldEnd,
  };
  Kind kind = Kind::ordinary;
  Extent bytes;
  std::array<char16_t, 2> units{};
  std::uint8_t count = 1;    ///< of units; more than two are all the first
  bool folds = false;        ///< a bare blank, which goes with another one beside it
  bool isInvalid = false;    ///< a byte that stands for nothing
  bool isOpenEnded = false;  ///< other bytes after it could make something else of it
  bool isBreak = false;      ///< blanks after it are no text

  char16_t unit(std::size_t i) const { return count == 2 ? units[i] : units[0]; }
};

/// An open block.
struct Block {
  Name name = Name::unknown;
  Extent tag;
  Extent tagName;
  std::int32_t inlineTop = -1;  ///< when it began
  std::size_t inlinesNumbered = 0;
  bool hasParagraph = false;  ///< ended in it
  bool hasBlock = false;      ///< began in it
  bool hidden = false;
  bool deleted = false;  ///< it lies in a deletion, and so do its paragraphs' marks
  bool preformatted = false;
  Style::Align align = Style::Align::start;
  bool rightToLeft = false;
  std::uint8_t listLevel = 0;
};

/// A stretch of text without a block's tag in it, which has come to its end.
struct Paragraph {
  std::size_t at = 0;      ///< where it ends
  bool hasMark = false;    ///< not where a section's end was its last character, nor where it holds no text
  bool isCell = false;     ///< the end of a cell that has no paragraph before it: a mark without text
  bool isOwned = false;    ///< the block is there for this paragraph alone: it exists without text, too
  bool endsBlock = false;  ///< it ends where the innermost block does
  bool isFirst = false;    ///< nothing stands before it in the innermost block
};

/// The kinds of text beside main text.
enum class Aside : std::uint8_t {
  markup,  ///< nothing that anybody reads
  comment,
  script,
  style,
  title,
  meta,
  content,  ///< of templates, maps and the like
  label,    ///< text that programs make anew
  footnotes,
  endnotes,
  comments,
  header,
  footer,
};

/// Takes the events of a walk, in the order of their bytes.
class Events {
 public:
  virtual ~Events() = default;
  /// Characters of one byte each, ASCII.
  virtual void text(Extent /*bytes*/) {}
  virtual void character(const Character& /*character*/) {}
  /// White space that stands for no character.
  virtual void gap(Extent /*bytes*/) {}
  /// A no-break space that holds an empty paragraph open.
  virtual void filler(Extent /*bytes*/) {}
  /// A start or end tag of an inline element; the walker knows the elements open after it.
  virtual void inlineTag(Extent /*bytes*/) {}
  virtual void aside(Aside /*kind*/, Extent /*bytes*/) {}
  /// Text and tags since the last block's tag are complete.
  virtual void paragraphEnds(const Paragraph& /*paragraph*/) {}
  virtual void blockBegins(const Block& /*block*/) {}
  /// The end tag is empty where it is left out.
  virtual void blockEnds(const Block& /*block*/, Extent /*endTag*/) {}
  /// An element that divides paragraphs and holds none.
  virtual void divides(Extent /*bytes*/) {}
  // Tables, from the first cell on.
  virtual void tableBegins(const Block& /*table*/, std::size_t /*firstCell*/) {}
  virtual void rowEnds() {}
  /// The end tag is empty where it is left out, and where text interrupts the table.
  virtual void tableEnds(Extent /*endTag*/, bool /*isWhole*/) {}
  virtual void end(std::size_t /*at*/) {}
};

}  // namespace pluvo::formats::html
