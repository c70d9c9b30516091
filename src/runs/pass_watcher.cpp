#include "pass_watcher.h"

#include "base/utf.h"
#include "errors/fault.h"

#include <utility>

namespace pluvo::runs {

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

Failure failureFrom(const errors::Fault& fault) {
  return {fault.problem.value_or(errors::Problem::refused), base::utf8(fault.description)};
}

Failure failureFrom(const errors::DocumentError& error) {
  return {error.problem(), error.what(), error.happened()};
}

void PassWatcher::enters(std::int32_t story) {
  story_ = story;
  paragraphs_ = ParagraphCounter(story);
  if (names_.empty()) names_ = document::storyNames(document_.stories());
  name_ = names_[static_cast<std::size_t>(story)];
  place_ = story == 0 ? std::string() : wordsOf(name_);
}

/// A fault elsewhere than in main text says where.
Failure PassWatcher::inPlace(const errors::Fault& fault) const {
  Failure failure = failureFrom(fault);
  if (!place_.empty()) failure.message = "In " + place_ + ": " + failure.message;
  return failure;
}

engine::PassObserver::Next PassWatcher::found(const engine::Block& block) {
  if (places_ != nullptr) {
    ++counts().found;
    if (!place_.empty()) ++counts().stories[name_.number];
  }
  if (obstacle_ && request_.operation != engine::kNone) {
    failure_ = obstacle_;
    return Next::stop;
  }
  if (!looks()) return Next::goOn;

  word::Range& place = placeIn(block, request_.location);
  const std::int32_t start = place.Start();
  const std::int32_t end = place.End();
  lengthBefore_ = end - start;
  current_ = {};
  current_.request = &request_;
  current_.place = place_;
  current_.paragraph = paragraphs_.numberAt(document_, start);
  current_.deleted = document_.stories().story(static_cast<std::size_t>(story_)).isDeleted({start, end});
  // The question shows the block; the preview of an insertion shows where it goes.
  if (request_.operation == engine::kInsert && !request_.confirmEach) {
    const std::int32_t where = request_.place == engine::kAfter ? end : start;
    current_.before = excerptOf(document_, story_, where, where);
  } else {
    current_.before = excerptOf(document_, story_, start, end);
  }
  paragraphAfter_ = paragraphs_.numberAt(document_, block.whole.End());
  return Next::goOn;
}

engine::Observer::Decision PassWatcher::decide(const engine::Block& /*block*/) {
  if (asking_.isRestLeft()) return Decision::skip;
  switch (asking_.ask(Question::perform, 0, &current_).reply) {
    case Asking::Reply::yes:
      return Decision::operate;
    case Asking::Reply::restUnchanged:
      asking_.leaveTheRest();
      return Decision::skip;
    case Asking::Reply::no:
      return Decision::skip;
    case Asking::Reply::stop:
      break;
  }
  return Decision::stop;
}

engine::PassObserver::Next PassWatcher::operated(const engine::Block& block, const errors::Fault* refusal) {
  if (refusal != nullptr) {
    const Failure failure = inPlace(*refusal);
    lastFault_.reset();
    if (!firstRefusal_) firstRefusal_ = failure;
    // From here on every change would be refused.
    if (failure.problem == errors::Problem::tooLarge) {
      failure_ = failure;
      return Next::stop;
    }
  } else if (places_ != nullptr && request_.operation != engine::kNone) {
    ++counts().operated;
  }
  if (looks()) leave(block);
  if (blocks_) {
    current_.refused = refusal != nullptr;
    if (refusal == nullptr && request_.operation != engine::kNone) {
      const auto [start, end] = changedSpan(placeIn(block, request_.location));
      current_.after = excerptOf(document_, story_, start, end);
    }
    blocks_(current_);
  }
  return refusal != nullptr && !keepGoing_ ? Next::stop : Next::goOn;
}

engine::PassObserver::Next PassWatcher::skipped(const engine::Block& block) {
  if (places_ != nullptr) ++counts().skipped;
  if (looks()) leave(block);
  if (blocks_) {
    current_.skipped = true;
    blocks_(current_);
  }
  return Next::goOn;
}

/// The fault of a refused change comes here before the change is told of.
void PassWatcher::failed(const errors::Fault& fault, errors::Tag /*tag*/) {
  if (lastFault_ && !failure_) failure_ = lastFault_;
  lastFault_ = inPlace(fault);
}

void PassWatcher::leave(const engine::Block& block) {
  paragraphs_.resumeAt(block.whole.End(), paragraphAfter_);
}

/// The new text at the place: all of it, or the part inserted before or after the old text.
std::pair<std::int32_t, std::int32_t> PassWatcher::changedSpan(word::Range& place) const {
  const std::int32_t start = place.Start();
  const std::int32_t end = place.End();
  if (request_.operation != engine::kInsert) return {start, end};
  if (request_.place == engine::kAfter) return {start + lengthBefore_, end};
  return {start, end - lengthBefore_};
}

}  // namespace pluvo::runs
