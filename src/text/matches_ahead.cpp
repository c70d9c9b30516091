#include "matches_ahead.h"

#include <utility>

namespace pluvo::text {

MatchesAhead::MatchesAhead(Find find) : find_(std::move(find)), thread_([this] { findAll(); }) {}

MatchesAhead::~MatchesAhead() {
  {
    const std::lock_guard guard(mutex_);
    stops_ = true;
  }
  taken_.notify_one();
  thread_.join();
}

MatchBatch MatchesAhead::take() {
  MatchBatch batch;
  bool isHalf = false;
  {
    std::unique_lock lock(mutex_);
    found_.wait(lock, [&] { return !batches_.empty() || thrown_ != nullptr; });
    if (batches_.empty()) std::rethrow_exception(thrown_);
    batch = std::move(batches_.front());
    batches_.pop_front();
    isHalf = batches_.size() == kMostWaiting / 2;
  }
  if (isHalf) taken_.notify_one();  // not for each, since waking a thread costs as much as a batch
  return batch;
}

void MatchesAhead::findAll() {
  try {
    for (bool isLast = false; !isLast;) {
      MatchBatch batch = find_();
      isLast = batch.isLast;
      {
        std::unique_lock lock(mutex_);
        taken_.wait(lock, [&] { return stops_ || batches_.size() < kMostWaiting; });
        if (stops_) return;
        batches_.push_back(std::move(batch));
      }
      found_.notify_one();
    }
  } catch (...) {
    const std::lock_guard guard(mutex_);
    thrown_ = std::current_exception();
    found_.notify_one();
  }
}

}  // namespace pluvo::text
