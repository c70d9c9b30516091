#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <future>
#include <mutex>
#include <thread>
#include <vector>

namespace pluvo::runs {

/// Threads that wait for the disk, so that working threads need not. What they are given must not throw.
class Waiters {
 public:
  /// With no threads, add() runs the work itself.
  explicit Waiters(std::size_t count);
  Waiters(const Waiters&) = delete;
  Waiters& operator=(const Waiters&) = delete;
  /// Returns when all is done.
  ~Waiters();

  using Work = std::packaged_task<void()>;
  /// Returns at once unless as many wait for a thread as there are threads.
  void add(Work work);

 private:
  void doAll();

  std::mutex mutex_;
  std::condition_variable added_;
  std::condition_variable taken_;
  std::deque<Work> work_;
  bool isLast_ = false;
  std::vector<std::thread> threads_;
};

}  // namespace pluvo::runs
