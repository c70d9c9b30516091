#pragma once

#include "locator.h"
#include "prepared_search.h"
#include "word/word_processor.h"

#include <cstdint>
#include <optional>

namespace pluvo::engine {

/// The text behind a block, before which the search must not resume once the block was operated on. A word
/// processor keeps some paragraph marks whatever is done to them, the last of the document always; a
/// beginning with a line end would be found there again and again. Other beginnings need no such care, and
/// cost nothing.
class TextBehind {
 public:
  TextBehind(word::Application& application, const PreparedSearch& search, word::Range& block)
      : application_(application) {
    if (search.begin.wholeHasLineEnd) length_ = documentEnd() - block.End();
  }

  bool isNone() const { return length_ == 0; }
  /// Where it begins now; 0 where that does not matter.
  std::int32_t start() const { return length_ ? documentEnd() - *length_ : 0; }

 private:
  std::int32_t documentEnd() const {
    const auto document = application_.ActiveDocument();
    const auto story = required(document).StoryRanges(word::wdMainTextStory);
    return required(story).End();
  }

  word::Application& application_;
  std::optional<std::int32_t> length_;
};

}  // namespace pluvo::engine
