#include "group_saver.h"

#include <algorithm>
#include <chrono>
#include <system_error>
#include <utility>

namespace pluvo::runs {

namespace {

/// Versions that are flushed at once share what the disk writes for each flush.
constexpr std::size_t kTogether = 8;
/// How long the first of them waits for the others.
constexpr std::chrono::milliseconds kPatience(4);

}  // namespace

GroupSaver::GroupSaver(std::size_t threads, Done done) : tell_(std::move(done)) {
  try {
    for (std::size_t i = 0; i < threads; ++i) threads_.emplace_back([this] { saveAll(); });
  } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch): the machine has no more; fewer serve
  }
}

GroupSaver::~GroupSaver() {
  {
    const std::lock_guard guard(mutex_);
    isLast_ = true;
  }
  added_.notify_all();
  whole_.notify_one();
  for (std::thread& thread : threads_) thread.join();
}

void GroupSaver::add(Version version) {
  Versions one;
  one.push_back(std::move(version));
  if (threads_.empty()) {
    flushVersion(one.front().worked);
    return finish(std::move(one));
  }
  {
    constexpr std::size_t kForEachThread = 3;
    const std::size_t most = kForEachThread * threads_.size();
    std::unique_lock lock(mutex_);
    done_.wait(lock, [&] { return inHand_ < most; });
    ++inHand_;
    versions_.splice(versions_.end(), one);
    if (versions_.size() >= std::min(kTogether, most)) released_ = versions_.size();
    if (isWatched_ && released_ == 0) return;
  }
  added_.notify_one();
}

/// Waits for a version to flush: for as many as make a group, or for a while. False where no more come.
bool GroupSaver::awaitVersions(std::unique_lock<std::mutex>& lock) {
  const auto isReleased = [&] { return isLast_ || released_ > 0; };
  for (;;) {
    added_.wait(lock, [&] { return isReleased() || (!versions_.empty() && !isWatched_); });
    if (!isReleased()) {
      isWatched_ = true;
      added_.wait_for(lock, kPatience, isReleased);
      isWatched_ = false;
      if (!isReleased()) released_ = versions_.size();
    }
    if (!versions_.empty()) return true;
    if (isLast_) return false;
  }
}

void GroupSaver::saveAll() {
  std::unique_lock lock(mutex_);
  for (;;) {
    if (!awaitVersions(lock)) return;
    Versions one;
    one.splice(one.end(), versions_, versions_.begin());
    if (released_ > 0) --released_;
    if (!versions_.empty() && (released_ > 0 || !isWatched_)) added_.notify_one();
    ++flushing_;
    lock.unlock();
    flushVersion(one.front().worked);
    lock.lock();
    --flushing_;
    const bool leads = group_.empty();
    group_.splice(group_.end(), one);
    if (isWhole()) whole_.notify_one();
    if (!leads) continue;
    Versions group = gathered(lock);
    const std::size_t size = group.size();
    lock.unlock();
    finish(std::move(group));
    lock.lock();
    inHand_ -= size;
    done_.notify_all();
  }
}

/// Whether there is nobody to wait for, or there are enough.
bool GroupSaver::isWhole() const {
  constexpr std::size_t kEnough = 8;
  const bool othersCome = !isLast_ || !versions_.empty() || flushing_ > 0;
  return group_.size() >= std::min(kEnough, threads_.size()) || !othersCome;
}

/// The group that the calling thread leads, be it whole or not after a while.
GroupSaver::Versions GroupSaver::gathered(std::unique_lock<std::mutex>& lock) {
  whole_.wait_for(lock, kPatience, [&] { return isWhole(); });
  return std::exchange(group_, {});
}

void GroupSaver::finish(Versions group) const {
  for (Version& each : group) putInPlace(each.worked);
  for (Version& each : group) {
    settle(each.worked);
    tell_(std::move(each));
  }
}

}  // namespace pluvo::runs
