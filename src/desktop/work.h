#pragma once

#include "dialog/labour.h"

#include <QObject>
#include <QTimer>
#include <atomic>
#include <chrono>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>

namespace pluvo::desktop {

/// Long work in a thread of its own, one at a time. The window's thread goes on with its events, and leaves
/// the work's documents alone until it is done.
class Work final : public QObject, public dialog::Labour {
 public:
  /// Work that ends sooner is not shown.
  explicit Work(std::chrono::milliseconds shownAfter = std::chrono::milliseconds(50));
  /// Waits for the work under way, and does what that wants done.
  ~Work() override;

  // Of the window's thread.
  /// Begins the work; then is called from the event loop when it is done. None is under way.
  void run(const std::function<void()>& work, const Then& then) override;
  bool isElsewhere() const override { return true; }
  bool underWay() const { return thread_.joinable(); }
  /// The user wants an end of the work under way.
  void cancel();
  /// Returns when no work is under way, and nothing goes on from there.
  void wait();

  /// Called where the work has lasted so long that the user is to see it (true), and when that has ended.
  std::function<void(bool)> changed = [](bool) {};
  /// Called when work is done, before anything that goes on from there: the window has again what the work
  /// had in hand.
  std::function<void()> done = [] {};
  /// Called when work has ended and nothing goes on from there.
  std::function<void()> ended = [] {};
  std::function<void()> cancelled = [] {};
  /// Goes on from there, and lets no fault out.
  std::function<void(const std::function<void()>& doing)> guarded = [](const auto& doing) { doing(); };

  // Of any thread.
  /// How often the user has asked for an end of the work under way, and of what that goes on from.
  int cancels() const { return cancels_; }
  /// Has the window's thread do this, and returns when it has. Its exceptions come from here.
  void inWindow(const std::function<void()>& doing);
  /// The same of what the user is to see: what the work has done so far is seen by then.
  void show(const std::function<void()>& doing) override;
  /// Has the window's thread do this, some time.
  void tell(std::function<void()> doing);

  // Of the work's thread.
  /// Called before the user is shown something for the work, and at the end of each work.
  std::function<void()> showing = [] {};
  std::function<void()> finishing = [] {};

 private:
  void end(const std::exception_ptr& thrown, const Then& then);
  /// Something is to be done in the window's thread.
  void customEvent(QEvent* event) override;
  void doNext();

  std::thread thread_;
  std::atomic<std::thread::id> worker_;
  std::mutex mutex_;
  std::deque<std::function<void()>> wanted_;  ///< of the window's thread
  QTimer shows_;
  bool isShown_ = false;
  bool goesOn_ = false;
  std::atomic<int> cancels_ = 0;
  std::mutex showing_;
};

}  // namespace pluvo::desktop
