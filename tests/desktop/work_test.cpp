#include "used_window.h"
#include "working.h"

#include <QtTest/QtTest>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <thread>

namespace pluvo::desktop {
namespace {

using namespace std::chrono_literals;

/// How long no event was dealt with.
class Gaps {
 public:
  Gaps() {
    timer_.setInterval(1);
    QObject::connect(&timer_, &QTimer::timeout, [this] {
      longest_ = std::max(longest_, since_.restart());
      ++ticks_;
    });
  }
  void start() {
    longest_ = 0;
    ticks_ = 0;
    since_.start();
    timer_.start();
  }
  qint64 longest() const { return longest_; }
  int ticks() const { return ticks_; }

 private:
  QTimer timer_;
  QElapsedTimer since_;
  qint64 longest_ = 0;
  int ticks_ = 0;
};

/// Under sanitizers everything takes longer, and beside other work the machine forgets a thread for a while.
#ifdef __SANITIZE_ADDRESS__
constexpr bool kSanitized = true;
#elif defined(__clang__)
constexpr bool kSanitized = __has_feature(address_sanitizer);
#else
constexpr bool kSanitized = false;
#endif
constexpr int kLongestGap = kSanitized ? 300 : 100;
constexpr int kLongestCancel = kSanitized ? 1000 : 200;

TEST(Work, InAnotherThreadLeavesThisOneAlive) {
  Working working;
  std::vector<bool> told;
  working.changed = [&](bool underWay) { told.push_back(underWay); };
  Gaps gaps;
  gaps.start();
  std::thread::id worker;
  working.run([&] {
    worker = std::this_thread::get_id();
    std::this_thread::sleep_for(300ms);
  });
  EXPECT_NE(worker, std::this_thread::get_id());
  EXPECT_GT(gaps.ticks(), 20);
  EXPECT_LT(gaps.longest(), kLongestGap);
  EXPECT_TRUE(working.underWay()) << "until the event loop has control";
  QCoreApplication::processEvents();
  EXPECT_FALSE(working.underWay());
  EXPECT_EQ(told, (std::vector<bool>{true, false}));

  EXPECT_THROW(working.run([] { throw std::runtime_error("no"); }), std::runtime_error);
  bool within = false;
  working.run([&] { std::this_thread::sleep_for(60ms); });
  QTimer::singleShot(0, [&] { working.run([&] { within = true; }); });
  working.run([] { std::this_thread::sleep_for(60ms); });
  EXPECT_TRUE(within) << "work within work is done at once";
}

TEST(Work, ThatIsShortShowsNothing) {
  Working working;
  working.changed = [](bool) { ADD_FAILURE(); };
  working.run([] {});
  working.breathe();
  QCoreApplication::processEvents();
  EXPECT_FALSE(working.underWay());
}

std::string manyBlocks(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += "words before it [a]secret[b] and behind\n";
  return text;
}

class WorkInTheWindow : public UsedWindow {
 protected:
  void askForReplacement() {
    type("txtBeginText", "[a]");
    type("txtEndText", "[b]");
    choose("cboxProcOperation1", "Replace");
    type("txtTextToEnter", "X");
    tick("chkQuiteMode");
  }
};

TEST_F(WorkInTheWindow, KeepsItAliveAndCanBeCancelled) {
  use([&] {
    constexpr int kBlocks = 60'000;
    const std::string path = scratch.put("many.txt", manyBlocks(kBlocks));
    OpenDocument& document = open(path);
    const int before = document.document()->model().length();
    askForReplacement();
    Gaps gaps;
    gaps.start();
    // Events are counted from the first breath on: the notice in front of the run breathes too.
    bool secondRefused = false;
    QElapsedTimer cancelled;
    QTimer poll;
    poll.setInterval(5);
    QObject::connect(&poll, &QTimer::timeout, [&] {
      if (!window->working().breathing()) return;
      const bool some = document.document()->model().length() < before - 1000;
      if (some && !secondRefused) {
        control<QPushButton>("cmdExecuteFAR").click();
        window->open({scratch.path("other.txt")});
        secondRefused = !control<QPushButton>("cmdExecuteFAR").isEnabled();
        menu("Ca&ncel");
        cancelled.start();
        poll.stop();
      }
    });
    poll.start();
    execute();
    ASSERT_TRUE(cancelled.isValid()) << "the pass never breathed";
    EXPECT_LT(cancelled.elapsed(), kLongestCancel);
    EXPECT_LT(gaps.longest(), kLongestGap);
    EXPECT_TRUE(secondRefused);
    settle();
    const int after = document.document()->model().length();
    EXPECT_LT(after, before);
    EXPECT_NE(text(document).find("[a]secret[b]"), std::string::npos) << "it ended before the end";
    menu("&Undo Last Pass");
    EXPECT_EQ(document.document()->model().length(), before);
    EXPECT_FALSE(document.changed());
  });
}

TEST_F(WorkInTheWindow, CanBeCancelledWhereNothingIsFound) {
  use([&] {
    // Every beginning has an ending, and every one is too far away.
    std::string text;
    for (int i = 0; i < 40'000; ++i) text += "[a]\n\n\n";
    open(scratch.put("many.txt", text + "[b]\n"));
    askForReplacement();
    bool asked = false;
    QElapsedTimer cancelled;
    QTimer poll;
    poll.setInterval(5);
    QObject::connect(&poll, &QTimer::timeout, [&] {
      if (!window->working().breathing() || asked) return;
      asked = true;
      menu("Ca&ncel");
      cancelled.start();
    });
    poll.start();
    execute();
    ASSERT_TRUE(asked);
    EXPECT_LT(cancelled.elapsed(), kLongestCancel);
  });
}

class WorkOverFiles : public WorkInTheWindow, public testing::WithParamInterface<int> {};
INSTANTIATE_TEST_SUITE_P(Cancelled, WorkOverFiles, testing::Values(1, 2));

TEST_P(WorkOverFiles, LeavesEachWholeOrUntouched) {
  const int cancels = GetParam();
  const std::string before = manyBlocks(30'000);
  for (const char* name : {"a.txt", "b.txt", "c.txt"}) scratch.put(name, before);
  use([&] {
    askForReplacement();
    type("txtFilePath", scratch.path("").c_str());
    tick("chkFTdoc", false);
    tick("chkFTtxt");
    control<QPushButton>("cmdGetPotentialFiles").click();
    int asked = 0;
    QTimer poll;
    poll.setInterval(2);
    QObject::connect(&poll, &QTimer::timeout, [&] {
      if (asked == cancels || !window->working().breathing() || window->application()->count() == 0) return;
      const auto document = window->application()->active();
      if (document->Name() != u"b.txt" || document->Saved()) return;
      ++asked;
      menu("Ca&ncel");
    });
    poll.start();
    execute();
    settle();
    EXPECT_EQ(asked, cancels);
    EXPECT_EQ(scratch.get("a.txt").find("secret"), std::string::npos) << "done before";
    if (cancels == 1) {
      EXPECT_EQ(scratch.get("b.txt").find("secret"), std::string::npos) << "finished";
    } else {
      EXPECT_EQ(scratch.get("b.txt"), before) << "taken back";
    }
    EXPECT_EQ(scratch.get("c.txt"), before) << "never begun";
    EXPECT_EQ(window->current(), nullptr);
  });
}

TEST_F(WorkInTheWindow, TakesBackNothingFromBeforeTheRun) {
  std::string before;
  for (int i = 0; i < 40'000; ++i) before += "[a]\n\n\n";
  use([&] {
    OpenDocument& document = open(scratch.put("a.txt", "1" + before + "[b]\n"));
    document.passBegins();
    document.document()->model().replace({0, 1}, u"one", text::View::results);
    QTest::qWait(100);
    menu("&Save");
    settle();
    ASSERT_FALSE(document.changed());
    askForReplacement();
    type("txtFilePath", scratch.path("").c_str());
    tick("chkFTtxt");
    control<QPushButton>("cmdGetPotentialFiles").click();
    settle();
    int asked = 0;
    QTimer poll;
    poll.setInterval(5);
    QObject::connect(&poll, &QTimer::timeout, [&] {
      if (asked == 2 || !window->working().breathing()) return;
      ++asked;
      menu("Ca&ncel");
    });
    poll.start();
    execute();
    settle();
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(text(document).substr(0, 3), "one");
    EXPECT_FALSE(document.changed());
  });
  EXPECT_EQ(scratch.get("a.txt").substr(0, 3), "one");
}

TEST_F(WorkInTheWindow, IsEndedBeforeTheWindowCloses) {
  const std::string path = scratch.put("many.txt", manyBlocks(60'000));
  bool asked = false;
  use([&] {
    open(path);
    askForReplacement();
    QTimer poll;
    poll.setInterval(5);
    QObject::connect(&poll, &QTimer::timeout, [&] {
      if (asked || !window->working().breathing() || window->application()->active()->Saved()) return;
      asked = true;
      window->close();
      EXPECT_TRUE(window->isVisible()) << "the engine is at work";
    });
    poll.start();
    expectAnswer(QMessageBox::Cancel);  // save the changes?
    execute();
    QTest::qWait(200);
    EXPECT_TRUE(asked);
  });
  EXPECT_EQ(scratch.get("many.txt"), manyBlocks(60'000));
}

}  // namespace
}  // namespace pluvo::desktop
