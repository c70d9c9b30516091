#include "base/utf.h"
#include "dialog/workplace.h"
#include "multifile/file_driver.h"
#include "scanner/scripted_folders.h"
#include "word_stand_in/word_session.h"

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace pluvo::inside_word {
namespace {

using forms::BoxAnswer;
using stand_in::StoredFile;
using stand_in::WordSession;
using stand_in::World;

/// A run over C:\f\one.doc and C:\f\two.doc that replaces every "A" by "B", and all that the user hears of
/// it.
class FileRun {
 public:
  explicit FileRun(const word_com::Manner& manner = {}) : work(word.word(manner)) {
    for (const auto* name : {u"one", u"two"}) file(name).text = u"A form";
    work.engine.stepper(std::make_shared<multifile::FileDriver>(
        std::make_unique<scanner::ScriptedFolders>(std::vector<std::string>(), "\\")));
    work.engine.MultiFileRun(true);
    work.ask({.begin = u"A", .operation = engine::kReplace, .text = u"B"});
    work.engine.LiftLimitsSetting(manner.careful);
    work.forms.user = [this](forms::Form& form) { typePassword(form); };
  }

  static StoredFile& file(const std::u16string& name) {
    return WordSession::world().fileAt(u"C:\\f\\" + name + u".doc");
  }
  /// Runs, and returns the titles of the boxes and the reports.
  std::vector<std::string> run() {
    work.engine.MultiPLUVO({u"C:\\f\\one.doc", u"C:\\f\\two.doc"});
    std::vector<std::string> heard;
    for (const auto& box : work.boxes.shown) heard.push_back(base::utf8(box.title.value_or(u"")));
    heard.insert(heard.end(), work.reports.begin(), work.reports.end());
    return heard;
  }

  WordSession word;
  dialog::Workplace work;
  std::deque<std::u16string> typed;

 private:
  void typePassword(forms::Form& form) {
    ASSERT_EQ(form.Name(), u"frmPassword");
    if (typed.empty()) return forms::press(form, u"cmdCancel");
    form.get<forms::TextBox>(u"txtPassword").Text(typed.front());
    typed.pop_front();
    forms::press(form, u"cmdProceed");
  }
};

constexpr auto kOne = u"A form";
constexpr auto kDone = u"B form\r";

using Prepare = std::function<void(FileRun&)>;

struct Refusal {
  const char* what;
  Prepare prepare;
  std::deque<BoxAnswer> answers;
  std::vector<std::string> heard;
  std::u16string oneIsThen;
};

Prepare refused(const char16_t* member, std::int32_t number) {
  return [=](FileRun&) { WordSession::calls().refuse(member, number); };
}

/// The first file has such a password, and the user types these.
Prepare locked(std::u16string StoredFile::*password, std::deque<std::u16string> typed) {
  return [=](FileRun& run) {
    FileRun::file(u"one").*password = u"key";
    if (password != &StoredFile::protectionPassword) {
      WordSession::world().passwords = typed;
    } else {
      FileRun::file(u"one").protection = word::wdAllowOnlyFormFields;
      run.typed = typed;
    }
  };
}

void readOnly(FileRun&) { FileRun::file(u"one").readOnly = true; }

const std::string kPassword = "Incorrect Password";
const std::string kOpenPassword = "Incorrect Open/Modify Password";
constexpr auto kToOpen = &StoredFile::openPassword;
constexpr auto kToWrite = &StoredFile::writePassword;
constexpr auto kToEdit = &StoredFile::protectionPassword;

const Refusal kRefusals[] = {
    {"nothing", [](FileRun&) {}, {}, {}, kDone},
    {"the user cancels Word's question for a password", locked(kToOpen, {}), {}, {}, kOne},
    {"a wrong password to open, tried again",
     locked(kToOpen, {u"Key", u"key"}),
     {BoxAnswer::yes},
     {kOpenPassword},
     kDone},
    {"a wrong password to change, given up",
     locked(kToWrite, {u"Key"}),
     {BoxAnswer::no},
     {kOpenPassword},
     kOne},
    {"5485 on opening, skipped", refused(u"call Documents.Open", 5485), {BoxAnswer::yes}, {kPassword}, kOne},
    {"5485 on opening, tried again",
     refused(u"call Documents.Open", 5485),
     {BoxAnswer::no},
     {kPassword},
     kDone},
    {"any other on opening", refused(u"call Documents.Open", 5121), {}, {"5121 cpf:44"}, kOne},
    {"the right password to a form", locked(kToEdit, {u"key"}), {}, {}, kDone},
    {"a wrong password to a form, then the right one",
     locked(kToEdit, {u"Key", u"key"}),
     {BoxAnswer::no},
     {kPassword},
     kDone},
    {"a wrong password to a form, skipped", locked(kToEdit, {u"Key"}), {BoxAnswer::yes}, {kPassword}, kOne},
    {"no password to a form", locked(kToEdit, {}), {BoxAnswer::yes}, {"Skip File?"}, kOne},
    {"4198 on unlocking",
     [](FileRun& run) {
       locked(kToEdit, {u"key"})(run);
       refused(u"call Document.Unprotect", 4198)(run);
     },
     {},
     {},
     kOne},
    {"read-only, declined", readOnly, {BoxAnswer::no}, {"Read Only File"}, kOne},
    {"read-only, Save As cancelled",
     readOnly,
     {BoxAnswer::yes, BoxAnswer::yes},
     {"Read Only File", "Save As Cancelled."},
     kOne},
    {"5155 on closing what is not read-only",
     refused(u"call Document.Close", 5155),
     {},
     {"Difficulties Closing Current File."},
     kOne},
    {"4198 on activating", refused(u"call Document.Activate", 4198), {}, {}, kOne},
    {"5485 on activating, tried again",
     refused(u"call Document.Activate", 5485),
     {BoxAnswer::no},
     {kPassword},
     kDone},
    {"5408 on activating, given up",
     refused(u"call Document.Activate", 5408),
     {BoxAnswer::no},
     {kOpenPassword},
     kOne},
    {"an edit refused", refused(u"put Range.Text", 6124), {}, {"6124 cpf:31"}, kOne},
};

TEST(Questions, EachRefusalLeadsToItsOwn) {
  for (const Refusal& refusal : kRefusals) {
    SCOPED_TRACE(refusal.what);
    FileRun run;
    refusal.prepare(run);
    const StoredFile before = FileRun::file(u"one");
    run.work.boxes.answers = refusal.answers;
    EXPECT_EQ(run.run(), refusal.heard);
    EXPECT_TRUE(run.work.boxes.answers.empty()) << "a question was not asked";
    EXPECT_EQ(FileRun::file(u"one").text, refusal.oneIsThen);
    EXPECT_EQ(FileRun::file(u"one").protection, before.protection) << "a form is protected again";
    EXPECT_EQ(FileRun::file(u"one").protectionPassword, before.protectionPassword);
    EXPECT_EQ(FileRun::file(u"two").text, kDone) << "the next file is worked on all the same";
  }
}

/// Events in Word, and the results of a run over files. They are the first file's text, the saved and the
/// recent files, the number of macros that ran, and the boxes and reports.
struct FileWay {
  const char* what;
  std::function<void(World&)> prepare;
  std::string wanted;
  std::string careful = {};  ///< where it is another with care taken
};

void protect(World& world) {
  StoredFile& one = world.fileAt(u"C:\\f\\one.doc");
  one.protection = word::wdAllowOnlyReading;
  one.protectionPassword = u"key";
}

const FileWay kFileWays[] = {
    {"as Word mostly is", [](World&) {}, "B form; one two; one two", "B form; one two; "},
    {"macros run where they may", [](World& world) { world.ways.runsMacros = true; },
     "B form; one two; one two", "B form; one two; "},
    {"nothing keeps macros from running",
     [](World& world) {
       world.ways.runsMacros = true;
       world.calls.lack(u"Application.AutomationSecurity");
     },
     "B form; one two; one two; 2 macros", "B form; one two; ; 2 macros"},
    {"macros may not be kept from running",
     [](World& world) { world.calls.refuse(u"put Application.AutomationSecurity", 4605); },
     "A form; two; two; 4605 cpf:44", "A form; two; ; 4605 cpf:44"},
    {"a form is reset by protection",
     [](World& world) {
       protect(world);
       world.fileAt(u"C:\\f\\one.doc").blank = u"empty";
       world.ways.resetsForms = true;
     },
     "empty; one two; one two", "B form; one two; "},
    {"files have changes as soon as they are open",
     [](World& world) {
       world.fileAt(u"C:\\f\\one.doc").text = u"form";
       world.ways.opensChanged = true;
     },
     "form; two; one two", "form; two; "},
    {"a protected file that needs no change",
     [](World& world) {
       protect(world);
       world.fileAt(u"C:\\f\\one.doc").text = u"form";
     },
     "form; two; one two", "form; two; "},
    {"the user has it open, with changes",
     [](World& world) { world.add(u"C:\\f\\one.doc", {.text = u"mine"})->saved = false; },
     "mine; one two; one two", "mine; one two; "},
    {"flags of Find that cannot be set to what they are, nor looked at",
     [](World& world) {
       for (const char16_t* flag : {u"put Find.MatchWildcards", u"put Find.MatchSoundsLike",
                                    u"put Find.Forward", u"put Find.MatchCase", u"get Find.MatchKashida"})
         world.calls.on(flag, [](const auto&, VARIANT&, EXCEPINFO&) { return E_FAIL; });
     },
     "B form; one two; one two", "B form; one two; "},
    {"a Word that takes fewer arguments",
     [](World& world) {
       protect(world);
       world.calls.atMost(u"call Documents.Open", 12);
       world.calls.atMost(u"call Document.Protect", 3);
     },
     "A form; ; ; 450 cpf:44; 450 cpf:44", "B form; one two; "},
};

TEST(Ways, OfWordsWithFiles) {
  for (const FileWay& way : kFileWays) {
    for (const bool careful : {false, true}) {
      SCOPED_TRACE(way.what + std::string(careful ? ", carefully" : ""));
      FileRun run(word_com::Manner{.careful = careful});
      World& world = WordSession::world();
      way.prepare(world);
      run.typed = {u"key"};
      const auto heard = run.run();
      std::string outcome = base::utf8(FileRun::file(u"one").text);
      std::erase(outcome, '\r');
      for (const auto* names : {&world.savedFiles, &world.recentFiles}) {
        outcome += ";";
        for (const auto& name : *names) outcome += " " + base::utf8(name.substr(0, name.find(u'.')));
        if (names->empty()) outcome += " ";
      }
      if (world.macrosRun > 0) outcome += "; " + std::to_string(world.macrosRun) + " macros";
      for (const auto& line : heard) outcome += "; " + line;
      EXPECT_EQ(outcome, careful && !way.careful.empty() ? way.careful : way.wanted);
      EXPECT_EQ(world.automationSecurity, 1) << "given back";
    }
  }
}

}  // namespace
}  // namespace pluvo::inside_word
