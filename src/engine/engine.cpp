#include "engine/engine.h"

#include "errors/numbers.h"
#include "locator.h"
#include "operations.h"
#include "prepared_search.h"
#include "text_after.h"
#include "trail.h"

#include <algorithm>
#include <limits>
#include <optional>

namespace pluvo::engine {

using errors::Fault;
using errors::guarded;

namespace {

template <class Count>
Count oneMore(Count count) {
  if (count == std::numeric_limits<Count>::max()) throw errors::overflow();
  return ++count;
}

}  // namespace

/// The state that InitializeFind prepares and a pass works on.
struct Engine::State {
  State(word::Application& theApplication, Observer& theObserver)
      : application(theApplication), observer(theObserver) {}

  void processAllBlocks();
  bool findNext();
  bool goToNextStory();
  Observer::Decision confirm(const Block& block);
  std::optional<Fault> operate();
  void countSkipped();
  void moveSearchPoint(std::int32_t atLeast);

  word::Application& application;
  Observer& observer;
  PassResult result;
  Trail trail{observer, result};
  PreparedSearch search;
  WorkingRanges ranges;
  Locator locator{trail, application, search, ranges};
  Operations operations{trail, search, ranges};
  /// Of a pass that is made block by block, from its first change on.
  std::unique_ptr<word::Batch> undoStep;
  /// The view is as it was when this goes, with the pass.
  std::unique_ptr<word::Batch> view;
};

Engine::Engine(word::Application& application, Observer& observer)
    : state_(std::make_unique<State>(application, observer)) {}

Engine::~Engine() = default;

const PassResult& Engine::result() const { return state_->result; }
errors::Tag Engine::tag() const { return state_->trail.tag(); }

PassResult Engine::pass(const Request& request) {
  InitializeFind(request);
  ProcessAllBlocks();
  return result();
}

void Engine::InitializeFind(const Request& request) {
  constexpr errors::Tag kTag = u"cpf:27e";
  endPass();
  State& state = *state_;
  guarded(state.trail, kTag, [&] {
    state.ranges = {};  // a pass that cannot be prepared must not go on in the document of the one before
    state.result = {};
    state.search = PreparedSearch(state.trail, request);
    state.trail.enter(kTag);  // the texts are normalized under a tag of their own
    const auto document = state.application.ActiveDocument();
    const auto window = required(document).ActiveWindow();
    const auto view = required(window).View();
    state.view = required(view).keepFieldCodes();
    view->ShowFieldCodes(request.showFieldCodes);
    state.ranges.place(state.application, request.stories, request.startAtTop);
    state.observer.begins();
    if (state.ranges.story != 0) state.observer.enters(state.ranges.story);
  });
}

void Engine::ProcessAllBlocks() {
  const auto view = std::move(state_->view);
  guarded(state_->trail, u"cpf:27", [&] {
    const auto undoStep = state_->application.beginUndoStep();
    const auto edits = state_->search.request.confirmEach ? nullptr : state_->application.beginEdits(false);
    if (state_->ranges.placed()) state_->processAllBlocks();
  });
}

bool Engine::FindNextItem(bool selects) {
  State& state = *state_;
  // Ends with the pass, unless there is another block.
  std::unique_ptr<word::Batch> undoStep = std::move(state.undoStep);
  std::unique_ptr<word::Batch> view = std::move(state.view);
  const bool found = guarded(state.trail, u"cpf:27a", [&] {
    if (!state.ranges.placed()) return false;
    moveSelectionToTop(state.application);
    if (!state.findNext()) return false;
    if (state.observer.found(state.operations.block()) == PassObserver::Next::stop) return false;
    if (selects) required(state.ranges.block).Select();
    return true;
  });
  if (!found) return false;
  state.undoStep = std::move(undoStep);
  state.view = std::move(view);
  return true;
}

void Engine::MakeChanges() {
  State& state = *state_;
  guarded(state.trail, u"cpf:27c", [&] {
    if (!state.ranges.placed()) return;
    if (!state.undoStep) state.undoStep = state.application.beginUndoStep();
    const auto edits = state.application.beginEdits(true);
    const TextAfter after(state.application, state.search, state.ranges.story, required(state.ranges.begin),
                          state.operations.block().operated);
    const std::optional<Fault> refusal = state.operate();
    state.observer.operated(state.operations.block(), refusal ? &*refusal : nullptr);
    state.moveSearchPoint(after.start());
  });
}

void Engine::SkipChanges() {
  State& state = *state_;
  guarded(state.trail, u"cpf:27d", [&] {
    if (!state.ranges.placed()) return;
    state.countSkipped();
    state.observer.skipped(state.operations.block());
    state.moveSearchPoint(0);
  });
}

void Engine::endPass() {
  state_->undoStep.reset();
  state_->view.reset();
}

/// The search resumes after each block as it stands then, so that new text is not found again.
void Engine::State::processAllBlocks() {
  using Next = PassObserver::Next;
  using Decision = Observer::Decision;
  const bool confirmEach = search.request.confirmEach;
  moveSelectionToTop(application);
  while (findNext()) {
    const Block block = operations.block();
    if (observer.found(block) == Next::stop) return;
    const Decision decision = confirmEach ? confirm(block) : Decision::operate;
    if (decision == Decision::stop) return;
    const TextAfter after(application, search, ranges.story, block.whole,
                          decision == Decision::operate ? block.operated : nullptr);
    if (decision == Decision::skip) {
      countSkipped();
      if (observer.skipped(block) == Next::stop) return;
      locator.resumeAfterBlock();
    } else {
      const auto edits = confirmEach ? application.beginEdits(true) : nullptr;
      const std::optional<Fault> refusal = operate();
      if (observer.operated(block, refusal ? &*refusal : nullptr) == Next::stop) return;
      // Not every word processor lets the block's range grow with text inserted at its end.
      const std::int32_t operatedEnd = block.operated != nullptr ? block.operated->End() : 0;
      locator.resumeAfterBlock(std::max(after.start(), operatedEnd));
    }
    if (after.isNone() && !goToNextStory()) return;
  }
}

/// In one story after the other.
bool Engine::State::findNext() {
  while (!locator.next(observer, result)) {
    if (locator.isStopped() || !goToNextStory()) return false;
  }
  return true;
}

bool Engine::State::goToNextStory() {
  if (!ranges.placeInNext(application, search.request.stories)) return false;
  observer.enters(ranges.story);
  return true;
}

Observer::Decision Engine::State::confirm(const Block& block) {
  block.whole.Select();
  const Observer::Decision decision = observer.decide(block);
  moveSelectionToTop(application);
  return decision;
}

std::optional<Fault> Engine::State::operate() {
  const auto block = required(ranges.block).beginBlock();
  std::optional<Fault> refusal = operations.perform();
  result.operated = oneMore(result.operated);
  if (refusal) ++result.refused;
  return refusal;
}

void Engine::State::countSkipped() {
  const std::int32_t next = oneMore(result.skipped);
  result.skipped = search.request.liftLimits ? next : errors::narrow(next);
}

/// The next search starts after the block's beginning as it stands now, or at this position where that lies
/// later.
void Engine::State::moveSearchPoint(std::int32_t atLeast) {
  word::Range& begin = required(ranges.begin);
  const std::int32_t end = std::max(atLeast, begin.End());
  begin.Start(search.request.liftLimits ? end : errors::narrow(end));
}

}  // namespace pluvo::engine
