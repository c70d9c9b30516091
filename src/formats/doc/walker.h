#pragma once

#include "headers.h"
#include "looks.h"
#include "text/positions.h"
#include "word_file.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::doc {

/// The end of a paragraph.
enum class Mark : std::uint8_t { paragraph, cell, row, section };

/// Follows a walk over a text.
class Events {
 public:
  virtual ~Events() = default;
  /// Characters of one look, as the file has them, of the paragraph at hand.
  virtual void text(text::Position at, std::u16string_view units, const CharacterLook& look) = 0;
  /// The paragraph ends, in a table of some depth; 0 outside tables.
  virtual void mark(text::Position at, Mark mark, std::int32_t depth, const CharacterLook& look) = 0;
};

/// A character that begins, separates or ends a field, and belongs to others of that field.
struct FieldMark {
  text::Position at = 0;
  char16_t unit = 0;
};

/// Goes over texts of a document paragraph by paragraph, through the pieces they are made of.
class Walker {
 public:
  explicit Walker(const Text& text);

  /// Tells of [from, to) among all texts of the document.
  void walk(text::Position from, text::Position to, Events& events);

  /// Of the paragraph at hand.
  const ParagraphLook& paragraph() const { return paragraph_; }

  /// The first character of [from, to) that ends a paragraph; `to` where there is none.
  text::Position nextMark(text::Position from, text::Position to) const;

  /// Whether a section break may be deleted with its section's headers and footers.
  bool mayLoseSection(text::Position at) const { return headers_.mayGo(at); }

  /// The marks of whole fields there. Throws DocumentError: damaged for fields in each other too deep.
  std::vector<FieldMark> fieldMarks(text::Position from, text::Position to);

 private:
  bool endsSection(text::Position at) const;
  void readParagraphLook(text::Position at);
  CharacterLook lookAt(const Piece& piece, text::Position at);
  void decode(const Piece& piece, text::Position from, text::Position to);
  void tell(text::Position from, text::Position to, Events& events);
  void tellMark(text::Position at, Events& events);
  char16_t unitAt(text::Position at) const;

  template <class Visit>
  void forEachControl(text::Position from, text::Position to, Visit visit) const;

  const Text& text_;
  Headers headers_;
  std::vector<text::Position> sectionMarks_;
  FormattedPages::Run run_;           ///< of the characters asked for last
  FormattedPages::Run paragraphRun_;  ///< of the paragraph asked for last
  FormattedPages::Place characterPlace_;
  FormattedPages::Place paragraphPlace_;
  ParagraphLook paragraph_;
  std::uint16_t paragraphPrm_ = 0;
  bool hasParagraph_ = false;
  std::u16string units_;
};

}  // namespace pluvo::doc
