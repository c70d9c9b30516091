#include "file_run.h"

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace pluvo::inside_word {
namespace {

using forms::Answer;
using stand_in::StoredFile;

constexpr auto kOne = u"A form";
constexpr auto kDone = u"B form\r";

using Prepare = std::function<void(FileRun&)>;

struct Refusal {
  const char* what;
  Prepare prepare;
  std::deque<Answer> answers;
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
     {Answer::yes},
     {kOpenPassword},
     kDone},
    {"a wrong password to change, given up", locked(kToWrite, {u"Key"}), {Answer::no}, {kOpenPassword}, kOne},
    {"5485 on opening, skipped", refused(u"call Documents.Open", 5485), {Answer::yes}, {kPassword}, kOne},
    {"5485 on opening, tried again", refused(u"call Documents.Open", 5485), {Answer::no}, {kPassword}, kDone},
    {"any other on opening", refused(u"call Documents.Open", 5121), {}, {"5121 cpf:44"}, kOne},
    {"the right password to a form", locked(kToEdit, {u"key"}), {}, {}, kDone},
    {"a wrong password to a form, then the right one",
     locked(kToEdit, {u"Key", u"key"}),
     {Answer::no},
     {kPassword},
     kDone},
    {"a wrong password to a form, skipped", locked(kToEdit, {u"Key"}), {Answer::yes}, {kPassword}, kOne},
    {"no password to a form", locked(kToEdit, {}), {Answer::yes}, {"Skip File?"}, kOne},
    {"4198 on unlocking",
     [](FileRun& run) {
       locked(kToEdit, {u"key"})(run);
       refused(u"call Document.Unprotect", 4198)(run);
     },
     {},
     {},
     kOne},
    {"read-only, declined", readOnly, {Answer::no}, {"Read Only File"}, kOne},
    {"read-only, Save As cancelled",
     readOnly,
     {Answer::yes, Answer::yes},
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
     {Answer::no},
     {kPassword},
     kDone},
    {"5408 on activating, given up",
     refused(u"call Document.Activate", 5408),
     {Answer::no},
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

}  // namespace
}  // namespace pluvo::inside_word
