#pragma once

#include "new_text_writer.h"

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
  void highlight(const Formula& formula, std::uint8_t colour);

  EditedPart& part_;
  OpenElements& opens_;
  RunWriter& runs_;
  NewTextWriter& newText_;
  std::string_view textProperties_;  ///< of the last run with text in the paragraph
  HighlightedProperties highlighted_{withHighlight};
};

}  // namespace pluvo::docx
