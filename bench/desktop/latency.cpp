// The time that the window takes for a key typed into the dialog, and for a scroll of the document, both
// drawn. A pass over 1,000 pages and a run over 500 files are under way meanwhile:
//
//     latency FOLDER [DOCUMENT BEGINNING ENDING]
//
// It measures the time from the key or scroll to the drawn result. It also measures the processor's time that
// the window's thread took meanwhile for anything, which other programs do not lengthen. A frame is 16 ms.
// The folder is made, filled, and left. The pass is made over the document given, or over a plain text of
// 1,000 pages.
#include "main_window.h"

#include <pthread.h>
#include <time.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace pluvo;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

/// Of one thread, in milliseconds; to be done in any.
double processorTime(clockid_t clock) {
  timespec now = {};
  clock_gettime(clock, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

/// About 3,000 characters a page, and a block on every third line.
std::string pages(int count) {
  constexpr int kLines = 40;
  std::string text;
  for (int line = 0; line < count * kLines; ++line)
    text += line % 3 == 0 ? "The words before it, [a]secret[b], and some after it, to fill the line up.\n"
                          : "A line of a page with nothing in it that anybody would look for, or find.\n";
  return text;
}

class User {
 public:
  /// In the window's thread.
  explicit User(desktop::MainWindow& window) : window_(window) {
    pthread_getcpuclockid(pthread_self(), &clock_);
  }

  template <class Widget>
  Widget& control(const char* name) {
    return *window_.findChild<Widget*>(QLatin1String(name));
  }
  void type(const char* box, const QString& text) {
    if (auto* lines = window_.findChild<QPlainTextEdit*>(QLatin1String(box))) lines->setPlainText(text);
    auto* const line = window_.findChild<QLineEdit*>(QLatin1String(box));
    if (line == nullptr) return;
    for (const QChar letter : text) {
      QKeyEvent key(QEvent::KeyPress, 0, {}, QString(letter));
      QApplication::sendEvent(line, &key);
    }
  }
  void choose(const char* list, const char* row) {
    auto& combo = control<QComboBox>(list);
    emit combo.activated(combo.findText(QLatin1String(row)));
  }
  void tick(const char* box, bool on) {
    auto& tick = control<QCheckBox>(box);
    if (tick.isChecked() != on) tick.click();
  }
  void settle() {
    do QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents);
    while (window_.work().underWay());
  }

  /// Executes, and types and scrolls, 8 ms after the last time, until that is done and a while longer.
  void measure(const char* what) {
    times_.clear();
    std::atomic<bool> goesOn = true;
    std::atomic<int> done = 0;
    control<QPushButton>("cmdExecuteFAR").click();
    std::thread doing([&] {
      for (int acts = 0; goesOn; std::this_thread::sleep_for(std::chrono::milliseconds(8))) {
        if (done != acts) continue;
        ++acts;
        QMetaObject::invokeMethod(
            &window_,
            [&, at = Clock::now(), own = processorTime(clock_)] {
              act(at, own);
              ++done;
            },
            Qt::QueuedConnection);
      }
    });
    const auto began = Clock::now();
    settle();
    const double took = Milliseconds(Clock::now() - began).count();
    // What the end brings is a wait, too.
    constexpr double kLonger = 200;
    while (Milliseconds(Clock::now() - began).count() < took + kLonger)
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents);
    goesOn = false;
    doing.join();
    QCoreApplication::processEvents();
    tell(what, took);
  }

 private:
  struct Time {
    double wall;
    double own;
  };

  void act(Clock::time_point at, double own) {
    auto& box = control<QPlainTextEdit>("txtTextToEnter");
    QKeyEvent down(QEvent::KeyPress, Qt::Key_X, {}, QStringLiteral("x"));
    QKeyEvent up(QEvent::KeyRelease, Qt::Key_X, {}, QStringLiteral("x"));
    QApplication::sendEvent(&box, &down);
    QApplication::sendEvent(&box, &up);
    box.viewport()->repaint();
    if (window_.current() != nullptr) {
      auto& bar = *window_.current()->view()->verticalScrollBar();
      bar.setValue(bar.value() + 3 * bar.singleStep());
      window_.current()->view()->viewport()->repaint();
    }
    times_.push_back({Milliseconds(Clock::now() - at).count(), processorTime(clock_) - own});
  }

  void tell(const char* what, double took) {
    const auto of = [&](double Time::*field) {
      std::vector<double> all;
      for (const Time& time : times_) all.push_back(time.*field);
      std::ranges::sort(all);
      const auto at = [&](double part) {
        return all.empty() ? 0 : all[static_cast<std::size_t>(part * static_cast<double>(all.size() - 1))];
      };
      std::printf("  median %.1f  99 %% %.1f  longest %.1f ms", at(0.5), at(0.99), at(1));
    };
    std::printf("%s: %.0f ms, %zu keys and scrolls\n   to the drawn result", what, took, times_.size());
    of(&Time::wall);
    std::printf("\n   processor's time   ");
    of(&Time::own);
    std::printf("\n");
  }

  desktop::MainWindow& window_;
  clockid_t clock_ = {};
  std::vector<Time> times_;
};

}  // namespace

int main(int count, char** words) {
  if (count != 2 && count != 5) return std::fputs("latency FOLDER [DOCUMENT BEGINNING ENDING]\n", stderr), 2;
  const std::vector<QString> given(words + 2, words + count);
  const std::filesystem::path folder = words[1];
  std::filesystem::create_directories(folder / "files");
  std::ofstream(folder / "large.txt") << pages(1'000);
  for (int i = 0; i < 500; ++i) std::ofstream(folder / "files" / (std::to_string(i) + ".txt")) << pages(10);
  qputenv("XDG_STATE_HOME", (folder / "state").c_str());
  qputenv("XDG_CONFIG_HOME", (folder / "config").c_str());
  qputenv("XDG_DATA_HOME", (folder / "data").c_str());
  QApplication program(count, words);
  desktop::MainWindow window(desktop::machinePlaces(), desktop::fileDialogs());
  window.resize(1300, 800);
  window.show();
  QTimer::singleShot(0, &window, [&] {
    User user(window);
    window.open({given.empty() ? (folder / "large.txt").string() : given[0].toStdString()});
    user.settle();
    user.type("txtBeginText", given.empty() ? QStringLiteral("[a]") : given[1]);
    user.type("txtEndText", given.empty() ? QStringLiteral("[b]") : given[2]);
    user.choose("cboxProcOperation1", "Replace");
    user.type("txtTextToEnter", QStringLiteral("gone"));
    user.tick("chkQuiteMode", true);
    user.measure("a pass over 1,000 pages");
    if (!given.empty()) return std::fflush(stdout), std::_Exit(0);
    user.type("txtFilePath", QString::fromStdString((folder / "files").string()));
    user.tick("chkFTdoc", false);
    user.tick("chkFTtxt", true);
    user.measure("a run over 500 files");
    const auto left =
        std::ranges::count_if(std::filesystem::directory_iterator(folder / "files"), [](auto& file) {
          std::ifstream input(file.path());
          return std::string(std::istreambuf_iterator<char>(input), {}).find("secret") != std::string::npos;
        });
    std::printf("files left as they were: %td\n", left);
    std::fflush(stdout);
    std::_Exit(0);
  });
  window.openDialog();
  return 1;
}
