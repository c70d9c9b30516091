#include "pass_watcher.h"

#include "errors/fault.h"

#include <utility>

namespace pluvo::cli {

namespace {

word::Range& placeIn(const engine::Block& block, engine::LocationCode location) {
  switch (location) {
    case engine::kBeginning:
      return block.begin;
    case engine::kEnding:
      return block.end != nullptr ? *block.end : block.begin;
    case engine::kInsideText:
      return block.inside != nullptr ? *block.inside : block.whole;
    case engine::kSelection:
      break;
  }
  return block.whole;
}

}  // namespace

engine::PassObserver::Answer PassWatcher::found(const engine::Block& block) {
  ++outcome_.found;
  if (const auto& obstacle = file_.obstacle(); obstacle && request_.operation != engine::kNone) {
    outcome_.failure = {obstacle->problem(), obstacle->what()};
    return Answer::stop;
  }
  if (!looks()) return Answer::goOn;

  word::Range& place = placeIn(block, request_.location);
  const std::int32_t start = place.Start();
  const std::int32_t end = place.End();
  lengthBefore_ = end - start;
  current_ = {};
  current_.request = &request_;
  current_.paragraph = paragraphs_.numberAt(document_, start);
  current_.deleted = file_.stored().document()->model().isDeleted({start, end});
  // The question shows the block; the preview of an insertion shows where it goes.
  if (request_.operation == engine::kInsert && around_.interviewer == nullptr) {
    const std::int32_t where = request_.place == engine::kAfter ? end : start;
    current_.before = excerpt(where, where);
  } else {
    current_.before = excerpt(start, end);
  }
  paragraphBehind_ = paragraphs_.numberAt(document_, block.whole.End());
  return Answer::goOn;
}

engine::PassObserver::Answer PassWatcher::operated(const engine::Block& block, const errors::Fault* refusal) {
  if (refusal != nullptr) {
    ++refused_;
    if (!firstRefusal_) firstRefusal_ = failureFrom(*refusal);
    // From here on every change would be refused.
    if (refusal->number == errors::kOutOfMemory) {
      outcome_.failure = failureFrom(*refusal);
      return Answer::stop;
    }
  } else if (request_.operation != engine::kNone) {
    ++outcome_.operated;
  }
  if (looks()) leave(block);
  if (blocks_) {
    current_.refused = refusal != nullptr;
    if (refusal == nullptr && request_.operation != engine::kNone) {
      const auto [start, end] = changedSpan(placeIn(block, request_.location));
      current_.after = excerpt(start, end);
    }
    blocks_(current_);
  }
  return refusal != nullptr && !around_.plan.keepGoing ? Answer::stop : Answer::goOn;
}

engine::PassObserver::Answer PassWatcher::skipped(const engine::Block& block) {
  if (looks()) leave(block);
  ++outcome_.skipped;
  if (blocks_) {
    current_.skipped = true;
    blocks_(current_);
  }
  return Answer::goOn;
}

bool PassWatcher::looks() const { return blocks_ != nullptr || around_.interviewer != nullptr; }

void PassWatcher::leave(const engine::Block& block) {
  paragraphs_.resumeAt(block.whole.End(), paragraphBehind_);
}

/// What is new at the place: all of it, or what was inserted before or behind what was there.
std::pair<std::int32_t, std::int32_t> PassWatcher::changedSpan(word::Range& place) const {
  const std::int32_t start = place.Start();
  const std::int32_t end = place.End();
  if (request_.operation != engine::kInsert) return {start, end};
  if (request_.place == engine::kAfter) return {start + lengthBefore_, end};
  return {start, end - lengthBefore_};
}

Excerpt PassWatcher::excerpt(std::int32_t start, std::int32_t end) const {
  return excerptOf(document_, start, end);
}

}  // namespace pluvo::cli
