#include "pass_watcher.h"

#include "errors/text.h"
#include "word/faults.h"

#include <utility>

namespace pluvo::cli {

using files::Problem;

namespace {

word::Range& placeIn(const engine::Block& block, Place place) {
  switch (place) {
    case Place::begin:
      return block.begin;
    case Place::end:
      return block.end != nullptr ? *block.end : block.begin;
    case Place::inside:
      return block.inside != nullptr ? *block.inside : block.whole;
    case Place::block:
      break;
  }
  return block.whole;
}

Problem problemOf(std::int32_t faultNumber) {
  switch (faultNumber) {
    case word::kProtectedSelection:
      return Problem::protection;
    case word::kNotAvailable:
      return Problem::unsupported;
    case word::kParameterOutOfRange:
      return Problem::encoding;
    default:
      return Problem::refused;
  }
}

}  // namespace

Failure failureFrom(const errors::Fault& fault) {
  return {problemOf(fault.number), errors::utf8(fault.description)};
}

engine::PassObserver::Answer PassWatcher::found(const engine::Block& block) {
  if (outcome_.found++ == 0 && changesInPlace()) {
    if (const auto obstacle = document_.obstacle()) {
      outcome_.failure = {obstacle->problem(), obstacle->what()};
      return Answer::stop;
    }
  }
  if (!looks()) return Answer::goOn;

  word::Range& place = placeIn(block, around_.request.place);
  const std::int32_t start = place.Start();
  const std::int32_t end = place.End();
  lengthBefore_ = end - start;
  current_ = {};
  current_.paragraph = paragraphs_.numberAt(*document_.document(), start);
  // The question shows the block; the preview of an insertion shows where it goes.
  if (around_.request.command == Command::insert && around_.interviewer == nullptr) {
    const std::int32_t where = around_.request.after ? end : start;
    current_.before = excerpt(where, where);
  } else {
    current_.before = excerpt(start, end);
  }
  paragraphBehind_ = paragraphs_.numberAt(*document_.document(), block.whole.End());
  return Answer::goOn;
}

engine::PassObserver::Answer PassWatcher::operated(const engine::Block& block, const errors::Fault* refusal) {
  const Request& request = around_.request;
  if (refusal != nullptr) {
    ++refused_;
    if (!firstRefusal_) firstRefusal_ = failureFrom(*refusal);
  } else if (request.command != Command::find) {
    ++outcome_.operated;
  }
  if (looks()) leave(block);
  if (around_.printer.wantsBlocks()) {
    current_.refused = refusal != nullptr;
    if (refusal == nullptr && request.command != Command::find) {
      const auto [start, end] = changedSpan(placeIn(block, request.place));
      current_.after = excerpt(start, end);
    }
    around_.printer.block(outcome_.path, current_);
  }
  return refusal != nullptr && !request.keepGoing ? Answer::stop : Answer::goOn;
}

engine::PassObserver::Answer PassWatcher::skipped(const engine::Block& block) {
  ++outcome_.skipped;
  if (looks()) leave(block);
  return Answer::goOn;
}

bool PassWatcher::looks() const { return around_.printer.wantsBlocks() || around_.interviewer != nullptr; }

void PassWatcher::leave(const engine::Block& block) {
  paragraphs_.resumeAt(block.whole.End(), paragraphBehind_);
}

/// What is new at the place: all of it, or what was inserted before or behind what was there.
std::pair<std::int32_t, std::int32_t> PassWatcher::changedSpan(word::Range& place) const {
  const std::int32_t start = place.Start();
  const std::int32_t end = place.End();
  if (around_.request.command != Command::insert) return {start, end};
  if (around_.request.after) return {start + lengthBefore_, end};
  return {start, end - lengthBefore_};
}

bool PassWatcher::changesInPlace() const {
  const Request& request = around_.request;
  return request.command != Command::find && !request.dryRun && !request.outputFolder;
}

Excerpt PassWatcher::excerpt(std::int32_t start, std::int32_t end) const {
  return excerptOf(*document_.document(), start, end);
}

}  // namespace pluvo::cli
