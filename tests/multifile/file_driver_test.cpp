#include "file_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pluvo::multifile {
namespace {

using forms::Answer;
using testing::ElementsAre;
using testing::IsEmpty;
using Box = forms::ScriptedBoxes::Box;

constexpr auto yes = Answer::yes;
constexpr auto no = Answer::no;

TEST(MultiPLUVO, ProcessesFileAfterFile) {
  FileRun run;
  run.file("b").text = "nothing¶";
  run.run({"a", "b", "c"});
  EXPECT_THAT(run.told(),
              ElementsAre("open a", "activate a", "replaced in a", "close a saving", "open b", "activate b",
                          "close b", "open c", "activate c", "replaced in c", "close c saving"));
  EXPECT_EQ(run.file("a").text, "B¶");
  EXPECT_EQ(run.work.context.runSummary, u"\r\n   1\t\ta\r\n   0\t\tb\r\n   1\t\tc");
  EXPECT_EQ(run.word.openNames(), "");
  run.run({});
  EXPECT_THAT(run.told(), IsEmpty());
}

TEST(MultiPLUVO, StopsBeforeTheNextFileWhenCancelled) {
  FileRun run;
  run.onOperated = [&] { run.engine().CancelOperation(true); };
  run.run({"a", "b"});
  EXPECT_THAT(run.told(), ElementsAre("open a", "activate a", "replaced in a", "close a saving"));
  // A later run knows nothing of it.
  run.onOperated = {};
  run.run({"b"});
  EXPECT_THAT(run.told(), ElementsAre("open b", "activate b", "replaced in b", "close b saving"));
}

TEST(MultiPLUVO, AsksAboutTemporaryFiles) {
  FileRun run;
  run.work.boxes.answers = {yes, no};
  run.run({"~$a", "~b", "c~"});
  EXPECT_THAT(run.told(), ElementsAre("box Potential Temporary File", "box Potential Temporary File",
                                      "open ~b", "activate ~b", "replaced in ~b", "close ~b saving",
                                      "open c~", "activate c~", "replaced in c~", "close c~ saving"));
  EXPECT_EQ(
      run.work.boxes.shown[0],
      (Box{u"This filename begins with a tilde  ~  .\r\n\r\nThis typically defines a file that is an open "
           u"temporary file.\r\n\r\nWould you like to skip this file?",
           forms::Buttons::yesNo, u"Potential Temporary File"}));

  // The name counts, not a folder's; without a folder it is the whole path.
  run.work.boxes.answers = {yes};
  run.word.files["C:\\~f\\a"];
  run.engine().MultiPLUVO({u"C:\\~f\\a", u"~a", u"C:\\f\\"});
  EXPECT_THAT(run.told(), ElementsAre("open a", "activate a", "replaced in a", "close a saving",
                                      "box Potential Temporary File", "open "));
  EXPECT_THAT(run.work.reports.all, ElementsAre("5174 cpf:44"));
}

TEST(MultiPLUVO, AsksAboutReadOnlyFiles) {
  FileRun run;
  run.file("a").readOnly = run.file("b").readOnly = true;
  run.work.boxes.answers = {no, yes};
  run.run({"a", "b"});
  EXPECT_THAT(run.told(),
              ElementsAre("open a", "clear a", "box Read Only File", "close a", "open b", "clear b",
                          "box Read Only File", "activate b", "replaced in b", "close b saving"));
  EXPECT_EQ(
      run.work.boxes.shown[0],
      (Box{u"This file is marked Read Only.\r\n\r\nWould you like to like to continue processing this file "
           u"and perform a 'Save As' later?",
           forms::Buttons::yesNo, u"Read Only File"}));
}

TEST(MultiPLUVO, GoesOnAsOpeningIsAnswered) {
  const struct {
    const char* title;
    std::deque<std::int32_t> refusals;
    std::deque<Answer> answers;
    Story story;
    Story reports;
  } cases[] = {
      {"the user gave no password", {4198}, {}, {"open a: 4198"}, {}},
      {"a wrong password, and the file is skipped",
       {5485},
       {yes},
       {"open a: 5485", "box Incorrect Password"},
       {}},
      {"a wrong password, and another try",
       {5485, 5485, 4198},
       {no, no},
       {"open a: 5485", "box Incorrect Password", "open a: 5485", "box Incorrect Password", "open a: 4198"},
       {}},
      {"a wrong modify password, and no other try",
       {5408},
       {no},
       {"open a: 5408", "box Incorrect Open/Modify Password"},
       {}},
      {"a wrong modify password, and another try",
       {5408},
       {yes},
       {"open a: 5408", "box Incorrect Open/Modify Password", "open a", "activate a", "replaced in a",
        "close a saving"},
       {}},
      {"another fault", {5174}, {}, {"open a: 5174"}, {"5174 cpf:44"}},
      {"a fault of closing, here", {5155}, {}, {"open a: 5155"}, {"5155 cpf:44"}},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.title);
    FileRun run;
    run.word.refusals["open a"] = one.refusals;
    run.work.boxes.answers = one.answers;
    run.run({"a", "b"});
    Story expected = one.story;
    for (const char* step : {"open b", "activate b", "replaced in b", "close b saving"})
      expected.push_back(step);
    EXPECT_EQ(run.told(), expected);
    EXPECT_EQ(run.work.reports.all, one.reports);
    EXPECT_THAT(run.work.boxes.answers, IsEmpty());
    EXPECT_EQ(run.word.openNames(), "");
  }
}

