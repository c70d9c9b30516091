#include "engine/workplace.h"
#include "multifile/file_driver.h"
#include "multifile/scripted_folders.h"
#include "word_stand_in/word_session.h"

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace pluvo::inside_word {
namespace {

using forms::Answer;
using stand_in::WordSession;

/// A run over C:\f\one.doc and C:\f\two.doc that replaces every "A" by "B", and all that the user hears of
/// it.
class FileRun {
 public:
  FileRun() {
    for (const auto* name : {u"one", u"two"}) file(name).text = u"A form";
    work.engine.stepper(std::make_shared<multifile::FileDriver>(
        std::make_unique<multifile::ScriptedFolders>(std::vector<std::string>(), "\\")));
    work.engine.MultiFileRun(true);
    work.ask({.begin = u"A", .operation = engine::kReplace, .text = u"B"});
    work.forms.user = [this](forms::Form& form) { typePassword(form); };
  }

  static stand_in::StoredFile& file(const std::u16string& name) {
    return WordSession::world().fileAt(u"C:\\f\\" + name + u".doc");
  }
  /// Runs, and returns the titles of the boxes and the reports.
  std::vector<std::string> run() {
    work.engine.MultiPLUVO({u"C:\\f\\one.doc", u"C:\\f\\two.doc"});
    std::vector<std::string> heard;
    for (const auto& box : work.boxes.shown) heard.push_back(errors::utf8(box.title.value_or(u"")));
    heard.insert(heard.end(), work.reports.all.begin(), work.reports.all.end());
    return heard;
  }

  WordSession word;
  engine::Workplace work{word.word()};
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

struct Refusal {
  const char* what;
  std::function<void(FileRun&)> prepare;
  std::deque<Answer> answers;
  std::vector<std::string> heard;
  std::u16string oneIsThen;
};

void refuse(const char16_t* member, std::int32_t number) { WordSession::calls().refuse(member, number); }

const std::string kPassword = "Incorrect Password";
const std::string kOpenPassword = "Incorrect Open/Modify Password";

const Refusal kRefusals[] = {
    {"nothing", [](FileRun&) {}, {}, {}, kDone},
    {"the user cancels Word's question for a password",
     [](FileRun&) { FileRun::file(u"one").openPassword = u"key"; },
     {},
     {},
     kOne},
    {"a wrong password to open, tried again",
     [](FileRun& run) {
       FileRun::file(u"one").openPassword = u"key";
       WordSession::world().passwords = {u"Key", u"key"};
       static_cast<void>(run);
     },
     {Answer::yes},
     {kOpenPassword},
     kDone},
    {"a wrong password to change, given up",
     [](FileRun&) {
       FileRun::file(u"one").writePassword = u"key";
       WordSession::world().passwords = {u"Key"};
     },
     {Answer::no},
     {kOpenPassword},
     kOne},
    {"5485 on opening, skipped",
     [](FileRun&) { refuse(u"call Documents.Open", 5485); },
     {Answer::yes},
     {kPassword},
     kOne},
    {"5485 on opening, tried again",
     [](FileRun&) { refuse(u"call Documents.Open", 5485); },
     {Answer::no},
     {kPassword},
     kDone},
    {"any other on opening",
     [](FileRun&) { refuse(u"call Documents.Open", 5121); },
     {},
     {"5121 cpf:44"},
     kOne},
    {"a wrong password to a form, then the right one",
     [](FileRun& run) {
       FileRun::file(u"one").protection = 2;
       FileRun::file(u"one").protectionPassword = u"key";
       run.typed = {u"Key", u"key"};
     },
     {Answer::no},
     {kPassword},
     kDone},
    {"a wrong password to a form, skipped",
     [](FileRun& run) {
       FileRun::file(u"one").protection = 2;
       FileRun::file(u"one").protectionPassword = u"key";
       run.typed = {u"Key"};
     },
     {Answer::yes},
     {kPassword},
     kOne},
    {"no password to a form",
     [](FileRun&) { FileRun::file(u"one").protection = 2; },
     {Answer::yes},
     {"Skip File?"},
     kOne},
    {"4198 on unlocking",
     [](FileRun& run) {
       FileRun::file(u"one").protection = 3;
       run.typed = {u""};
       refuse(u"call Document.Unprotect", 4198);
     },
     {},
     {},
     kOne},
    {"read-only, declined",
     [](FileRun&) { FileRun::file(u"one").readOnly = true; },
     {Answer::no},
     {"Read Only File"},
     kOne},
    {"read-only, Save As cancelled",
     [](FileRun&) { FileRun::file(u"one").readOnly = true; },
     {Answer::yes, Answer::yes},
     {"Read Only File", "Save As Cancelled."},
     kOne},
    {"5155 on closing what is not read-only",
     [](FileRun&) { refuse(u"call Document.Close", 5155); },
     {},
     {"Difficulties Closing Current File."},
     kOne},
    {"4198 on activating", [](FileRun&) { refuse(u"call Document.Activate", 4198); }, {}, {}, kOne},
    {"5485 on activating, tried again",
     [](FileRun&) { refuse(u"call Document.Activate", 5485); },
     {Answer::no},
     {kPassword},
     kDone},
    {"5408 on activating, given up",
     [](FileRun&) { refuse(u"call Document.Activate", 5408); },
     {Answer::no},
     {kOpenPassword},
     kOne},
    {"an edit refused", [](FileRun&) { refuse(u"put Range.Text", 6124); }, {}, {"6124 cpf:31"}, kOne},
};

TEST(Questions, EachRefusalLeadsToItsOwn) {
  for (const Refusal& refusal : kRefusals) {
    SCOPED_TRACE(refusal.what);
    FileRun run;
    refusal.prepare(run);
    run.work.boxes.answers = refusal.answers;
    EXPECT_EQ(run.run(), refusal.heard);
    EXPECT_TRUE(run.work.boxes.answers.empty()) << "a question was not asked";
    EXPECT_EQ(FileRun::file(u"one").text, refusal.oneIsThen);
    EXPECT_EQ(FileRun::file(u"two").text, kDone) << "the next file is worked on all the same";
  }
}

TEST(Questions, AProtectedFormIsProtectedAgain) {
  FileRun run;
  FileRun::file(u"one").protection = 2;
  FileRun::file(u"one").protectionPassword = u"key";
  run.typed = {u"key"};
  EXPECT_EQ(run.run(), std::vector<std::string>());
  EXPECT_EQ(FileRun::file(u"one").protection, 2);
  EXPECT_EQ(FileRun::file(u"one").protectionPassword, u"key");
  EXPECT_EQ(FileRun::file(u"one").text, kDone);
}

}  // namespace
}  // namespace pluvo::inside_word
