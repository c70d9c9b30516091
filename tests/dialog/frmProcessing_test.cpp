#include "dialog/frmProcessing.h"

#include "dialog/workplace.h"

#include <gtest/gtest.h>

namespace pluvo::dialog {
namespace {

using Faults = std::vector<std::string>;

class Processing : public testing::Test {
 protected:
  Processing() {
    desk.work.ask({.begin = u"A", .operation = engine::kReplace, .text = u"b", .confirmEach = true});
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

TEST_F(Processing, TellsInWordsWhatAwaits) {
  const std::u16string sixty(60, u'x');
  const std::pair<Request, std::u16string> cases[] = {
      {{.operation = engine::kInsert,
        .location = engine::kBeginning,
        .place = engine::kAfter,
        .text = u"a\rb\x1F"},
       u"Insert After Beginning: \"a b \""},
      {{.operation = engine::kInsert, .text = sixty}, u"Insert Before Selection: \"" + sixty + u"\""},
      {{.operation = engine::kReplace, .text = sixty + u"y"}, u"Replace Selection: \"" + sixty + u"\u2026\""},
      {{.operation = engine::kDelete, .location = engine::kEnding}, u"Delete Ending"},
      {{.operation = engine::kHighlight, .location = engine::kInsideText}, u"Highlight Inside Text"},
      {{.operation = engine::kNone}, u"None"},
      {{.operation = static_cast<engine::OperationCode>(9),
        .location = static_cast<engine::LocationCode>(-1)},
       u" "}};
  for (auto [asked, words] : cases) {
    asked.begin = u"A";
    asked.confirmEach = true;
    desk.work.ask(asked);
    dialog.SingleProcess();
    EXPECT_EQ(dialog.lblOperation.Caption(), words);
    EXPECT_EQ(dialog.lblFile.Caption(), desk.sample.document->Name());
  }
}

TEST_F(Processing, OfFilesNeedsAWayToThem) {
  dialog.MultiProcess({u"A"});
  EXPECT_FALSE(dialog.Visible());
  dialog.SingleProcess();
  while (dialog.Visible()) dialog.cmdPerform.press();
  EXPECT_EQ(desk.work.reports, (Faults{"91 cpf:45b"})) << "the active document needs none";
}

/// What it does is one step to undo, in whatever way it ends.
TEST_F(Processing, IsOneStepToUndo) {
  std::string& told = desk.application->told;
  for (const bool closes : {false, true}) {
    desk.work.ask({.begin = u"A", .operation = engine::kHighlight, .confirmEach = true});
    dialog.SingleProcess();
    dialog.cmdPerform.press();
    if (closes) dialog.close();
    while (dialog.Visible()) dialog.cmdSkip.press();
    EXPECT_EQ(std::exchange(told, ""), "[<>]");
  }

  // Also where the window for the next block cannot be shown.
  dialog.SingleProcess();
  desk.work.forms.changes = [](forms::Form& each) {
    if (each.Visible()) throw errors::Fault(7, u"Out of windows");
  };
  bool finished = false;
  dialog.Finished.handledBy([&] { finished = true; });
  dialog.cmdPerform.press();
  EXPECT_EQ(told, "[<>]");
  EXPECT_TRUE(finished && !dialog.Visible());
  EXPECT_EQ(desk.work.reports, (Faults{"7 cpf:35"})) << "the tag of the procedure entered last";
}

}  // namespace
}  // namespace pluvo::dialog