/// Every step of a file that has no error path of its own, under every number that has a meaning, and every
/// answer to it.
TEST(MultiPLUVO, MeetsARefusalAtAnyStep) {
  enum Outcome { leftOpen, closed, retried, runEnds };
  const struct {
    std::int32_t number;
    Outcome outcome;
    std::optional<Answer> answer;
    std::string title;
  } cases[] = {{4198, leftOpen, {}, ""},
               {5485, closed, yes, "Incorrect Password"},
               {5485, retried, no, "Incorrect Password"},
               {5408, retried, yes, "Incorrect Open/Modify Password"},
               {5408, leftOpen, no, "Incorrect Open/Modify Password"},
               {5155, runEnds, {}, ""},
               {4605, runEnds, {}, ""}};
  const struct {
    std::string call;
    bool behindReadOnlyQuestion;
  } steps[] = {{"path a", false},      {"readonly a", false}, {"clear a", false}, {"activate a", true},
               {"protection a", true}, {"story a", true},     {"protect a", true}};
  for (const auto& step : steps) {
    for (const auto& one : cases) {
      SCOPED_TRACE(step.call + " " + std::to_string(one.number) + (one.answer == yes ? " yes" : " no"));
      FileRun run;
      run.file("a") = {.readOnly = true, .protection = word::wdAllowOnlyFormFields, .password = "p"};
      run.typed = {"p"};
      run.word.refusals[step.call] = {one.number};
      auto& answers = run.work.boxes.answers;
      if (one.answer) answers.push_back(*one.answer);
      if (step.behindReadOnlyQuestion) {
        answers.push_front(yes);
      } else if (one.outcome == retried) {
        answers.push_back(yes);
      }
      run.run({"a", "b"});

      const Story story = run.told();
      const auto has = [&](const std::string& entry) {
        return std::find(story.begin(), story.end(), entry) != story.end();
      };
      EXPECT_TRUE(has(step.call + ": " + std::to_string(one.number)));
      EXPECT_EQ(has("box " + one.title), one.answer.has_value());
      EXPECT_EQ(has("close a"), one.outcome == closed);
      EXPECT_EQ(has("close a saving"), one.outcome == retried);
      EXPECT_EQ(has("close b saving"), one.outcome != runEnds);
      EXPECT_EQ(run.word.openNames(), one.outcome == leftOpen || one.outcome == runEnds ? "a" : "");
      EXPECT_EQ(run.work.reports.all.size(), one.outcome == runEnds ? 1U : 0U);
      EXPECT_THAT(answers, IsEmpty());
    }
  }
}

