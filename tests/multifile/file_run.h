#pragma once

#include "base/names.h"
#include "base/utf.h"
#include "dialog/frmProcessing.h"
#include "dialog/workplace.h"
#include "multifile/file_driver.h"
#include "scanner/scripted_folders.h"
#include "scripted_word.h"

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pluvo::multifile {

using Story = std::vector<std::string>;

/// An engine with its driver, a scripted word processor and a scripted user, all writing one story. The
/// engine replaces every "A" by "B"; files lie in C:\f and are named by their last name.
class FileRun : private engine::PassObserver {
 public:
  FileRun() : word(story), work(std::shared_ptr<word::Application>(std::shared_ptr<void>(), &word)) {
    auto listed = std::make_unique<scanner::ScriptedFolders>(std::vector<std::string>(), "\\");
    folders = listed.get();
    engine().stepper(std::make_shared<FileDriver>(std::move(listed)));
    engine().observer(this);
    engine().MultiFileRun(true);
    work.ask({.begin = u"A", .operation = engine::kReplace, .text = u"B"});
    work.boxes.beforeAnswer = [this] { story.push_back("box " + asked()); };
    work.forms.user = [this](forms::Form& form) { answer(form); };
  }
  /// From now on the user decides about every block, and is told what was done.
  void stepThrough() {
    engine().ConfirmEachOperationsetting(true);
    engine().QuiteModeSetting(false);
  }

  dialog::clsProcessFind& engine() { return work.engine; }
  static std::string path(const std::string& name) { return "C:\\f\\" + name; }
  ScriptedFile& file(const std::string& name) { return word.files[path(name)]; }
  std::vector<std::u16string> list(const std::vector<std::string>& names) {
    std::vector<std::u16string> paths;
    for (const std::string& name : names) {
      file(name);
      paths.push_back(base::nameText(path(name)));
    }
    return paths;
  }
  void run(const std::vector<std::string>& names) { engine().MultiPLUVO(list(names)); }

  /// The story so far, its entries joined by commas, and a new one from here on.
  std::string told() { return joined(std::exchange(story, {})); }
  static std::string joined(const Story& entries) {
    std::string all;
    for (const std::string& entry : entries) all += (all.empty() ? "" : ", ") + entry;
    return all;
  }

  Story story;
  ScriptedWord word;
  dialog::Workplace work;
  scanner::ScriptedFolders* folders;
  /// What is typed at each question for a password; nothing is Cancel.
  std::deque<std::optional<std::string>> typed;
  /// What happens after each replacement.
  std::function<void()> onOperated;
  /// Whether the user ends the run from the statistics.
  bool endsRun = false;

 private:
  void answer(forms::Form& form) {
    if (form.Name() != u"frmPassword") {
      story.push_back("statistics");
      return forms::press(form, endsRun ? u"cmdExit" : u"cmdContinue");
    }
    ASSERT_FALSE(typed.empty()) << "a password that nobody types";
    EXPECT_EQ(form.control(u"lblInstructions")->Caption(), u"Input Password to Unlock Form.");
    const auto password = typed.front();
    typed.pop_front();
    story.push_back("password " + password.value_or("none"));
    if (password) form.get<forms::TextBox>(u"txtPassword").Text(base::utf16(*password));
    forms::press(form, password ? u"cmdProceed" : u"cmdCancel");
  }
  std::string asked() { return base::utf8(work.boxes.shown.back().title.value_or(u"")); }

  Next operated(const engine::Block&, const errors::Fault*) override {
    story.push_back("replaced in " + word.open.back()->name());
    if (onOperated) onOperated();
    return Next::goOn;
  }
};

/// What happens to a file a that is not as others are; the file b after it is processed all the same.
struct Case {
  std::string story;
  const char* answers = "";
  const char* refused = "-";
  std::deque<std::int32_t> refusals = {};
  std::deque<std::optional<std::string>> typed = {};
  const char* reports = "";
  const char* stillOpen = "";
};

/// In a run made at once, or stepped through.
inline void expectStories(const ScriptedFile& file, const std::vector<Case>& cases, bool stepped = false) {
  for (const Case& one : cases) {
    SCOPED_TRACE(one.story);
    FileRun run;
    run.file("a") = file;
    run.work.boxes.answer(one.answers);
    run.word.refusals[one.refused] = one.refusals;
    run.typed = one.typed;
    if (stepped) {
      run.stepThrough();
      dialog::frmProcessing dialog(run.engine());
      dialog.MultiProcess(run.list({"a", "b"}));
      while (dialog.Visible()) forms::press(dialog, u"cmdPerform");
    } else {
      run.run({"a", "b"});
    }
    EXPECT_EQ(run.told(), one.story + ", open b, activate b, replaced in b, " +
                              (stepped ? "statistics, " : "") + "close b saving");
    EXPECT_EQ(FileRun::joined(run.work.reports), one.reports);
    EXPECT_EQ(run.word.openNames(), one.stillOpen);
    EXPECT_TRUE(run.typed.empty() && run.work.boxes.answers.empty());
  }
}

}  // namespace pluvo::multifile
