#pragma once

#include "new_text_writer.h"
#include "text/utf8_text.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace pluvo::docx {

/// Carries an edit over to the contents of a paragraph: text, characters that are elements, and formulas.
/// Each is told with the position of its first character.
class InlineWriter {
 public:
  InlineWriter(EditedPart& part, OpenElements& opens, RunWriter& runs, NewTextWriter& newText)
      : part_(part), opens_(opens), runs_(runs), newText_(newText) {}

  void beginParagraph() { textProperties_ = {}; }
  void text(Position from, const TextElement& element);
  void character(Position at, char16_t unit, Extent extent, Name name);
  void formula(Position at, const Formula& formula);

 private:
  void carry(Position from, const TextElement& element, const Step& step);
  std::size_t carryBytes(const TextElement& element, std::size_t place, const Step& step);
  void highlight(const Formula& formula, std::uint8_t colour);

  EditedPart& part_;
  OpenElements& opens_;
  RunWriter& runs_;
  NewTextWriter& newText_;
  std::string_view textProperties_;               ///< of the last run with text in the paragraph
  text::Utf8Walk walk_{text::Utf8Text::Bytes()};  ///< through the bytes of the element at hand
  std::u16string units_;                          ///< of the element at hand, where its bytes were not enough
  HighlightedProperties highlighted_{withHighlight};
};

}  // namespace pluvo::docx