TEST(MultiPLUVO, UnlocksAndProtectsAgain) {
  const struct {
    const char* title;
    std::deque<std::optional<std::string>> typed;
    std::deque<std::int32_t> refusals;
    std::deque<Answer> answers;
    Story story;
    Story reports;
    bool processed;
    const char* stillOpen;
  } cases[] = {
      {"the right password", {"p"}, {}, {}, {"password p", "unprotect a p"}, {}, true, ""},
      {"a wrong one, then the right one",
       {"x", "p"},
       {},
       {no},
       {"password x", "unprotect a x", "box Incorrect Password", "password p", "unprotect a p"},
       {},
       true,
       ""},
      {"a wrong one, and the file is skipped",
       {"x"},
       {},
       {yes},
       {"password x", "unprotect a x", "box Incorrect Password", "close a"},
       {},
       false,
       ""},
      {"none, then not skipped, then the right one",
       {{}, "p"},
       {},
       {no},
       {"password none", "box Skip File?", "password p", "unprotect a p"},
       {},
       true,
       ""},
      {"none, and skipped", {{}}, {}, {yes}, {"password none", "box Skip File?", "close a"}, {}, false, ""},
      {"the command failed", {"p"}, {4198}, {}, {"password p", "unprotect a: 4198"}, {}, false, "a"},
      {"another fault",
       {"p"},
       {4605},
       {},
       {"password p", "unprotect a: 4605"},
       {"4605 fpass:04"},
       false,
       "a"},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.title);
    FileRun run;
    run.file("a") = {.protection = word::wdAllowOnlyFormFields, .password = "p"};
    run.typed = one.typed;
    run.word.refusals["unprotect a"] = one.refusals;
    run.work.boxes.answers = one.answers;
    run.run({"a", "b"});
    Story expected{"open a", "activate a"};
    expected.insert(expected.end(), one.story.begin(), one.story.end());
    if (one.processed)
      for (const char* step : {"replaced in a", "story a 1", "protect a 2 p", "close a saving"})
        expected.push_back(step);
    for (const char* step : {"open b", "activate b", "replaced in b", "close b saving"})
      expected.push_back(step);
    EXPECT_EQ(run.told(), expected);
    EXPECT_EQ(run.work.reports.all, one.reports);
    EXPECT_EQ(run.word.openNames(), one.stillOpen);
    EXPECT_TRUE(run.typed.empty() && run.work.boxes.answers.empty());
  }
}

TEST(MultiPLUVO, GoesOnAsClosingIsAnswered) {
  const struct {
    const char* title;
    bool readOnly;
    std::int32_t number;
    std::deque<Answer> answers;  ///< behind that about a read-only file
    Story story;
    Story reports;
    const char* stillOpen;
  } cases[] = {
      {"the Save As is cancelled for good", true, 5155, {yes}, {"box Save As Cancelled.", "close a"}, {}, ""},
      {"the Save As is cancelled by mistake", true, 5155, {no}, {"box Save As Cancelled."}, {}, "a"},
      {"a file that became read-only", false, 5155, {}, {"box Difficulties Closing Current File."}, {}, "a"},
      {"another fault", false, 5356, {}, {"box Difficulties Closing Current File."}, {"5356 cpf:43"}, "a"},
      {"another fault of a read-only file",
       true,
       5356,
       {},
       {"box Difficulties Closing Current File."},
       {"5356 cpf:43"},
       "a"},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.title);
    FileRun run;
    run.file("a").readOnly = one.readOnly;
    run.word.refusals["close a"] = {one.number};
    run.work.boxes.answers = one.answers;
    Story expected{"open a", "activate a", "replaced in a", "close a: " + std::to_string(one.number)};
    if (one.readOnly) {
      run.work.boxes.answers.push_front(yes);
      expected.insert(expected.begin() + 1, {"clear a", "box Read Only File"});
    }
    expected.insert(expected.end(), one.story.begin(), one.story.end());
    for (const char* step : {"open b", "activate b", "replaced in b", "close b saving"})
      expected.push_back(step);
    run.run({"a", "b"});
    EXPECT_EQ(run.told(), expected);
    EXPECT_EQ(run.work.reports.all, one.reports);
    EXPECT_EQ(run.word.openNames(), one.stillOpen);
    EXPECT_THAT(run.work.boxes.answers, IsEmpty());
  }
}

TEST(MultiPLUVO, WordsWhatItSaysOfClosing) {
  FileRun run;
  run.word.refusals["close a"] = {5155};
  run.run({"a"});
  EXPECT_EQ(run.work.boxes.shown[0],
            (Box{u"Difficulties closing file:C:\\fa\r\n\r\nYou may need to manually close this file.",
                 forms::Buttons::ok, u"Difficulties Closing Current File."}));
  FileRun other;
  other.file("a").readOnly = true;
  other.word.refusals["close a"] = {5155};
  other.work.boxes.answers = {yes, no};
  other.run({"a"});
  EXPECT_EQ(other.work.boxes.shown[1], (Box{u"Are you sure you want cancel the Save As?",
                                            forms::Buttons::yesNo, u"Save As Cancelled."}));
}

