#include "dialog/frmProcessing.h"
#include "engine/watched_word.h"
#include "workplace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

namespace pluvo::dialog {
namespace {

/// Of the procedure that was entered last.
TEST(Tags, TellWhereAFaultCameFrom) {
  const auto word = std::make_shared<engine::WatchedApplication>();
  const notation::Sample sample("A¶A A¶A¶");
  word->add(sample.document);
  Workplace work(word);
  frmProcessing dialog(work.engine);
  work.ask({.begin = u"A\rA", .operation = engine::kHighlight, .confirmEach = true, .liftLimits = true});
  std::int32_t index = 0;
  const auto withoutForms = [&](const std::function<void()>& doing) {
    dialog.Visible(true);
    work.forms.changes = [](forms::Form&) { throw errors::outOfMemory(); };
    doing();
    work.forms.changes = nullptr;
  };
  const struct {
    const char* report;
    std::function<void()> doing;
    const char* refused = "-";
    bool hasDocument = true;
  } cases[] = {
      {"91 cpf:27e", [&] { work.engine.InitializeFind(); }, "-", false},
      {"4605 cpf:27a", [&] { work.engine.InitializeFind(), work.engine.FindNextItem(); }, "Selection"},
      {"91 cpf:27c",
       [&] {
         work.engine.InitializeFind();
         work.engine.FindNextItem();
         word->hasDocument = false;
         work.engine.MakeChanges();
       }},
      {"91 cpf:27f", [&] { work.engine.MultiFileRun(true), work.engine.ChangesSummary(); }, "-", false},
      {"91 cpf:42", [&] { work.engine.GetFiles(false, 0); }},
      {"91 cpf:45", [&] { work.engine.MultiPLUVO({}); }},
      {"91 cpf:45a", [&] { work.engine.MultiPLUVO_CloseFile(); }},
      {"91 cpf:45b", [&] { work.engine.MultiPLUVO_OpenNextFile({u"a"}, index); }},
      {"91 cpf:40", [&] { work.engine.BrowseForFolder(); }},
      {"7 fproc:01", [&] { withoutForms([&] { dialog.MultiProcess({}); }); }},
      {"7 fproc:02", [&] { withoutForms([&] { dialog.SingleProcess(); }); }},
      {"7 fproc:04", [&] { withoutForms([&] { dialog.cmdPerform.press(); }); }},
      {"7 fproc:05", [&] { withoutForms([&] { dialog.cmdSkip.press(); }); }}};
  for (const auto& it : cases) {
    word->calls.refused = it.refused;
    word->hasDocument = it.hasDocument;
    it.doing();
    EXPECT_EQ(std::exchange(work.reports, {}), std::vector<std::string>{it.report});
  }
  // Before a pass is prepared nothing is done, under the tag of each all the same.
  Workplace idle(word);
  const std::pair<const char16_t*, std::function<void()>> steps[] = {
      {u"cpf:27a", [&] { idle.engine.FindNextItem(); }},
      {u"cpf:27c", [&] { idle.engine.MakeChanges(); }},
      {u"cpf:27d", [&] { idle.engine.SkipChanges(); }}};
  for (const auto& [tag, doing] : steps) {
    doing();
    EXPECT_EQ(idle.context.locationTag, tag);
  }
}

}  // namespace
}  // namespace pluvo::dialog
