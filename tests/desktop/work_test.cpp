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

/// How long no event was dealt with, since it is.
struct Gaps {
  Gaps() {
    timer.callOnTimeout([this] {
      longest = std::max(longest, since.restart());
      ++ticks;
    });
    since.start();
    timer.start(1);
  }
  QTimer timer;
  QElapsedTimer since;
  qint64 longest = 0;
  int ticks = 0;
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
  const Gaps gaps;
  std::thread::id worker;
  working.run([&] {
    worker = std::this_thread::get_id();
    std::this_thread::sleep_for(300ms);
  });
  EXPECT_NE(worker, std::this_thread::get_id());
  EXPECT_GT(gaps.ticks, 20);
  EXPECT_LT(gaps.longest, kLongestGap);
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
  int shown = 0;
  working.changed = [&](bool) { ++shown; };
  constexpr int kTries = 20;
  for (int i = 0; i < kTries; ++i) {
    working.run([] {});
    working.breathe();
    QCoreApplication::processEvents();
    EXPECT_FALSE(working.underWay());
  }
  EXPECT_LT(shown, kTries) << "but where the machine forgets a thread for a while";
}

std::string manyBlocks(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += "words before it [a]secret[b] and behind\n";
  return text;
}

/// 40,000 beginnings, each too far from the one ending.
std::string manyBeginnings() {
  std::string text;
  for (int i = 0; i < 40'000; ++i) text += "[a]\n\n\n";
  return text + "[b]\n";
}

class WorkInTheWindow : public UsedWindow {
 protected:
  void askForReplacement() {
    ask("[a]", "Replace");
    type("txtEndText", "[b]");
    type("txtTextToEnter", "X");
    tick("chkQuiteMode");
  }
  /// While the engine is at work, does this again and again until it says that it was done often enough.
  /// Events before the first breath are none: the notice in front of the run breathes too.
  void meanwhile(std::function<bool()> done) {
    QObject::connect(&poll_, &QTimer::timeout, [this, done = std::move(done)] {
      if (window->working().breathing() && done()) poll_.stop();
    });
    poll_.start(2);
  }
  void cancel() {
    menu("Ca&ncel");
    ++cancels;
    sinceCancel.start();
  }

  int cancels = 0;
  QElapsedTimer sinceCancel;

 private:
  QTimer poll_;
};

TEST_F(WorkInTheWindow, KeepsItAliveAndCanBeCancelled) {
  use([&] {
    OpenDocument& document = open(scratch.put("many.txt", manyBlocks(60'000)));
    const auto length = [&] { return document.document()->model().length(); };
    const int before = length();
    askForReplacement();
    bool secondRefused = false;
    meanwhile([&] {
      if (length() >= before - 1000) return false;
      execute();
      window->open({scratch.path("other.txt")});
      secondRefused = !control<QPushButton>("cmdExecuteFAR").isEnabled();
      cancel();
      return true;
    });
    const Gaps gaps;
    execute();
    ASSERT_EQ(cancels, 1) << "the pass never breathed";
    EXPECT_LT(sinceCancel.elapsed(), kLongestCancel);
    EXPECT_LT(gaps.longest, kLongestGap);
    EXPECT_TRUE(secondRefused);
    settle();
    EXPECT_LT(length(), before);
    EXPECT_NE(text(document).find("[a]secret[b]"), std::string::npos) << "it ended before the end";
    menu("&Undo Last Pass");
    EXPECT_EQ(length(), before);
    EXPECT_FALSE(document.changed());
    execute();
    EXPECT_EQ(text(document).find("[a]secret[b]"), std::string::npos) << "a cancel is for one run";
  });
}

TEST_F(WorkInTheWindow, CanBeCancelledWhereNothingIsFound) {
  use([&] {
    open(scratch.put("many.txt", manyBeginnings()));
    askForReplacement();
    meanwhile([&] { return cancel(), true; });
    execute();
    ASSERT_EQ(cancels, 1);
    EXPECT_LT(sinceCancel.elapsed(), kLongestCancel);
  });
}

class WorkOverFiles : public WorkInTheWindow, public testing::WithParamInterface<int> {};
INSTANTIATE_TEST_SUITE_P(Cancelled, WorkOverFiles, testing::Values(1, 2));

TEST_P(WorkOverFiles, LeavesEachWholeOrUntouched) {
  const std::string before = manyBlocks(30'000);
  for (const char* name : {"a.txt", "b.txt", "c.txt"}) scratch.put(name, before);
  use([&] {
    askForReplacement();
    askOver(scratch.path(""));
    click("cmdGetPotentialFiles");
    meanwhile([&] {
      if (window->application()->count() == 0) return false;
      const auto document = window->application()->active();
      if (document->Name() == u"b.txt" && !document->Saved()) cancel();
      return cancels == GetParam();
    });
    execute();
    settle();
    EXPECT_EQ(cancels, GetParam());
    EXPECT_EQ(scratch.get("a.txt").find("secret"), std::string::npos) << "done before";
    if (cancels == 1) {
      EXPECT_EQ(scratch.get("b.txt").find("secret"), std::string::npos) << "finished";
    } else {
      EXPECT_TRUE(scratch.get("b.txt") == before) << "taken back";
    }
    EXPECT_TRUE(scratch.get("c.txt") == before) << "never begun";
    EXPECT_EQ(window->current(), nullptr);
  });
}

TEST_F(WorkInTheWindow, TakesBackNothingFromBeforeTheRun) {
  use([&] {
    OpenDocument& document = open(scratch.put("a.txt", "1" + manyBeginnings()));
    document.passBegins();
    change(document, 1, u"one");
    menu("&Save");
    settle();
    ASSERT_FALSE(document.changed());
    askForReplacement();
    askOver(scratch.path(""));
    click("cmdGetPotentialFiles");
    settle();
    meanwhile([&] { return cancel(), cancels == 2; });
    execute();
    settle();
    EXPECT_EQ(cancels, 2);
    EXPECT_EQ(text(document).substr(0, 3), "one");
    EXPECT_FALSE(document.changed());
  });
  EXPECT_EQ(scratch.get("a.txt").substr(0, 3), "one");
}

TEST_F(WorkInTheWindow, IsEndedBeforeTheWindowCloses) {
  const std::string before = manyBlocks(60'000);
  use([&] {
    OpenDocument& document = open(scratch.put("many.txt", before));
    askForReplacement();
    bool closed = false;
    meanwhile([&] {
      closed = !window->application()->active()->Saved();
      if (!closed) return false;
      window->close();
      EXPECT_TRUE(window->isVisible()) << "the engine is at work";
      return true;
    });
    expectAnswer(QMessageBox::Cancel);  // save the changes?
    execute();
    QTest::qWait(200);
    EXPECT_TRUE(closed);
    EXPECT_NE(text(document).find("[a]secret[b]"), std::string::npos) << "it ended before the end";
  });
  EXPECT_TRUE(scratch.get("many.txt") == before);
}

}  // namespace
}  // namespace pluvo::desktop
