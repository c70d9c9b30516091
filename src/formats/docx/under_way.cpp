#include "under_way.h"

#include <algorithm>
#include <utility>

namespace pluvo::docx {

void UnderWay::wait(const Step& put, std::string runProperties, ParagraphStart start) {
  waiting_.push_back({put, std::move(runProperties), std::move(start), part_.deletion});
}

void UnderWay::place(const ParagraphStart& start) {
  for (const Waiting& waiting : waiting_) {
    opens_.holdLineBreaks(waiting.put.units);
    const std::string_view deletion = std::exchange(part_.deletion, waiting.deletion);
    const Markup& markup = opens_.markup();
    const std::vector<NewLine> lines = newLines(part_, markup, waiting.put, waiting.runProperties);
    if (other_ == Other::awaited && lines.size() > 1) other_ = Other::lost;
    const ParagraphStart& own = waiting.start.tag.empty() ? start : waiting.start;
    for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
      blocks_ += own.tag + withNewMark(part_, markup, own.properties, lines[i].markColour,
                                       lines[i].markDeleted, waiting.runProperties);
      blocks_ += content_ + lines[i].runs;
      blocks_ += markup.endTag("p");
      content_.clear();
      hasText_ = false;
    }
    content_ += lines.back().runs;
    hasText_ = hasText_ || !lines.back().runs.empty();
    part_.deletion = deletion;
  }
  waiting_.clear();
}

void UnderWay::placeBefore(const Tag& tableOrControl) {
  const auto last = std::find_if(waiting_.rbegin(), waiting_.rend(), [](const Waiting& waiting) {
    return waiting.put.units.back() == text::kParagraphMark;
  });
  std::vector<Waiting> others(last.base(), waiting_.end());
  waiting_.erase(last.base(), waiting_.end());
  if (!waiting_.empty()) place();
  waiting_ = std::move(others);
  if (hasText_ || blocks_.empty()) return;
  opens_.copyTo(tableOrControl.extent.begin);
  writeBlocks();
  opens_.back().kept = true;
}

void UnderWay::join(const OpenElement& paragraph) {
  hasText_ = hasText_ || paragraph.kept;
  hasBreak_ = hasBreak_ || paragraph.breaksLines;
}

void UnderWay::writeBlocks() {
  part_.output.text() += blocks_;
  blocks_.clear();
}

void UnderWay::writeContent() {
  if (other_ == Other::awaited) {
    // Elements around others than the body may be changed in front of it when they close.
    other_ = opens_.firstInParagraph() == 2 ? Other::placed : Other::lost;
    joint_ = part_.output.text().size();
  }
  part_.output.take(content_);
  hasText_ = false;
  if (hasBreak_) opens_.allowLineBreaks();
  hasBreak_ = false;
}

void UnderWay::writeLastParagraph(Extent endTag) {
  OpenElement& container = opens_.back();
  if (!container.lost && empty()) return;
  place();
  opens_.expand(container);
  opens_.copyTo(endTag.begin);
  writeBlocks();
  part_.output.text() += plainStart().tag;
  writeContent();
  part_.output.text() += opens_.markup().endTag("p");
}

}  // namespace pluvo::docx
