#include "used_window.h"
#include "working.h"

#include <QtTest/QtTest>
#include <gtest/gtest.h>

#include <future>
#include <stdexcept>
#include <string>
#include <thread>

namespace pluvo::desktop {
namespace {

using namespace std::chrono_literals;

TEST(Work, InAnotherThreadLeavesThisOneAlive) {
  Working working;
  working.waitedFor = 0ms;
  std::vector<bool> told;
  working.changed = [&](bool underWay) { told.push_back(underWay); };
  // The work lasts until this thread has dealt with so many events, one after the other.
  std::promise<void> alive;
  int ticks = 0;
  QTimer timer;
  timer.callOnTimeout([&] {
    if (++ticks == 20) alive.set_value();
  });
  timer.start(0);
  std::thread::id worker;
  working.run([&] {
    worker = std::this_thread::get_id();
    EXPECT_EQ(alive.get_future().wait_for(5min), std::future_status::ready);
  });
  timer.stop();
  EXPECT_NE(worker, std::this_thread::get_id());
  EXPECT_GE(ticks, 20);
  EXPECT_TRUE(working.underWay()) << "until the event loop has control";
  QCoreApplication::processEvents();
  EXPECT_FALSE(working.underWay());
  EXPECT_EQ(told, (std::vector<bool>{true, false}));

  EXPECT_THROW(working.run([] { throw std::runtime_error("no"); }), std::runtime_error);
  std::promise<void> within;  // work within work is done at once
  QTimer::singleShot(0, [&] { working.run([&] { within.set_value(); }); });
  working.run([&] { EXPECT_EQ(within.get_future().wait_for(5min), std::future_status::ready); });
}

TEST(Work, ThatIsShortShowsNothing) {
  Working working;
  working.waitedFor = 5min;
  auto now = 0ms;
  working.clock = [&] { return now; };
  std::vector<bool> told;
  working.changed = [&](bool underWay) { told.push_back(underWay); };
  for (const auto& [took, shown] : {std::pair{Working::kEvery - 1ms, 0U}, {Working::kEvery, 2U}}) {
    working.run([] {});
    now += took;
    working.breathe();
    QCoreApplication::processEvents();
    EXPECT_FALSE(working.underWay());
    EXPECT_EQ(told.size(), shown);
  }
}

std::string manyBlocks(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += "words before it [a]secret[b] and behind\n";
  return text;
}

/// 2,000 beginnings, each too far from the one ending.
std::string manyBeginnings() {
  std::string text;
  for (int i = 0; i < 2'000; ++i) text += "[a]\n\n\n";
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
  /// While the engine is at work, does this in every breath until it says that it was done often enough.
  /// A millisecond goes by between two questions of the engine's, however long they take.
  void meanwhile(std::function<bool()> done) {
    done_ = std::move(done);
    window->working().clock = [this] {
      ++asked;
      asking();
      if (done_ && !std::exchange(queued_, true))
        QMetaObject::invokeMethod(
            window.get(), [this] { breath(); }, Qt::QueuedConnection);
      return Working::Milliseconds(asked);
    };
  }
  void cancel() {
    menu("Ca&ncel");
    ++cancels;
    askedAtCancel = asked;
  }
  /// After a cancel the engine asks once more, and not at all about another block.
  void expectSoonEnded() const { EXPECT_LE(asked - askedAtCancel, 3); }

  std::function<void()> asking = [] {};
  int asked = 0;
  int askedAtCancel = 0;
  int cancels = 0;
  int longestGap = 0;  ///< the most questions between two breaths

 private:
  /// Events before the first breath are none: the notice in front of the run breathes too.
  void breath() {
    queued_ = false;
    if (!window->working().breathing()) return;
    if (lastBreath_ > 0) longestGap = std::max(longestGap, asked - lastBreath_);
    lastBreath_ = asked;
    if (done_ && done_()) done_ = nullptr;
  }

  std::function<bool()> done_;
  bool queued_ = false;
  int lastBreath_ = 0;
};

TEST_F(WorkInTheWindow, KeepsItAliveAndCanBeCancelled) {
  use([&] {
    OpenDocument& document = open(scratch.put("many.txt", manyBlocks(2'000)));
    const auto length = [&] { return document.document()->mainText().length(); };
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
    int longestStep = 0;
    int last = before;
    asking = [&] {
      longestStep = std::max(longestStep, last - length());
      last = length();
    };
    execute();
    asking = [] {};
    ASSERT_EQ(cancels, 1) << "the pass never breathed";
    expectSoonEnded();
    EXPECT_LE(longestGap, Working::kEvery.count() + 2);
    EXPECT_EQ(longestStep, 11) << "the engine asks at every block";
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
    expectSoonEnded();
  });
}

class WorkOverFiles : public WorkInTheWindow, public testing::WithParamInterface<int> {};
INSTANTIATE_TEST_SUITE_P(Cancelled, WorkOverFiles, testing::Values(1, 2));

TEST_P(WorkOverFiles, LeavesEachWholeOrUntouched) {
  const std::string before = manyBlocks(1'000);
  for (const char* name : {"a.txt", "b.txt", "c.txt"}) scratch.put(name, before);
  use([&] {
    askForReplacement();
    tick("chkQuiteMode", false);
    askOver(scratch.path(""));
    click("cmdGetPotentialFiles");
    for (int statistics = 0; statistics < 2; ++statistics)
      expectBox([](QWidget& box) { press(box, "cmdContinue"); });
    expectSaying(GetParam() == 1 ? "1 document is left" : "2 documents are left");
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
    tick("chkQuiteMode", false);
    askOver(scratch.path(""));
    click("cmdGetPotentialFiles");
    settle();
    expectSaying("unable to find");
    expectSaying("1 document is left");
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
  const std::string before = manyBlocks(2'000);
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
    settle();
    EXPECT_TRUE(closed);
    EXPECT_NE(text(document).find("[a]secret[b]"), std::string::npos) << "it ended before the end";
  });
  EXPECT_TRUE(scratch.get("many.txt") == before);
}

}  // namespace
}  // namespace pluvo::desktop
