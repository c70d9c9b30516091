#pragma once

#include "charset.h"
#include "inline_stack.h"
#include "style_sheet.h"
#include "tokens.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

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
  /// What divides paragraphs and holds none.
  virtual void divides(Extent /*bytes*/) {}
  // Tables, from the first cell on.
  virtual void tableBegins(const Block& /*table*/, std::size_t /*firstCell*/) {}
  virtual void rowEnds() {}
  /// The end tag is empty where it is left out, and where text interrupts the table.
  virtual void tableEnds(Extent /*endTag*/, bool /*isWhole*/) {}
  virtual void end(std::size_t /*at*/) {}
};

/// What of a page is walked through.
struct Part {
  Extent bytes;
  StyleSheet* sheet = nullptr;  ///< of the page around it; its own where none is given
  bool isNote = false;          ///< a mark of its own stands in it, which is no text
  const std::vector<std::size_t>* strays =
      nullptr;  ///< marks of fields that are no text, by where they begin
};

/// Goes through a page, or a part of it.
class Walker {
 public:
  Walker(const Page& page, Events& events, const Part& part);

  void walk();

  std::string_view bytes() const { return bytes_; }
  const InlineStack& inlines() const { return inlines_; }
  const Block& block() const { return blocks_.back(); }
  const std::vector<Block>& blocks() const { return blocks_; }
  StyleSheet& sheet() { return sheet_; }
  const State& state() const { return state_; }
  bool isHidden() const { return state_.hidden || block().hidden || rowIsHidden(); }
  bool isPreformatted() const {
    return state_.blanks == State::Blanks::asAround ? block().preformatted
                                                    : state_.blanks == State::Blanks::count;
  }
  /// The look of the paragraph's mark: that of an element of Word's for it which ends the text at hand.
  const State& markState() const { return markState_; }
  bool isMarkHidden() const { return markState_.hidden || block().hidden || rowIsHidden(); }
  bool isMarkDeleted() const { return markState_.deleted || block().deleted; }
  bool isRaw() const { return isRaw_; }
  /// Between the tags of a table, within an element of raw text, or in one without an end.
  bool isLocked() const { return isRaw_ || isBetweenCells() || endsWithin_; }
  /// While a follower refers to inline elements of earlier paragraphs.
  void keepInlines(bool keep) { keepsInlines_ = keep; }

 private:
  /// A table, cell or caption that is open.
  struct Scope {
    Name name = Name::table;
    std::size_t block = 0;
    bool hasBegun = false;  ///< a table: it has cells
    bool rowHasCells = false;
    bool rowHidden = false;
    bool wasBroken = false;        ///< text stood between its cells
    bool endsInParagraph = false;  ///< a cell
  };

  void step(const Token& token);
  void startTag(const Token& token);
  void endTag(const Token& token);
  void comment(const Token& token);
  void declaration(const Token& token);

  // Text:
  void text(Extent bytes);
  void foldedText(Extent bytes);
  void keptText(Extent bytes);
  void rawText(Extent bytes);
  void reference(std::size_t& at, std::size_t end);
  void point(char32_t point, Extent bytes, bool isOpenEnded);
  void blank(Extent bytes);
  void decoded(std::size_t& at, std::size_t end);
  void put(const Character& character);
  void lineEnd(std::size_t& at, std::size_t end);
  void lineBreak(const Token& token, const Style& style);
  void beginParagraph();
  void endParagraph(std::size_t at, bool endsBlock);

  // Blocks:
  void openBlock(const Token& token, const Style& style, const Attributes& attributes);
  void rawBlock(const Token& token);
  void pushBlock(const Token& token, const Style& style, const Attributes& attributes);
  void popBlock();
  void closeBlock(std::size_t at, Extent endTag);
  void closeTo(std::size_t count, std::size_t at);
  bool closeNamed(Name name, const Token& token);
  void closeItem(Name name, std::size_t at);
  bool hasOpen(Name name) const { return counts_[static_cast<std::size_t>(name)] > 0; }
  std::size_t floor() const { return scopes_.empty() ? 0 : scopes_.back().block; }
  void finish();

  // Tables:
  bool isBetweenCells() const { return !scopes_.empty() && scopes_.back().name == Name::table; }
  bool rowIsHidden() const { return hiddenRows_ > 0; }
  void openTable(const Token& token, const Style& style, const Attributes& attributes);
  void tablePart(const Token& token, const Style& style, const Attributes& attributes);
  void endTablePart(const Token& token);
  void closeCell(std::size_t at, Extent endTag);
  void endRow();
  void closeTable(std::size_t at, Extent endTag);
  void interruptTable();
  bool hasTable() const { return tables_ > 0; }

  // Inline:
  void openInline(const Token& token, const Style& style, const Attributes& attributes);
  bool special(const Token& token, const Style& style);
  bool otherStory(const Token& token, const Style& style);
  void fieldMark(Character::Kind kind, char16_t unit, Extent bytes);
  void putMark(Character::Kind kind, char16_t unit, Extent bytes, std::uint8_t count = 1);
  void picture(const Token& token, const Attributes& attributes);
  void nothing(const Token& token);
  bool skipElement(const Token& token, bool withinParagraph, Extent& whole);
  Extent skipSelect(const Token& token);
  bool isFiller(const Token& token, Extent& filler) const;
  void applyState() { state_ = inlines_.state(); }
  std::string_view part(Extent extent) const { return bytes_.substr(extent.begin, extent.size()); }

  const Page& page_;
  std::string_view bytes_;
  Events& events_;
  Tokens tokens_;
  Part part_;
  StyleSheet own_;
  StyleSheet& sheet_;
  InlineStack inlines_;
  State state_;
  std::vector<Block> blocks_;
  std::array<std::uint16_t, static_cast<std::size_t>(Name::count)> counts_{};
  std::array<std::uint32_t, static_cast<std::size_t>(Name::count)> flattened_{};
  std::vector<Scope> scopes_;
  std::size_t tables_ = 0;
  std::size_t hiddenRows_ = 0;
  /// Elements of a name that have no end tag, by where they begin, so far as that is known.
  struct Unmatched {
    std::size_t to = 0;
    std::vector<std::size_t> begins;
  };
  std::array<Unmatched, static_cast<std::size_t>(Name::count)> unmatched_{};
  std::size_t conditionEnd_ = 0;  ///< of the comment that is walked as markup; 0 outside
  std::size_t outerEnd_ = 0;      ///< of the bytes around it
  bool lacksEndIf_ = false;       ///< there is none any more
  static constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);
  std::size_t endAt_ = kNowhere;  ///< where text after all others would go
  bool isOpen_ = false;           ///< a paragraph
  bool endedSection_ = false;     ///< since the last block's tag
  bool hadText_ = false;          ///< since the last block's tag
  bool folds_ = true;             ///< a blank here is no text
  State markState_;
  bool isRaw_ = false;
  bool endsWithin_ = false;  ///< a picture or raw text: nothing can be put after it
  bool keepsInlines_ = false;
  std::size_t lineFeedAt_ = static_cast<std::size_t>(-1);  ///< one that does not count
};

}  // namespace pluvo::formats::html
