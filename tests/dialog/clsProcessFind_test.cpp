#include "dialog/frmProcessing.h"
#include "dialog/workplace.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace pluvo::dialog {
namespace {

using forms::Answer;
using Box = forms::ScriptedBoxes::Box;
using Faults = std::vector<std::string>;

const Box kNothingFound{
    u"P.L.U.V.O. was unable to find any occurances for the given parameters.\r\n\r\nYou might try extending "
    u"the 'no farther apart than' parameters to Entire Document.\r\n\r\nYou can also try leaving off 'Ends "
    u"with' and 'Inside Text' if you are certain the text is within the document.",
    forms::Buttons::ok, u"Couldn't Find Text Block."};

TEST(Pass, AsksInABox) {
  Desk desk("A1 A2 A3 A4¶");
  desk.work.boxes.answers = {Answer::yes, Answer::no, Answer::cancel};
  desk.work.pass({.begin = u"A", .operation = engine::kReplace, .text = u"bb", .confirm = true});
  EXPECT_EQ(desk.text(), "bb1 A2 A3 A4¶");
  EXPECT_EQ(desk.work.lastSummary(), "   1");
  const Box question{u"Perform Operation on Selected Text?", forms::Buttons::yesNoCancel,
                     u"Confirm Operation"};
  EXPECT_EQ(desk.work.boxes.shown, (std::vector<Box>(3, question)));
}

TEST(Pass, TellsItsObserver) {
  struct : engine::PassObserver {
    void begins() override { told += 'b'; }
    Answer searching() override { return told += '?', Answer::goOn; }
    void tooFar() override { told += 'f'; }
    Answer found(const engine::Block&) override { return told += '!', Answer::goOn; }
    Answer operated(const engine::Block&, const errors::Fault*) override { return told += 'o', Answer::goOn; }
    Answer skipped(const engine::Block&) override { return told += 's', Answer::stop; }
    std::string told;
  } observer;
  Desk desk("A¶¶B AB AB AB¶");
  desk.work.engine.observer(&observer);
  desk.work.boxes.answers = {Answer::yes, Answer::no};
  desk.work.pass({.begin = u"A", .end = u"B", .unit = engine::kParagraphs, .confirm = true});
  EXPECT_EQ(observer.told, "b?f?!o?!s");
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

TEST(Pass, ReportsWhatFailsAndGoesOn) {
  const struct {
    bool hasWord;
    std::u16string apart;
    bool multi;
    Faults reports;
  } cases[] = {{true, u"many", false, {"13 cpf:27e"}},
               {true, u"123456", false, {"6 cpf:27e"}},
               {true, u"0", true, {"4248 cpf:27e", "4248 cpf:27f"}},
               {false, u"0", true, {"91 cpf:27e", "91 cpf:27", "91 cpf:27f"}}};
  for (const auto& [hasWord, apart, multi, reports] : cases) {
    Workplace work(hasWord ? std::make_shared<memory::MemoryApplication>() : nullptr);
    work.ask({.begin = u"A"});
    work.engine.UnitsApart(apart);
    work.engine.MultiFileRun(multi);
    work.engine.GoGetEmFARBOT();
    EXPECT_EQ(work.reports, reports);
    EXPECT_EQ(work.lastSummary(), multi ? "" : "   0");
  }
}

TEST(Pass, FindsNothingAfterARequestThatCannotBePrepared) {
  for (const bool blockByBlock : {false, true}) {
    SCOPED_TRACE(blockByBlock);
    Desk desk("A A A¶");
    Asked asked{.begin = u"A", .operation = engine::kReplace, .text = u"b", .confirm = blockByBlock};
    desk.work.ask(asked);
    desk.work.engine.InitializeFind();  // a pass before, which is not made
    desk.work.engine.UnitsApart(u"123456");
    frmProcessing dialog(desk.work.engine);
    if (blockByBlock) {
      dialog.SingleProcess();
      EXPECT_FALSE(dialog.Visible());
      EXPECT_FALSE(desk.work.engine.FindNextItem());
      desk.work.engine.MakeChanges();
      desk.work.engine.SkipChanges();
    } else {
      desk.work.engine.GoGetEmFARBOT();
    }
    EXPECT_EQ(desk.work.reports, (Faults{"6 cpf:27e"}));
    EXPECT_EQ(desk.text(), "A A A¶");
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

TEST(Request, TakesTheDistanceAsText) {
  Desk desk("¶");
  const std::pair<const char16_t*, std::int16_t> cases[] = {{u"Same", 0}, {u" 2 ", 2}, {u"2.5", 2},
                                                            {u"3.5", 4},  {u"-1", -1}, {u"32767", 32767}};
  for (const auto& [text, distance] : cases) {
    desk.work.engine.UnitsApart(text);
    desk.work.engine.InitializeFind();
    EXPECT_EQ(desk.work.engine.request().distance, distance);
  }
  EXPECT_TRUE(desk.work.reports.empty());
}

TEST(Request, KeepsTheExtraSpaceOnceAPassHadIt) {
  Desk desk("A¶");
  Asked asked{.begin = u"A", .operation = engine::kInsert, .place = engine::kAfter, .text = u"1"};
  asked.extraSpace = true;
  desk.work.ask(asked);
  EXPECT_FALSE(desk.work.engine.keepsExtraSpace());
  desk.work.pass(asked);
  asked.extraSpace = false;
  desk.work.pass(asked);
  EXPECT_TRUE(desk.work.engine.keepsExtraSpace());
  EXPECT_EQ(desk.text(), "A 1 1¶");
}

TEST(FindNextItem, IsTrueForConfirmingCallersOnly) {
  Desk desk("x A¶");
  for (const bool confirm : {false, true}) {
    desk.work.ask({.begin = u"A"});
    desk.work.engine.InitializeFind();
    desk.work.engine.ConfirmEachOperationsetting(confirm);
    EXPECT_EQ(desk.work.engine.FindNextItem(), confirm);
    EXPECT_EQ(desk.sample.document->selection(), confirm ? (text::Span{2, 3}) : (text::Span{0, 0}));
  }
}

}  // namespace
}  // namespace pluvo::dialog
