#pragma once

#include <QEventLoop>
#include <QObject>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>

namespace pluvo::desktop {

/// What the window's thread waits for, and another gives.
class Alarm {
 public:
  /// From any thread. Rung before it is waited for, it ends the wait at once.
  void ring();

 private:
  friend class Working;

  std::mutex mutex_;
  std::condition_variable rings_;
  bool rung_ = false;
  QEventLoop* loop_ = nullptr;
};

/// Keeps the windows alive while the one thread works. Whoever works calls breathe() often; what waits in a
/// file is done in another thread. The work has ended when the event loop has control again.
class Working : public QObject {
 public:
  explicit Working(QObject* parent = nullptr);

  /// Deals with the events that wait, if none were for as long as kEvery. A breath within a breath does
  /// nothing.
  void breathe();
  /// Does the work in another thread while this one deals with events, and returns when it is done; short
  /// work is waited for. The caller gets what the work throws.
  void run(const std::function<void()>& work);
  /// Deals with events until the alarm rings; one that comes soon is waited for.
  void waitFor(Alarm& alarm);

  /// Whether something is at work: from the first breath until the event loop has control again.
  bool underWay() const { return underWay_; }
  /// Whether it breathes at this moment: what happens now, happens in the midst of it.
  bool breathing() const { return breathing_; }

  /// How often the user has asked for an end of the work under way.
  int cancels() const { return cancels_; }
  void cancel();

  /// Called before the first events that are dealt with during work (true), and when it has ended (false).
  std::function<void(bool)> changed = [](bool) {};
  /// Called when work has ended, however short it was.
  std::function<void()> ended = [] {};
  std::function<void()> cancelled = [] {};

  using Milliseconds = std::chrono::milliseconds;
  static constexpr Milliseconds kEvery{20};

  /// The time that breaths are measured by.
  std::function<Milliseconds()> clock;
  /// How long work in another thread is waited for before events are dealt with.
  Milliseconds waitedFor{12};

 protected:
  void customEvent(QEvent* event) override;

 private:
  void begin();
  void show();
  void askForEnd();

  Milliseconds lastBreath_{};
  bool underWay_ = false;
  bool shown_ = false;
  bool breathing_ = false;
  bool endAsked_ = false;
  int cancels_ = 0;
};

}  // namespace pluvo::desktop
