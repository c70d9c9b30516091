#include "work.h"

#include <QCoreApplication>
#include <QThread>
#include <future>
#include <utility>

namespace pluvo::desktop {

Work::Work(std::chrono::milliseconds shownAfter) {
  shows_.setSingleShot(true);
  shows_.setInterval(shownAfter);
  connect(&shows_, &QTimer::timeout, this, [this] {
    isShown_ = true;
    changed(true);
  });
}

Work::~Work() { wait(); }

void Work::wait() {
  while (underWay()) QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

void Work::run(const std::function<void()>& work, const Then& then) {
  Q_ASSERT(!underWay());
  if (!goesOn_) cancels_ = 0;
  if (!isShown_) shows_.start();
  thread_ = std::thread([this, work = work, then = then]() mutable {
    worker_ = std::this_thread::get_id();
    std::exception_ptr thrown;
    try {
      work();
      finishing();
    } catch (...) {
      thrown = std::current_exception();
    }
    work = nullptr;
    tell([this, thrown = std::move(thrown), then = std::move(then)] { end(thrown, then); });
  });
}

/// Where one work follows another, nothing blinks between them.
void Work::end(const std::exception_ptr& thrown, const Then& then) {
  thread_.join();
  done();
  goesOn_ = true;
  guarded([&] { then(thrown); });
  goesOn_ = false;
  if (underWay()) return;
  shows_.stop();
  if (std::exchange(isShown_, false)) changed(false);
  if (!underWay()) ended();
}

void Work::cancel() {
  if (!underWay()) return;
  ++cancels_;
  cancelled();
}

void Work::show(const std::function<void()>& doing) {
  if (std::this_thread::get_id() == worker_) showing();
  inWindow(doing);
}

void Work::inWindow(const std::function<void()>& doing) {
  if (QThread::currentThread() == thread()) return doing();
  // A box that asks one job's question lets events through: another job's has to wait until it is answered.
  const std::lock_guard oneAtATime(showing_);
  std::packaged_task<void()> task(doing);
  std::future<void> result = task.get_future();
  tell([&task] { task(); });
  result.get();
}

void Work::tell(std::function<void()> doing) {
  {
    const std::lock_guard lock(mutex_);
    wanted_.push_back(std::move(doing));
  }
  QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

void Work::customEvent(QEvent* /*event*/) { doNext(); }

void Work::doNext() {
  std::function<void()> doing;
  {
    const std::lock_guard lock(mutex_);
    doing = std::move(wanted_.front());
    wanted_.pop_front();
  }
  doing();
}

}  // namespace pluvo::desktop
