#include "base/utf.h"
#include "dialog/frmProcessing.h"
#include "dialog/workplace.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace pluvo::dialog {
namespace {

using forms::BoxAnswer;
using Box = forms::ScriptedBoxes::Box;
using Faults = std::vector<std::string>;

const Box kQuestion{u"Perform Operation on Selected Text?", forms::Buttons::yesNoCancel,
                    u"Confirm Operation"};
const Box kNothingFound{
    u"P.L.U.V.O. was unable to find any occurances for the given parameters.\r\n\r\nYou might try extending "
    u"the 'no farther apart than' parameters to Entire Document.\r\n\r\nYou can also try leaving off 'Ends "
    u"with' and 'Inside Text' if you are certain the text is within the document.",
    forms::Buttons::ok, u"Couldn't Find Text Block."};

struct ToldObserver : engine::PassObserver {
  void begins() override { told += 'b'; }
  Next searching() override { return told += '?', Next::goOn; }
  void tooFar() override { told += 'f'; }
  Next found(const engine::Block&) override { return told += '!', Next::goOn; }
  Next operated(const engine::Block&, const errors::Fault*) override { return told += 'o', Next::goOn; }
  Next skipped(const engine::Block&) override { return told += 's', Next::goOn; }
  std::string told;
};

TEST(Pass, AsksTellsAndReports) {
  for (const bool exit : {true, false}) {
    Desk desk("A¶¶B AB AB AB AB¶");
    ToldObserver observer;
    desk.work.engine.observer(&observer);
    desk.work.engine.QuiteModeSetting(false);
    desk.work.boxes.answers = {BoxAnswer::no, BoxAnswer::yes, BoxAnswer::no, BoxAnswer::cancel};
    desk.work.forms.user = [&](forms::Form& form) {
      EXPECT_EQ(form.Caption(), u"P.L.U.V.O. Statistics:");
      EXPECT_EQ(form.control(u"lblStats")->Caption(), u"\r\nFound:3\r\n\r\nOperated on:1\r\n\r\nSkipped:2");
      forms::press(form, exit ? u"cmdExit" : u"cmdContinue");
    };
    desk.work.pass({.begin = u"A",
                    .end = u"B",
                    .unit = engine::kParagraphs,
                    .operation = engine::kDelete,
                    .confirmEach = true});
    EXPECT_EQ(desk.text(), "A¶¶B AB  AB AB¶");
    EXPECT_EQ(desk.work.boxes.shown, (std::vector<Box>(4, kQuestion)));
    EXPECT_EQ(observer.told, "b?f?!s?!o?!s?!");
    EXPECT_EQ(desk.work.engine.CancelOperation(), exit);
    EXPECT_EQ(desk.work.lastSummary(), "   1");
  }
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

TEST(Pass, ReportsWhatCannotBePreparedAndFindsNothing) {
  const struct {
    const char* has;
    std::u16string apart;
    Faults reports;
  } cases[] = {{"a document", u"many", {"13 cpf:27e"}},
               {"a document", u"123456", {"6 cpf:27e"}},
               {"Word", u"0", {"4248 cpf:27e", "4248 cpf:27f"}},
               {"", u"0", {"91 cpf:27e", "91 cpf:27", "91 cpf:27f"}}};
  for (const auto& [has, apart, reports] : cases) {
    SCOPED_TRACE(base::utf8(apart) + has);
    Desk desk("A A¶");
    desk.work.ask({.begin = u"A", .operation = engine::kDelete, .confirmEach = true});
    desk.work.engine.InitializeFind();  // a pass before, which is not made
    Workplace none(has[0] == '\0' ? nullptr : std::make_shared<memory::MemoryApplication>());
    Workplace& work = has[0] == 'a' ? desk.work : none;
    work.engine.UnitsApart(apart);
    work.engine.MultiFileRun(true);
    work.engine.GoGetEmFARBOT();
    EXPECT_FALSE(work.engine.FindNextItem());
    work.engine.MakeChanges();
    work.engine.SkipChanges();
    EXPECT_EQ(work.reports, reports);
    EXPECT_EQ(desk.text(), "A A¶");
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
  Request asked{.begin = u"A", .operation = engine::kInsert, .place = engine::kAfter, .text = u"1"};
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
