#include "base/utf.h"
#include "file_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pluvo::multifile {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Box = forms::ScriptedBoxes::Box;

constexpr auto yesNo = forms::Buttons::yesNo;

TEST(MultiPLUVO, ProcessesFileAfterFile) {
  FileRun run;
  run.file("b").text = "nothing¶";
  run.run({"a", "b", "c"});
  EXPECT_EQ(run.told(),
            "open a, activate a, replaced in a, close a saving, open b, activate b, close b, "
            "open c, activate c, replaced in c, close c saving");
  EXPECT_EQ(run.file("a").text, "B¶");
  EXPECT_EQ(run.work.context.runSummary, u"\r\n   1\t\ta\r\n   0\t\tb\r\n   1\t\tc");
  EXPECT_EQ(run.word.openNames(), "");
  run.run({});
  EXPECT_EQ(run.told(), "");
}

TEST(MultiPLUVO, StopsBeforeTheNextFileWhenCancelled) {
  FileRun run;
  run.onOperated = [&] { run.engine().CancelOperation(true); };
  run.run({"a", "b"});
  EXPECT_EQ(run.told(), "open a, activate a, replaced in a, close a saving");
  run.onOperated = {};
  run.run({"b"});
  EXPECT_EQ(run.told(), "open b, activate b, replaced in b, close b saving")
      << "a later run knows nothing of it";
}

TEST(MultiPLUVO, AsksAboutTemporaryFiles) {
  FileRun run;
  run.work.boxes.answer("yn");
  run.run({"~$a", "~b", "c~"});
  EXPECT_EQ(run.told(),
            "box Potential Temporary File, box Potential Temporary File, open ~b, activate ~b, "
            "replaced in ~b, close ~b saving, open c~, activate c~, replaced in c~, close c~ saving");
  // The name counts, not a folder's; without a folder it is the whole path.
  run.work.boxes.answer("y");
  run.word.files["C:\\~f\\a"];
  run.engine().MultiPLUVO({u"C:\\~f\\a", u"~a", u"C:\\f\\"});
  EXPECT_EQ(run.told(),
            "open a, activate a, replaced in a, close a saving, box Potential Temporary File, open ");
  EXPECT_THAT(run.work.reports, ElementsAre("5174 cpf:44"));
}

TEST(MultiPLUVO, GoesOnAsOpeningIsAnswered) {
  const std::string again = "open a: 5485, box Incorrect Password, ";
  expectStories({},
                {
                    {"open a: 4198", "", "open a", {4198}},  // the user gave no password
                    {"open a: 5485, box Incorrect Password", "y", "open a", {5485}},
                    {(again + again + "open a: 4198"), "nn", "open a", {5485, 5485, 4198}},
                    {"open a: 5408, box Incorrect Open/Modify Password", "n", "open a", {5408}},
                    {"open a: 5408, box Incorrect Open/Modify Password, open a, activate a, replaced in a, "
                     "close a saving",
                     "y",
                     "open a",
                     {5408}},
                    {"open a: 5174", "", "open a", {5174}, {}, "5174 cpf:44"},
                    {"open a: 5155", "", "open a", {5155}, {}, "5155 cpf:44"},  // a fault of closing, here
                });
}

TEST(MultiPLUVO, UnlocksAndProtectsAgain) {
  const ScriptedFile locked{.protection = word::wdAllowOnlyFormFields, .password = "p"};
  const std::string start = "open a, activate a, password ";
  const std::string done =
      "password p, unprotect a p, replaced in a, story a 1, protect a 2 p, close a saving";
  const auto all = [&](const std::string& between) { return "open a, activate a, " + between + done; };
  const std::string wrong = "password x, unprotect a x, box Incorrect Password, ";
  expectStories(
      locked,
      {{all(""), "", "-", {}, {"p"}},
       {all(wrong), "n", "-", {}, {"x", "p"}},
       {(start + "x, unprotect a x, box Incorrect Password, close a"), "y", "-", {}, {"x"}},
       {all("password none, box Skip File?, "), "n", "-", {}, {{}, "p"}},
       {(start + "none, box Skip File?, close a"), "y", "-", {}, {{}}},
       {"open a, activate a, protection a: 4605", "", "protection a", {0, 4605}, {}, "4605 cpf:46", "a"},
       {(start + "p, unprotect a: 4198"), "", "unprotect a", {4198}, {"p"}, "", "a"},
       {(start + "p, unprotect a: 4605"), "", "unprotect a", {4605}, {"p"}, "4605 fpass:04", "a"}});
}

