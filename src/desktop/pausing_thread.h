#pragma once

#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>

namespace pluvo::desktop {

/// Work in a thread of its own that pauses where another thread is to go on for a while.
class PausingThread {
 public:
  PausingThread() = default;
  /// None is under way.
  ~PausingThread() = default;
  PausingThread(const PausingThread&) = delete;
  PausingThread& operator=(const PausingThread&) = delete;

  // Of the other thread.
  /// None is under way.
  void begin(std::function<void()> work);
  /// Waits until the work pauses (true) or is over (false). Its exceptions come from here when it is over.
  bool wait();
  /// Lets work that pauses go on.
  void goOn();

  /// Of the work's thread: waits until the other lets it go on.
  void pause();

 private:
  std::thread thread_;
  std::mutex mutex_;
  std::condition_variable turns_;
  bool isPaused_ = false;
  bool isOver_ = false;
  std::exception_ptr thrown_;
};

}  // namespace pluvo::desktop
