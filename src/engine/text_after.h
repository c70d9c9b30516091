#pragma once

#include "base/text.h"
#include "locator.h"
#include "prepared_search.h"
#include "word/word_processor.h"

#include <cstdint>
#include <optional>

namespace pluvo::engine {

/// The text after a block, or after its beginning, before which the search must not resume once the block was
/// operated on. A word processor keeps some text whatever is done to it, and a beginning there would be found
/// again and again. It keeps the last paragraph mark of a story, and all deleted text where changes are
/// tracked. Where neither can be it costs nothing.
class TextAfter {
 public:
  /// The operation acts on the other range; on none where it is null.
  TextAfter(word::Application& application, const PreparedSearch& search, std::int32_t story,
            word::Range& range, word::Range* operated)
      : application_(application), story_(story), isAlwaysKept_(search.begin.wholeHasLineEnd) {
    const std::int16_t operation = search.request.operation;
    const bool deletes = operated != nullptr && (operation == kReplace || operation == kDelete);
    const bool mayStay = deletes && application.mayKeepDeletedText();
    if (!isAlwaysKept_ && !mayStay) return;
    const std::int32_t rangeEnd = range.End();
    end_ = storyEnd();
    if (mayStay) {
      const std::int32_t start = operated->Start();
      // Text put after the beginning is not found before it.
      if (!isAlwaysKept_ && start >= rangeEnd) return;
      expected_ = end_ - (operated->End() - start);
      if (operation == kReplace)
        expected_ += static_cast<std::int32_t>(base::withParagraphMarks(search.request.text).size());
    }
    length_ = end_ - rangeEnd;
  }

  bool isNone() const { return length_ == 0; }
  /// Where it begins now; 0 where that does not matter.
  std::int32_t start() const {
    if (!length_) return 0;
    const std::int32_t now = storyEnd();
    const bool isGone = !isAlwaysKept_ && now <= expected_;
    return isGone ? 0 : now - *length_;
  }

 private:
  std::int32_t storyEnd() const {
    const auto document = application_.ActiveDocument();
    return required(document).endOf(story_);
  }

  word::Application& application_;
  std::int32_t story_;
  bool isAlwaysKept_;
  std::int32_t end_ = 0;
  /// Where the story ends once all that should go has gone.
  std::int32_t expected_ = 0;
  std::optional<std::int32_t> length_;
};

}  // namespace pluvo::engine