TEST(MultiPLUVO, GoesOnAsClosingIsAnswered) {
  const std::string done = "open a, activate a, replaced in a, close a: ";
  const std::string readOnly = "open a, clear a, box Read Only File, activate a, replaced in a, close a: ";
  const std::string trouble = ", box Difficulties Closing Current File.";
  expectStories({.readOnly = true},
                {{"open a, clear a, box Read Only File, close a", "n"},
                 {"open a, clear a, box Read Only File, activate a, replaced in a, close a saving", "y"},
                 {(readOnly + "5155, box Save As Cancelled., close a"), "yy", "close a", {5155}},
                 {(readOnly + "5155, box Save As Cancelled."), "yn", "close a", {5155}, {}, "", "a"},
                 {(readOnly + "5356" + trouble), "y", "close a", {5356}, {}, "5356 cpf:43", "a"}});
  expectStories({}, {{(done + "5155" + trouble), "", "close a", {5155}, {}, "", "a"},  // it became read-only
                     {(done + "5356" + trouble), "", "close a", {5356}, {}, "5356 cpf:43", "a"}});
}

/// Every step of a file that has no error path of its own, under every number that has a meaning, and every
/// answer to it.
TEST(MultiPLUVO, MeetsARefusalAtAnyStep) {
  enum Outcome { leftOpen, closed, retried, runEnds };
  const struct {
    std::int32_t number;
    Outcome outcome;
    std::string answer;
    std::string title;
  } cases[] = {{4198, leftOpen, "", ""},
               {5485, closed, "y", "Incorrect Password"},
               {5485, retried, "n", "Incorrect Password"},
               {5408, retried, "y", "Incorrect Open/Modify Password"},
               {5408, leftOpen, "n", "Incorrect Open/Modify Password"},
               {5155, runEnds, "", ""},
               {4605, runEnds, "", ""}};
  for (const std::string step :
       {"path a", "readonly a", "clear a", "activate a", "protection a", "story a", "protect a"}) {
    const bool afterReadOnlyQuestion = step != "path a" && step != "readonly a" && step != "clear a";
    for (const auto& one : cases) {
      SCOPED_TRACE(step + " " + std::to_string(one.number) + one.answer);
      FileRun run;
      run.file("a") = {.readOnly = true, .protection = word::wdAllowOnlyFormFields, .password = "p"};
      run.typed = {"p"};
      run.word.refusals[step] = {one.number};
      if (afterReadOnlyQuestion) run.work.boxes.answer("y");
      run.work.boxes.answer(one.answer);
      if (!afterReadOnlyQuestion && one.outcome == retried) run.work.boxes.answer("y");
      run.run({"a", "b"});
      const auto has = [&](const std::string& entry) { return std::ranges::count(run.story, entry) != 0; };
      EXPECT_TRUE(has(step + ": " + std::to_string(one.number)));
      EXPECT_EQ(has("box " + one.title), !one.answer.empty());
      EXPECT_EQ(has("close a"), one.outcome == closed);
      EXPECT_EQ(has("close a saving"), one.outcome == retried);
      EXPECT_EQ(has("close b saving"), one.outcome != runEnds);
      EXPECT_EQ(run.word.openNames(), one.outcome == leftOpen || one.outcome == runEnds ? "a" : "");
      EXPECT_EQ(run.work.reports.size(), one.outcome == runEnds ? 1U : 0U);
      EXPECT_THAT(run.work.boxes.answers, IsEmpty());
    }
  }
}

TEST(MultiPLUVO, WordsItsBoxes) {
  FileRun run;
  run.file("a") = {.readOnly = true, .protection = word::wdAllowOnlyFormFields, .password = "p"};
  run.word.refusals["open a"] = {5485, 5408};
  run.word.refusals["close a"] = run.word.refusals["close b"] = {5155};
  run.typed = {"x", {}, "p"};
  run.work.boxes.answer("nyynnny");
  run.run({"a", "b", "~c"});
  const Box wrong{u"The Password supplied was incorrect.  Would you like to Skip this file?", yesNo,
                  u"Incorrect Password"};
  EXPECT_THAT(
      run.work.boxes.shown,
      ElementsAre(
          wrong,
          Box{u"Open/Modify password was incorrect.  Would you like to try and open the file again?", yesNo,
              u"Incorrect Open/Modify Password"},
          Box{u"This file is marked Read Only.\r\n\r\nWould you like to like to continue processing this "
              u"file and perform a 'Save As' later?",
              yesNo, u"Read Only File"},
          wrong, Box{u"Would you like to Skip this file?", yesNo, u"Skip File?"},
          Box{u"Are you sure you want cancel the Save As?", yesNo, u"Save As Cancelled."},
          Box{u"Difficulties closing file:C:\\fb\r\n\r\nYou may need to manually close this file.",
              forms::Buttons::ok, u"Difficulties Closing Current File."},
          Box{u"This filename begins with a tilde  ~  .\r\n\r\nThis typically defines a file that is an open "
              u"temporary file.\r\n\r\nWould you like to skip this file?",
              yesNo, u"Potential Temporary File"}));
}

/// What outlives a file, and a run: the password, and nothing else.
TEST(MultiPLUVO, KeepsThePasswordAlone) {
  FileRun run;
  run.file("a") = {.protection = word::wdAllowOnlyFormFields, .password = "p"};
  run.file("d").readOnly = true;
  run.typed = {"p"};
  run.work.boxes.answer("y");
  run.run({"a", "d"});
  run.told();
  run.run({"b"});
  EXPECT_EQ(run.told(), "open b, activate b, replaced in b, close b saving")
      << "neither protected again, as a was, nor read-only, as d was";
  run.word.refusals["close b"] = {5155};
  run.run({"b"});
  EXPECT_EQ(run.told(), "open b, activate b, close b: 5155, box Difficulties Closing Current File.");
}

