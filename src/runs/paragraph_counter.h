#pragma once

#include "word/word_processor.h"

#include <cstdint>

namespace pluvo::runs {

/// Numbers the paragraphs of a story as they were before it was edited. Positions must only go forward; a
/// whole pass reads the story once. Edits lie between the position numbered last and the one given to
/// resumeAt.
class ParagraphCounter {
 public:
  /// Of the story of that number, see word::Document.
  explicit ParagraphCounter(std::int32_t story = 0) : story_(story) {}

  /// The number of the paragraph that holds the position, from 1.
  std::int32_t numberAt(word::Document& document, std::int32_t position);

  /// The text after the edit's end now has this position, and this number.
  void resumeAt(std::int32_t position, std::int32_t number);

 private:
  std::int32_t story_;
  std::int32_t position_ = 0;
  std::int32_t number_ = 1;
};

}  // namespace pluvo::runs
