#pragma once

#include "base/names.h"
#include "base/utf.h"
#include "dialog/clsOpenPLUVO.h"
#include "forms/doubles.h"
#include "memory/application.h"
#include "multifile/file_driver.h"
#include "storage/files/scratch.h"
#include "support/notation.h"
#if __has_include("store/opener.h")
#include "store/opener.h"
#endif

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <regex>
#include <string>
#include <utility>
#include <vector>

namespace pluvo::dialog {

/// A clock that goes on by a step at every look, and back to 0 at midnight.
struct ScriptedClock final : forms::Clock {
  double secondsSinceMidnight() override {
    constexpr double kDay = 86400;
    const double shown = now;
    now += step;
    if (now >= kDay) now -= kDay;
    return shown;
  }
  double now = 1000;
  double step = 0.125;
};

struct ScriptedYielding final : forms::Yielding {
  void yield() override {
    ++yields;
    if (meanwhile) meanwhile();
  }
  int yields = 0;
  std::function<void()> meanwhile;
};

/// A system on which some programs can be started.
struct ScriptedLauncher final : forms::Launcher {
  void launchHidden(const std::u16string& commandLine) override {
    tried.push_back(base::utf8(commandLine));
    if (startable.empty() || !commandLine.starts_with(startable)) throw errors::Fault(53, u"File not found");
  }
  std::u16string startable;
  std::vector<std::string> tried;
};

struct ScriptedRandom final : RandomSource {
  void seedFromTimer() override { ++seeds; }
  float draw() override { return next; }
  float next = 0;
  int seeds = 0;
};

/// The dialog over documents in memory, a folder of files, and a user who does as a test says. The user's
/// templates lie in "templates", which is not there yet, and the program in "program".
class OpenedDialog {
 public:
  OpenedDialog() : word(std::make_shared<memory::MemoryApplication>(opener())) {
    std::filesystem::create_directories(folder.at("program"));
    std::filesystem::create_directories(folder.at("documents"));
    word->defaultFilePath(word::wdUserTemplatesPath, u16(folder.path("templates")));
    word->defaultFilePath(word::wdDocumentsPath, u16(folder.path("documents")));
    forms.user = [this](forms::Form& form) { sees(form); };
  }

  static std::u16string u16(const std::string& path) { return base::nameText(path); }

  /// Whether documents are opened from files here; where they are not, that is another word processor's.
#if __has_include("store/opener.h")
  static constexpr bool kOpensFiles = true;
#else
  static constexpr bool kOpensFiles = false;
#endif

  /// Puts a document in the notation of support before the user.
  void document(std::string_view notation) {
    sample = std::make_unique<notation::Sample>(notation);
    word->add(sample->document);
  }
  std::string document() { return notation::print(sample->mainText()); }
  void select(std::int32_t from, std::int32_t to) { word->Selection()->SetRange(from, to); }

  /// What PLUVO.cfg holds.
  void options(const std::string& line) { folder.put("templates/PLUVO/PLUVO.cfg", line + "\r\n"); }
  std::string options() { return folder.get("templates/PLUVO/PLUVO.cfg"); }
  std::string log() { return folder.get("templates/PLUVO/errors.txt"); }

  /// Opens the dialog, does, and closes it. Without anything to do it can be read all the same.
  void open(std::function<void()> doing = {}) {
    doing_ = std::move(doing);
    if (!entry) restart();
    entry->OpenPLUVO();
  }
  DialogServices services(RandomSource& source) {
    DialogServices all{[this] { return word; },    forms, boxes, inputs, clock, yielding, launcher, source,
                       u16(folder.path("program"))};
    all.stepper = [](const RunPlace& place) {
      return std::make_shared<multifile::FileDriver>(place.folders(), place.makePicker);
    };
    return all;
  }
  DialogServices services() { return services(random); }
  /// The dialog is gone, and with it whatever it knew.
  void restart(DialogServices others) {
    dialog_ = nullptr;
    entry = std::make_unique<clsOpenPLUVO>(std::move(others));
  }
  void restart() { restart(services()); }

