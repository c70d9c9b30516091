#include "waiters.h"

#include <system_error>
#include <utility>

namespace pluvo::runs {

Waiters::Waiters(std::size_t count) {
  try {
    for (std::size_t i = 0; i < count; ++i) threads_.emplace_back([this] { doAll(); });
  } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch): the machine has no more; fewer serve
  }
}

Waiters::~Waiters() {
  {
    const std::lock_guard guard(mutex_);
    isLast_ = true;
  }
  added_.notify_all();
  for (std::thread& thread : threads_) thread.join();
}

void Waiters::add(Work work) {
  if (threads_.empty()) return work();
  {
    std::unique_lock lock(mutex_);
    taken_.wait(lock, [&] { return work_.size() < threads_.size(); });
    work_.push_back(std::move(work));
  }
  added_.notify_one();
}

void Waiters::doAll() {
  std::unique_lock lock(mutex_);
  for (;;) {
    added_.wait(lock, [&] { return isLast_ || !work_.empty(); });
    if (work_.empty()) return;
    Work work = std::move(work_.front());
    work_.pop_front();
    lock.unlock();
    taken_.notify_one();
    work();
    lock.lock();
  }
}

}  // namespace pluvo::runs
