#include "work.h"

#include "used_window.h"

#include <QtTest/QtTest>
#include <gtest/gtest.h>

#include <QtWidgets>
#include <future>
#include <stdexcept>
#include <string>
#include <thread>

namespace pluvo::desktop {
namespace {

using namespace std::chrono_literals;

TEST(Work, InAnotherThreadLeavesThisOneAlive) {
  Work work;
  std::vector<bool> told;
  std::promise<void> isSeen;
  work.changed = [&](bool isShown) {
    told.push_back(isShown);
    if (isShown) isSeen.set_value();
  };
  std::thread::id worker;
  std::thread::id shower;
  bool goesOn = false;
  work.run(
      [&] {
        worker = std::this_thread::get_id();
        EXPECT_EQ(isSeen.get_future().wait_for(5min), std::future_status::ready);
        work.show([&] { shower = std::this_thread::get_id(); });
        EXPECT_THROW(work.show([] { throw std::runtime_error("no"); }), std::runtime_error);
      },
      [&](const std::exception_ptr& thrown) { goesOn = !thrown; });
  EXPECT_TRUE(work.underWay());
  work.wait();
  EXPECT_TRUE(goesOn);
  EXPECT_NE(worker, std::this_thread::get_id());
  EXPECT_EQ(shower, std::this_thread::get_id());
  EXPECT_EQ(told, (std::vector<bool>{true, false}));
}

TEST(Work, ThatIsShortShowsNothing) {
  Work work(24h);
  std::vector<bool> told;
  work.changed = [&](bool isShown) { told.push_back(isShown); };
  int ended = 0;
  work.ended = [&] { ++ended; };
  bool threw = false;
  work.run([] {},
           [&](const std::exception_ptr&) {
             work.run([] { throw std::runtime_error("no"); },
                      [&](const std::exception_ptr& thrown) { threw = thrown != nullptr; });
           });
  work.wait();
  EXPECT_TRUE(threw);
  EXPECT_EQ(ended, 1) << "one work follows the other";
  EXPECT_TRUE(told.empty());
}

std::string manyBlocks(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += "words before it [a]secret[b] and after\n";
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
  /// Does this at each of the engine's questions, which wait for it, until it says that it was done often
  /// enough.
  void meanwhile(std::function<bool()> done) {
    done_ = std::move(done);
    window->watch().comesOn = [this, before = window->watch().comesOn] {
      before();
      ++asked;
      asking();
      if (!done_) return;
      window->work().inWindow([this] {
        if (done_()) done_ = nullptr;
      });
    };
  }
  void cancel() {
    trigger("Ca&ncel");
    ++cancels;
    askedAtCancel = asked;
  }
  /// After a cancel the engine asks nothing more, so that another block is neither sought nor touched.
  void expectSoonEnded() const { EXPECT_EQ(asked, askedAtCancel); }

  std::function<void()> asking = [] {};
  int asked = 0;
  int askedAtCancel = 0;
  int cancels = 0;

 private:
  std::function<bool()> done_;
};

TEST_F(WorkInTheWindow, KeepsItAliveAndCanBeCancelled) {
  use([&] {
    OpenDocument& document = open(scratch.put("many.txt", manyBlocks(2'000)));
    const auto length = [&] { return document.document()->mainText().length(); };
    const int before = length();
    askForReplacement();
    auto& button = control<QPushButton>("cmdExecuteFAR");
    meanwhile([&] {
      if (length() >= before - 1000) return false;
      button.click();
      window->open({scratch.path("other.txt")});
      EXPECT_TRUE(QTest::qWaitFor([&] { return !button.isEnabled(); }, kPatience)) << "a second run";
      type("txtTextToEnter", "typed meanwhile");
      auto& bar = *document.view()->verticalScrollBar();
      bar.setValue(bar.maximum());
      document.view()->selectAll();
      document.view()->grab();
      EXPECT_GE(document.shown().mainText().length(), length()) << "the window is never ahead of the work";
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
    ASSERT_EQ(cancels, 1) << "the pass asked nothing";
    expectSoonEnded();
    EXPECT_EQ(longestStep, 11) << "the engine asks at every block";
    EXPECT_EQ(control<QPlainTextEdit>("txtTextToEnter").toPlainText(), QStringLiteral("typed meanwhile"));
    EXPECT_TRUE(button.isEnabled());
    EXPECT_LT(length(), before);
    EXPECT_EQ(document.shown().mainText().length(), length());
    EXPECT_NE(text(document).find("[a]secret[b]"), std::string::npos) << "it ended before the end";
    menu("&Undo Last Pass");
    EXPECT_EQ(length(), before);
    EXPECT_FALSE(document.changed());
    execute();
    EXPECT_EQ(text(document).find("[a]secret[b]"), std::string::npos) << "a cancel is for one run";
  });
}

TEST_F(WorkInTheWindow, ShowsWhatItsBoxesTellOf) {
  use([&] {
    OpenDocument& document = open(scratch.put("few.txt", manyBlocks(2)));
    askForReplacement();
    tick("chkQuiteMode", false);
    expectBox([&](QWidget& statistics) {
      EXPECT_EQ(text(document.shown()).find("secret"), std::string::npos);
      press(statistics, "cmdContinue");
    });
    execute();
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

/// The work that comes after the pause is of what was cancelled.
TEST_F(WorkInTheWindow, CanBeCancelledInThePauseBeforeIt) {
  use([&] {
    const OpenDocument& document = open(scratch.put("many.txt", manyBlocks(2)));
    const std::string before = text(document);
    askForReplacement();
    control<QPushButton>("cmdExecuteFAR").click();
    trigger("Ca&ncel");
    settle();
    EXPECT_EQ(text(document), before);
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