  forms::Form& dialog() { return *dialog_; }
  forms::TextBox& box(const char16_t* name) { return dialog().get<forms::TextBox>(name); }
  forms::ComboBox& list(const char16_t* name) { return dialog().get<forms::ComboBox>(name); }
  forms::CheckBox& check(const char16_t* name) { return dialog().get<forms::CheckBox>(name); }
  forms::Label& label(const char16_t* name) { return dialog().get<forms::Label>(name); }
  forms::ListBox& files() { return dialog().get<forms::ListBox>(u"lbxPotentialFiles"); }

  void type(const char16_t* name, std::u16string text) { box(name).type(std::move(text)); }
  void choose(const char16_t* name, const std::u16string& text) {
    for (std::size_t row = 0; row < list(name).ListCount(); ++row) {
      if (list(name).List(row, 0) != text) continue;
      list(name).choose(row);
      return;
    }
    ADD_FAILURE() << "no row " << base::utf8(text);
  }
  void tick(const char16_t* name, bool value = true) { check(name).tick(value); }
  void press(const char16_t* name) { forms::press(dialog(), name); }
  std::string display() { return base::utf8(box(u"txtOperationDisplay").Text()); }

  /// "text | title" of what was shown since the last time.
  std::vector<std::string> told() {
    std::vector<std::string> texts;
    for (const auto& box : std::exchange(boxes.shown, {}))
      texts.push_back(base::utf8(box.text) + " | " + base::utf8(box.title.value_or(u"")));
    return texts;
  }
  /// "number tag" of the reports shown since the last time.
  std::vector<std::string> reported() {
    static const std::regex report(R"([^]*information:\r\n\r\n(.*)\r\n\r\nError Code\((-?\d+)\)[^]*)");
    std::vector<std::string> reports = told();
    for (std::string& text : reports) text = std::regex_replace(text, report, "$2 $1");
    return reports;
  }

  /// The reports when this fails once while a user acts: a control that is to look otherwise, "word",
  /// "boxes" or "painting".
  std::vector<std::string> reportedWithout(const std::u16string& what, const std::function<void()>& doing) {
    told();
    failing_ = what;
    const auto fails = [this](const std::u16string& now) {
      if (now == failing_) throw errors::Fault((failing_.clear(), errors::outOfMemory()));
    };
    boxes.beforeAnswer = [&] { fails(u"boxes"); };
    forms.painted = [&](forms::Form&) { fails(u"painting"); };
    // A handler stays.
    if (forms::Control* control = dialog().control(what)) control->changed.handledBy([=] { fails(what); });
    doing();
    EXPECT_EQ(failing_, u"") << "nothing failed";
    boxes.beforeAnswer = nullptr;
    forms.painted = nullptr;
    return reported();
  }

  files::Scratch folder;
  forms::ScriptedForms forms;
  forms::ScriptedBoxes boxes;
  forms::ScriptedInputs inputs;
  ScriptedClock clock;
  ScriptedYielding yielding;
  ScriptedLauncher launcher;
  ScriptedRandom random;
  std::shared_ptr<memory::MemoryApplication> word;
  std::unique_ptr<notation::Sample> sample;
  std::unique_ptr<clsOpenPLUVO> entry;
  /// What the user does about another form that waits.
  std::function<void(forms::Form&)> answers = [this](forms::Form& form) {
    if (auto* stats = dynamic_cast<forms::Label*>(form.control(u"lblStats")))
      statistics.push_back(base::utf8(stats->Caption()));
    forms::press(form, u"cmdContinue");
  };
  std::vector<std::string> statistics;

 private:
  static std::shared_ptr<memory::DocumentOpener> opener() {
#if __has_include("store/opener.h")
    return std::make_shared<store::StoreOpener>(store::Store(),
                                                [](const std::string&) { return std::nullopt; });
#else
    return nullptr;
#endif
  }
  void sees(forms::Form& form) {
    if (form.Name() != frmFAR::kName) return answers(form);
    dialog_ = &form;
    if (auto doing = std::exchange(doing_, {})) doing();
    form.close();
  }

  forms::Form* dialog_ = nullptr;
  std::u16string failing_;
  std::function<void()> doing_;
};

}  // namespace pluvo::dialog
