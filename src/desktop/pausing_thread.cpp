#include "pausing_thread.h"

#include <utility>

namespace pluvo::desktop {

void PausingThread::begin(std::function<void()> work) {
  isPaused_ = isOver_ = false;
  thread_ = std::thread([this, work = std::move(work)] {
    std::exception_ptr thrown;
    try {
      work();
    } catch (...) {
      thrown = std::current_exception();
    }
    const std::lock_guard lock(mutex_);
    thrown_ = thrown;
    isOver_ = true;
    turns_.notify_all();
  });
}

bool PausingThread::wait() {
  {
    std::unique_lock lock(mutex_);
    turns_.wait(lock, [this] { return isPaused_ || isOver_; });
    if (!isOver_) return true;
  }
  thread_.join();
  if (thrown_) std::rethrow_exception(std::exchange(thrown_, nullptr));
  return false;
}

void PausingThread::goOn() {
  const std::lock_guard lock(mutex_);
  isPaused_ = false;
  turns_.notify_all();
}

void PausingThread::pause() {
  std::unique_lock lock(mutex_);
  isPaused_ = true;
  turns_.notify_all();
  turns_.wait(lock, [this] { return !isPaused_; });
}

}  // namespace pluvo::desktop
