#include "pass.h"

#include <algorithm>

namespace pluvo::engine {

Block blockOf(const PreparedSearch& search, const WorkingRanges& ranges, const Operations& operations) {
  const bool operates = search.operation >= kInsert && search.operation <= kHighlight;
  return {required(ranges.block),
          required(ranges.begin),
          search.end.empty() ? nullptr : ranges.end.get(),
          search.inside.empty() ? nullptr : ranges.inside.get(),
          operates ? operations.operated().get() : nullptr,
          search.operation};
}

void Pass::run(bool confirmEach, PassObserver& observer) {
  using Answer = PassObserver::Answer;
  if (!ranges_.placed()) return;
  Locator locator(context_, application_, search_, ranges_);
  const Operations operations(context_, search_, ranges_);
  moveSelectionToTop(application_);
  while (locator.next(observer)) {
    const Block block = blockOf(search_, ranges_, operations);
    if (observer.found(block) == Answer::stop) return;
    const Decision decision = confirmEach ? confirm() : Decision::operate;
    if (decision == Decision::stop) return;
    const TextBehind behind(application_, search_, block.whole);
    if (decision == Decision::skip) {
      counts_.countSkipped();
      if (observer.skipped(block) == Answer::stop) return;
      locator.resumeBehindBlock();
    } else {
      const auto edits = confirmEach ? application_.beginEdits(true) : nullptr;
      const std::optional<errors::Fault> refusal = operations.perform();
      counts_.countOperated();
      if (observer.operated(block, refusal ? &*refusal : nullptr) == Answer::stop) return;
      resumeBehindOperation(operations, behind, locator);
    }
    if (behind.isNone()) return;
  }
}

Pass::Decision Pass::confirm() {
  required(ranges_.block).Select();
  const forms::Answer answer =
      boxes_.show(u"Perform Operation on Selected Text?", forms::Buttons::yesNoCancel, u"Confirm Operation");
  moveSelectionToTop(application_);
  switch (answer) {
    case forms::Answer::yes:
      return Decision::operate;
    case forms::Answer::no:
      return Decision::skip;
    default:
      return Decision::stop;
  }
}

/// Not every word processor lets the block's range grow with text inserted at its end.
void Pass::resumeBehindOperation(const Operations& operations, const TextBehind& behind, Locator& locator) {
  const std::shared_ptr<word::Range> operated = operations.operated();
  const bool operates = search_.operation >= kInsert && search_.operation <= kHighlight;
  locator.resumeBehindBlock(std::max(behind.start(), operates && operated ? operated->End() : 0));
}

}  // namespace pluvo::engine
