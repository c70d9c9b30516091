#include "results.h"

#include <utility>

namespace pluvo::runs {
namespace {

constexpr std::size_t kAheadForEachJob = 64;
constexpr std::size_t kMostBlocks = 1000;

}  // namespace

Results::Results(std::size_t documents, int jobs, Sink sink)
    : documents_(documents),
      ahead_(kAheadForEachJob * static_cast<std::size_t>(jobs)),
      sink_(std::move(sink)) {}

std::optional<std::size_t> Results::next() {
  std::unique_lock lock(mutex_);
  moved_.wait(lock, [&] { return stopped_ || next_ == documents_ || next_ < first_ + ahead_; });
  if (stopped_ || next_ == documents_) return std::nullopt;
  return next_++;
}

void Results::block(std::size_t document, const BlockReport& block) {
  std::unique_lock lock(mutex_);
  Lane& lane = lanes_[document];
  lane.blocks.push_back(block);
  // The first document never waits, so that this ends.
  if (lane.blocks.size() >= kMostBlocks) moved_.wait(lock, [&] { return first_ == document || error_; });
  if (error_) return lane.blocks.clear();
  if (first_ == document) passOn(document, lane);
}

void Results::done(std::size_t document, Outcome outcome) {
  const std::lock_guard lock(mutex_);
  lanes_[document].outcome = std::move(outcome);
  while (!error_ && !lanes_.empty() && lanes_.begin()->first == first_ && lanes_.begin()->second.outcome) {
    Lane& lane = lanes_.begin()->second;
    passOn(first_, lane);
    sink_.document(first_, *lane.outcome);
    lanes_.erase(lanes_.begin());
    ++first_;
  }
  moved_.notify_all();
}

void Results::passOn(std::size_t document, Lane& lane) {
  for (const BlockReport& block : lane.blocks) sink_.block(document, block);
  lane.blocks.clear();
}

void Results::stop() {
  const std::lock_guard lock(mutex_);
  stopped_ = true;
  moved_.notify_all();
}

void Results::fail(std::exception_ptr error) {
  const std::lock_guard lock(mutex_);
  stopped_ = true;
  if (!error_) error_ = std::move(error);
  moved_.notify_all();
}

void Results::rethrow() const {
  if (error_) std::rethrow_exception(error_);
}

std::size_t Results::handedOut() const {
  const std::lock_guard lock(mutex_);
  return next_;
}

}  // namespace pluvo::runs