TEST(GetFiles, SortsUpTo301Files) {
  for (const std::size_t count : {2U, 301U, 302U}) {
    // In byte order B comes before a; where case does not count, after it.
    std::vector<std::string> files{"C:\\f\\B.txt", "C:\\f\\a.txt"};
    while (files.size() < count) files.push_back("C:\\f\\0" + std::to_string(files.size()) + ".txt");
    FileRun run;
    *run.folders = scanner::ScriptedFolders(files, "\\");
    run.engine().StartingDirectory(u"C:\\f\\");
    run.engine().Masks(u"*.txt");
    const auto found = run.engine().GetFiles(false, 1);
    EXPECT_EQ(found.size(), count);
    EXPECT_EQ(found.back(), count <= 301 ? u"C:\\f\\B.txt" : u"C:\\f\\a.txt");
  }
  FileRun run;
  EXPECT_EQ(run.engine().GetFiles(true, 1), std::vector<std::u16string>{u""}) << "nothing is one empty entry";
}

TEST(GetFiles, HandsOverTheRequestOfTheMoment) {
  FileRun run;
  *run.folders = scanner::ScriptedFolders(
      {"C:\\f\\a.txt", "C:\\f\\g\\b.txt", "C:\\f\\g\\h\\c.txt", "C:\\f\\g\\d.doc"}, "\\");
  run.engine().StartingDirectory(u"C:\\f\\");
  run.engine().Masks(u"*.txt");
  EXPECT_THAT(run.engine().GetFiles(false, 9), ElementsAre(u"C:\\f\\a.txt"));
  EXPECT_THAT(run.engine().GetFiles(true, 1), ElementsAre(u"C:\\f\\a.txt", u"C:\\f\\g\\b.txt"));
  run.engine().StartingDirectory(u"C:\\f\\g\\");
  run.engine().Masks(u"*.doc,*.txt");
  EXPECT_THAT(run.engine().GetFiles(true, 32000),
              ElementsAre(u"C:\\f\\g\\b.txt", u"C:\\f\\g\\d.doc", u"C:\\f\\g\\h\\c.txt"));
}

/// Each file once, however many masks it fits.
TEST(GetFiles, TakesTheKinOfAMaskAndNoOther) {
  const struct {
    const char16_t* masks;
    std::string found;
  } cases[] = {{u"*.doc", "a.doc a.docm b.DOCX"},
               {u"*.DOC,*.docx", "a.doc a.docm b.DOCX"},
               {u"*.dot,*.htm", "a.dotm a.dotx a.htm b.html"},
               {u"*.docx", "b.DOCX"},
               {u"*.txt,*.*,*", "a.doc a.docm a.docs a.dotm a.dotx a.htm a.txt a.xdoc b.DOCX b.html"},
               {u"*.txt", "a.txt"}};
  FileRun run;
  *run.folders = scanner::ScriptedFolders(
      {"C:\\f\\a.doc", "C:\\f\\a.docm", "C:\\f\\b.DOCX", "C:\\f\\a.docs", "C:\\f\\a.xdoc", "C:\\f\\a.dotx",
       "C:\\f\\a.dotm", "C:\\f\\a.htm", "C:\\f\\b.html", "C:\\f\\a.txt"},
      "\\");
  run.engine().StartingDirectory(u"C:\\f\\");
  for (const auto& each : cases) {
    run.engine().Masks(each.masks);
    std::string found;
    for (const std::u16string& file : run.engine().GetFiles(false, 1))
      found += (found.empty() ? "" : " ") + base::utf8(file).substr(5);
    EXPECT_EQ(found, each.found) << base::utf8(each.masks);
  }
}

TEST(BrowseForFolder, GivesTheFolderThatTheUserSelects) {
  struct Picker : dialog::FolderPicker {
    explicit Picker(bool selects) : selects_(selects) {}
    void SetStartingDirectory(const std::u16string& folder) override { folder_ = folder; }
    void choose() override { folder_ += u"\\chosen"; }
    bool selected() const override { return selects_; }
    std::u16string path() const override { return folder_; }
    bool selects_;
    std::u16string folder_;
  };
  for (const bool selects : {true, false}) {
    FileRun run;
    run.engine().stepper(std::make_shared<FileDriver>(scanner::machineFolders(),
                                                      [&] { return std::make_unique<Picker>(selects); }));
    run.engine().BrowseStart(u"C:\\start");
    EXPECT_EQ(run.engine().BrowseForFolder(), selects ? u"C:\\start\\chosen" : u"");
    EXPECT_EQ(run.work.context.locationTag, u"cpf:40");
  }
}

}  // namespace
}  // namespace pluvo::multifile
