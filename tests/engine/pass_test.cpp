#include "engine/frmProcessing.h"
#include "engine/workplace.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace pluvo::engine {
namespace {

using forms::Answer;
using Box = forms::ScriptedBoxes::Box;
using Faults = std::vector<std::string>;

const Box kNothingFound{
    u"P.L.U.V.O. was unable to find any occurances for the given parameters.\r\n\r\nYou might try extending "
    u"the 'no farther apart than' parameters to Entire Document.\r\n\r\nYou can also try leaving off 'Ends "
    u"with' and 'Inside Text' if you are certain the text is within the document.",
    forms::Buttons::ok, u"Couldn't Find Text Block."};

TEST(Pass, AsksBeforeEachBlockWhereItIsToBeConfirmed) {
  Desk desk("A1 A2 A3 A4¶");
  std::vector<text::Span> selected;
  desk.work.boxes.beforeAnswer = [&] { selected.push_back(desk.sample.document->selection()); };
  desk.work.boxes.answers = {Answer::yes, Answer::no, Answer::cancel};
  desk.work.pass({.begin = u"A", .operation = kReplace, .text = u"bb", .confirm = true});
  EXPECT_EQ(desk.text(), "bb1 A2 A3 A4¶");
  EXPECT_EQ(selected, (std::vector<text::Span>{{0, 1}, {4, 5}, {7, 8}}));
  EXPECT_EQ(desk.sample.document->selection(), (text::Span{0, 0}));
  EXPECT_EQ(desk.work.lastSummary(), "   1");
  const Box question{u"Perform Operation on Selected Text?", forms::Buttons::yesNoCancel,
                     u"Confirm Operation"};
  EXPECT_EQ(desk.work.boxes.shown, (std::vector<Box>(3, question)));
}

TEST(Pass, GoesOnBehindTheBlockWhereNothingWasDone) {
  // The beginning reaches beyond its block. With limits the search then stays inside it, whatever was to be
  // done to it.
  Desk desk("A¶B¶C A¶B¶C¶");
  desk.work.boxes.answers = {Answer::no, Answer::no};
  desk.work.pass({.begin = u"A\rB\rC", .end = u"B", .operation = kDelete, .on = kBeginning, .confirm = true});
  EXPECT_EQ(desk.work.boxes.shown.size(), 1U);
}

TEST(Pass, EndsWhereTheObserverSaysSo) {
  for (const std::size_t most : {1U, 2U}) {
    Desk desk("A A A¶");
    desk.watch.most = most;
    desk.work.pass({.begin = u"A", .operation = kDelete});
    EXPECT_EQ(desk.work.lastSummary(), "   " + std::to_string(most - 1));
  }
  struct : PassObserver {
    void begins() override { ++passes; }
    Answer skipped(const Block&) override { return Answer::stop; }
    int passes = 0;
  } watch;
  Desk desk("A A A¶");
  desk.work.engine.observer(&watch);
  desk.work.boxes.answers = {Answer::no};
  desk.work.pass({.begin = u"A", .confirm = true});
  EXPECT_EQ(desk.work.boxes.shown.size(), 1U);
  EXPECT_EQ(watch.passes, 1);
}

TEST(Pass, CanBeStoppedWhereNoBlockIsFound) {
  const std::string text = std::string(2000, 'A') + "¶¶b¶";
  for (const bool confirm : {false, true}) {
    Desk desk(text);
    desk.watch.searches = 100;
    desk.work.ask({.begin = u"A", .end = u"b", .apart = u"0", .unit = kParagraphs, .confirm = confirm});
    if (confirm) {
      frmProcessing(desk.work.engine).SingleProcess();
    } else {
      desk.work.engine.GoGetEmFARBOT();
    }
    EXPECT_EQ(desk.watch.searches, 0) << "every rejected candidate asks, none behind the stop";
    EXPECT_TRUE(desk.watch.blocks.empty());
  }
}

TEST(Pass, ReportsWhatItDid) {
  Desk desk("A A A¶");
  desk.work.engine.QuiteModeSetting(false);
  for (const bool exit : {true, false}) {
    desk.work.boxes.answers = {Answer::no, Answer::no, Answer::yes};
    desk.work.forms.user = [&](forms::Form& form) {
      EXPECT_EQ(form.Caption(), u"P.L.U.V.O. Statistics:");
      EXPECT_EQ(form.control(u"lblStats")->Caption(), u"\r\nFound:3\r\n\r\nOperated on:1\r\n\r\nSkipped:2");
      forms::press(form, exit ? u"cmdExit" : u"cmdContinue");
    };
    desk.work.pass({.begin = u"A", .confirm = true});
    EXPECT_EQ(desk.work.engine.CancelOperation(), exit);
  }
  EXPECT_EQ(desk.work.forms.modalRuns, 2);
}

TEST(Pass, HintsWhereItFoundNothing) {
  Desk desk("A¶");
  desk.work.pass({.begin = u"B"});
  EXPECT_TRUE(desk.work.boxes.shown.empty()) << "quiet";
  desk.work.engine.QuiteModeSetting(false);
  desk.work.pass({.begin = u"B"});
  EXPECT_EQ(desk.work.boxes.shown, (std::vector<Box>{kNothingFound}));
  EXPECT_EQ(desk.work.context.runSummary, u"\r\n   0\r\n   0");
}

TEST(Pass, FindsNothingAfterARequestThatCannotBePrepared) {
  for (const bool blockByBlock : {false, true}) {
    SCOPED_TRACE(blockByBlock);
    Desk desk("A A A¶");
    Asked asked{.begin = u"A", .operation = kReplace, .text = u"b", .confirm = blockByBlock};
    desk.watch.most = 1;  // the pass before ends early, so that there is more to find behind it
    desk.work.pass(asked);
    const std::string before = desk.text();
    desk.watch.most = 26;
    notation::Sample other("A A¶");
    desk.application->add(other.document);

    asked.apart = u"123456";
    frmProcessing dialog(desk.work.engine);
    if (blockByBlock) {
      desk.work.ask(asked);
      dialog.SingleProcess();
      EXPECT_FALSE(dialog.Visible());
      EXPECT_FALSE(desk.work.engine.FindNextItem());
      desk.work.engine.MakeChanges();
      desk.work.engine.SkipChanges();
    } else {
      desk.work.pass(asked);
    }
    EXPECT_EQ(desk.work.reports, (Faults{"6 cpf:27e"}));
    EXPECT_EQ(desk.text() + other.print(), before + "A A¶");
    EXPECT_EQ(desk.work.lastSummary(), "   0");
  }
}

TEST(Request, RefusesCodesWiderThanItStores) {
  Desk desk("¶");
  clsProcessFind& engine = desk.work.engine;
  EXPECT_THROW(engine.UnitsApartType(32768), errors::Fault);
  EXPECT_THROW(engine.Operation(-32769), errors::Fault);
  EXPECT_THROW(engine.BeforeOrAfter(100'000), errors::Fault);
  EXPECT_THROW(engine.OperationLocation(1 << 16), errors::Fault);
  EXPECT_NO_THROW(engine.BeforeOrAfter(99));
}

TEST(FindNextItem, IsTrueForConfirmingCallersOnly) {
  Desk desk("x A¶");
  for (const bool confirm : {false, true}) {
    desk.work.ask({.begin = u"A", .confirm = confirm});
    desk.work.engine.InitializeFind();
    EXPECT_EQ(desk.work.engine.FindNextItem(), confirm);
    EXPECT_EQ(desk.sample.document->selection(), confirm ? (text::Span{2, 3}) : (text::Span{0, 0}));
  }
}

TEST(SearchPoint, IsNarrowedTo16BitsUnlessLimitsAreLifted) {
  for (const bool skip : {false, true}) {
    for (const std::size_t before : {32765U, 32766U, 32767U}) {
      for (const bool lift : {false, true}) {
        SCOPED_TRACE(before);
        Desk desk(std::string(before, '.') + "A A¶");
        desk.work.ask({.begin = u"A", .operation = kHighlight, .confirm = true, .lift = lift});
        clsProcessFind& engine = desk.work.engine;
        engine.InitializeFind();
        ASSERT_TRUE(engine.FindNextItem());
        skip ? engine.SkipChanges() : engine.MakeChanges();
        const bool fits = lift || before + 1 <= 32767;
        const char* report = skip ? "6 cpf:27d" : "6 cpf:29";
        EXPECT_EQ(desk.work.reports, fits ? Faults{} : Faults{report});
        ASSERT_TRUE(engine.FindNextItem());
        const auto at = static_cast<text::Position>(fits ? before + 2 : before);
        EXPECT_EQ(desk.sample.document->selection(), (text::Span{at, at + 1}))
            << "it stays where it cannot move";
      }
    }
  }
}

TEST(SkippedCount, Is16BitsWideUnlessLimitsAreLifted) {
  for (const bool lift : {false, true}) {
    Desk desk("A¶");
    desk.work.ask({.begin = u"A", .lift = lift});
    desk.work.engine.InitializeFind();
    for (int i = 0; i < 32768; ++i) desk.work.engine.SkipChanges();
    EXPECT_EQ(desk.work.reports, lift ? Faults{} : Faults{"6 cpf:27d"});
  }
}

class Processing : public testing::Test {
 protected:
  Processing() {
    desk.work.ask({.begin = u"A", .operation = kReplace, .text = u"b", .confirm = true});
    desk.work.engine.QuiteModeSetting(false);
    desk.work.forms.user = [](forms::Form& form) { forms::press(form, u"cmdContinue"); };
  }

  Desk desk{"A A A¶"};
  frmProcessing dialog{desk.work.engine};
};

TEST_F(Processing, StepsThroughTheActiveDocument) {
  desk.work.forms.watched = dialog.Name();
  dialog.SingleProcess();
  EXPECT_TRUE(dialog.Visible());
  EXPECT_EQ(desk.sample.document->selection(), (text::Span{0, 1}));
  dialog.cmdPerform.press();
  EXPECT_EQ(desk.sample.document->selection(), (text::Span{2, 3}));
  dialog.cmdSkip.press();
  dialog.cmdPerform.press();
  EXPECT_FALSE(dialog.Visible());
  EXPECT_EQ(desk.sample.document->selection(), (text::Span{0, 0}));
  EXPECT_EQ(desk.text(), "b A b¶");
  EXPECT_EQ(desk.work.forms.modalRuns, 1);
  EXPECT_EQ(desk.work.forms.visibility, (std::vector<bool>{true, false, true, false, true, false}))
      << "hidden while the engine works";
  EXPECT_EQ(desk.work.lastSummary(), "   2");
}

TEST_F(Processing, OfFilesNeedsAWayToThem) {
  dialog.MultiProcess({u"A"});
  EXPECT_FALSE(dialog.Visible());
  dialog.SingleProcess();
  while (dialog.Visible()) dialog.cmdPerform.press();
  EXPECT_EQ(desk.work.reports, (Faults{"91 cpf:45b"})) << "the active document needs none";
}

}  // namespace
}  // namespace pluvo::engine