TEST(MultiPLUVO, WordsWhatItAsksAboutPasswords) {
  FileRun run;
  run.file("a") = {.protection = word::wdAllowOnlyFormFields, .password = "p"};
  run.word.refusals["open a"] = {5485, 5408};
  run.typed = {"x", {}};
  run.work.boxes.answers = {no, yes, no, yes};
  run.run({"a"});
  const Box wrong{u"The Password supplied was incorrect.  Would you like to Skip this file?",
                  forms::Buttons::yesNo, u"Incorrect Password"};
  const Box again{u"Open/Modify password was incorrect.  Would you like to try and open the file again?",
                  forms::Buttons::yesNo, u"Incorrect Open/Modify Password"};
  const Box skip{u"Would you like to Skip this file?", forms::Buttons::yesNo, u"Skip File?"};
  EXPECT_THAT(run.work.boxes.shown, ElementsAre(wrong, again, wrong, skip));
}

/// What outlives a file, and a run: the password, and nothing else.
TEST(MultiPLUVO, KeepsThePasswordAlone) {
  FileRun run;
  run.file("a") = {.protection = word::wdAllowOnlyFormFields, .password = "p"};
  run.file("c") = {.protection = word::wdAllowOnlyReading, .password = ""};
  run.file("d").readOnly = true;
  run.typed = {"p"};
  run.work.boxes.answers = {yes};
  run.run({"a", "d"});
  run.told();
  run.run({"b"});
  EXPECT_THAT(run.told(), ElementsAre("open b", "activate b", "replaced in b", "close b saving"))
      << "neither protected again, as a was, nor read-only, as d was";
  run.word.refusals["close b"] = {5155};
  run.run({"b"});
  EXPECT_THAT(run.told(),
              ElementsAre("open b", "activate b", "close b: 5155", "box Difficulties Closing Current File."));
}

TEST(GetFiles, SortsUpTo301Files) {
  for (const std::size_t count : {2U, 301U, 302U}) {
    // In byte order B comes before a; where case does not count, behind it.
    std::vector<std::string> files{"C:\\f\\B.txt", "C:\\f\\a.txt"};
    while (files.size() < count) files.push_back("C:\\f\\0" + std::to_string(files.size()) + ".txt");
    FileRun run;
    *run.folders = ScriptedFolders(files, "\\");
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
  *run.folders =
      ScriptedFolders({"C:\\f\\a.txt", "C:\\f\\g\\b.txt", "C:\\f\\g\\h\\c.txt", "C:\\f\\g\\d.doc"}, "\\");
  run.engine().StartingDirectory(u"C:\\f\\");
  run.engine().Masks(u"*.txt");
  EXPECT_THAT(run.engine().GetFiles(false, 9), ElementsAre(u"C:\\f\\a.txt"));
  EXPECT_THAT(run.engine().GetFiles(true, 1), ElementsAre(u"C:\\f\\a.txt", u"C:\\f\\g\\b.txt"));
  run.engine().StartingDirectory(u"C:\\f\\g\\");
  run.engine().Masks(u"*.doc,*.txt");
  EXPECT_THAT(run.engine().GetFiles(true, 32000),
              ElementsAre(u"C:\\f\\g\\b.txt", u"C:\\f\\g\\d.doc", u"C:\\f\\g\\h\\c.txt"));
}

TEST(BrowseForFolder, GivesTheFolderThatTheUserSelects) {
  struct Picker : FolderPicker {
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
    run.engine().stepper(
        std::make_shared<FileDriver>(machineFolders(), [&] { return std::make_unique<Picker>(selects); }));
    run.engine().BrowseStart(u"C:\\start");
    EXPECT_EQ(run.engine().BrowseForFolder(), selects ? u"C:\\start\\chosen" : u"");
    EXPECT_EQ(run.work.context.locationTag, u"cpf:40");
  }
}

}  // namespace
}  // namespace pluvo::multifile
