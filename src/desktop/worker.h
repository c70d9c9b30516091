#pragma once

#include "working.h"

#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>

namespace pluvo::desktop {

/// Work in a thread of its own, which has some of it done by the window's thread: what shows something or
/// asks the user. The work may have threads of its own.
class Worker {
 public:
  explicit Worker(Working& working) : working_(working) {}
  /// None is under way.
  ~Worker() = default;
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  // Of the window's thread.
  /// None is under way.
  void begin(std::function<void()> work);
  bool isUnderWay() const { return thread_.joinable(); }
  /// Deals with events, and does what the work wants done, until it pauses (true) or is over (false). What
  /// the work throws comes from here when it is over.
  bool wait();
  /// Lets work that pauses go on.
  void goOn();

  // Of the work's threads.
  /// Has this done by the window's thread, which throws what it throws, and waits for it.
  void call(const std::function<void()>& doing);
  /// Has this done by the window's thread, some time.
  void tell(std::function<void()> doing);
  /// Waits until the window's thread lets it go on; of one thread.
  void pause();

 private:
  bool doNext();

  Working& working_;
  Alarm alarm_;
  std::thread thread_;
  std::mutex mutex_;
  std::condition_variable goesOn_;
  std::deque<std::function<void()>> wanted_;
  bool isPaused_ = false;
  bool isOver_ = false;
  std::exception_ptr thrown_;
};

}  // namespace pluvo::desktop
