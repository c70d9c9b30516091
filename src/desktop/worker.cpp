#include "worker.h"

#include <future>
#include <utility>

namespace pluvo::desktop {

void Worker::begin(std::function<void()> work) {
  isPaused_ = isOver_ = false;
  thrown_ = nullptr;
  thread_ = std::thread([this, work = std::move(work)] {
    std::exception_ptr thrown;
    try {
      work();
    } catch (...) {
      thrown = std::current_exception();
    }
    {
      const std::lock_guard lock(mutex_);
      isOver_ = true;
      if (thrown) thrown_ = thrown;
    }
    alarm_.ring();
  });
}

bool Worker::wait() {
  for (;;) {
    while (doNext()) working_.breathe();
    {
      const std::lock_guard lock(mutex_);
      if (wanted_.empty() && isPaused_) return true;
      if (wanted_.empty() && isOver_) break;
    }
    working_.waitFor(alarm_);
  }
  thread_.join();
  if (thrown_) std::rethrow_exception(std::exchange(thrown_, nullptr));
  return false;
}

/// Outside a breath, so that boxes can be answered. Whether there was something to do.
bool Worker::doNext() {
  std::function<void()> doing;
  {
    const std::lock_guard lock(mutex_);
    if (wanted_.empty()) return false;
    doing = std::move(wanted_.front());
    wanted_.pop_front();
  }
  try {
    doing();
  } catch (...) {
    const std::lock_guard lock(mutex_);
    if (!thrown_) thrown_ = std::current_exception();
  }
  return true;
}

void Worker::goOn() {
  {
    const std::lock_guard lock(mutex_);
    isPaused_ = false;
  }
  goesOn_.notify_one();
}

void Worker::call(const std::function<void()>& doing) {
  std::packaged_task<void()> task(doing);
  std::future<void> done = task.get_future();
  tell([&task] { task(); });
  done.get();
}

void Worker::tell(std::function<void()> doing) {
  {
    const std::lock_guard lock(mutex_);
    wanted_.push_back(std::move(doing));
  }
  alarm_.ring();
}

void Worker::pause() {
  std::unique_lock lock(mutex_);
  isPaused_ = true;
  alarm_.ring();
  goesOn_.wait(lock, [this] { return !isPaused_; });
}

}  // namespace pluvo::desktop
