#include "paragraph_counter.h"

namespace pluvo::runs {

std::int32_t ParagraphCounter::numberAt(word::Document& document, std::int32_t position) {
  // With the character at the position, so that the position at a paragraph's very beginning counts as in it.
  const auto range = document.rangeIn(story_, position_, position);
  range->MoveEnd(word::wdCharacter, 1);
  number_ += range->Paragraphs().Count() - 1;
  position_ = position;
  return number_;
}

void ParagraphCounter::resumeAt(std::int32_t position, std::int32_t number) {
  position_ = position;
  number_ = number;
}

}  // namespace pluvo::runs
