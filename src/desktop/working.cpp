#include "working.h"

#include <QCoreApplication>
#include <QEvent>
#include <future>
#include <thread>
#include <utility>

namespace pluvo::desktop {

namespace {

/// One batch of events may bring others; they do not keep the work waiting for ever.
constexpr int kLongestBreath = 15;

/// Sets a flag while it lives.
class During {
 public:
  explicit During(bool& flag) : flag_(flag), before_(std::exchange(flag, true)) {}
  During(const During&) = delete;
  During& operator=(const During&) = delete;
  ~During() { flag_ = before_; }

 private:
  bool& flag_;
  bool before_;
};

}  // namespace

Working::Working(QObject* parent)
    : QObject(parent), clock([] {
        return std::chrono::duration_cast<Milliseconds>(std::chrono::steady_clock::now().time_since_epoch());
      }) {}

void Working::begin() {
  if (underWay_) return;
  underWay_ = true;
  cancels_ = 0;
  lastBreath_ = clock();
  askForEnd();
}

void Working::show() {
  if (std::exchange(shown_, true)) return;
  changed(true);
}

void Working::breathe() {
  begin();
  if (breathing_ || clock() - lastBreath_ < kEvery) return;
  show();
  {
    const During during(breathing_);
    QCoreApplication::processEvents(QEventLoop::AllEvents, kLongestBreath);
  }
  lastBreath_ = clock();
  askForEnd();
}

void Working::run(const std::function<void()>& work) {
  if (breathing_) return work();
  begin();
  Alarm done;
  std::packaged_task<void()> task(work);
  std::future<void> result = task.get_future();
  std::thread thread([&] {
    task();
    done.ring();
  });
  waitFor(done);
  thread.join();
  breathe();  // where much work was short, one piece after the other
  askForEnd();
  result.get();
}

void Working::waitFor(Alarm& alarm) {
  begin();
  QEventLoop loop;
  {
    std::unique_lock lock(alarm.mutex_);
    if (alarm.rings_.wait_for(lock, waitedFor, [&] { return alarm.rung_; })) {
      alarm.rung_ = false;
      return;
    }
    alarm.loop_ = &loop;
  }
  show();
  {
    const During during(breathing_);
    // The call that ends the loop is queued, and so comes even when the alarm rang before it began.
    loop.exec();
    lastBreath_ = clock();
  }
  askForEnd();
  const std::lock_guard lock(alarm.mutex_);
  alarm.loop_ = nullptr;
  alarm.rung_ = false;
}

void Alarm::ring() {
  const std::lock_guard lock(mutex_);
  rung_ = true;
  rings_.notify_one();
  if (loop_ != nullptr) QMetaObject::invokeMethod(loop_, &QEventLoop::quit, Qt::QueuedConnection);
}

void Working::cancel() {
  if (!underWay_) return;
  ++cancels_;
  cancelled();
}

/// The event arrives when a loop runs that is not a breath: the work has returned, or waits for an answer.
void Working::askForEnd() {
  if (std::exchange(endAsked_, true)) return;
  QCoreApplication::postEvent(this, new QEvent(QEvent::User), Qt::LowEventPriority);
}

void Working::customEvent(QEvent*) {
  endAsked_ = false;
  if (breathing_) return;
  underWay_ = false;
  if (std::exchange(shown_, false)) changed(false);
  ended();
}

}  // namespace pluvo::desktop
