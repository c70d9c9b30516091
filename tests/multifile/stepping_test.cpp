#include "file_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pluvo::multifile {
namespace {

/// A run that the user steps through, block by block and file by file.
class Stepping : public testing::Test {
 protected:
  Stepping() { run.stepThrough(); }

  void start(const std::vector<std::string>& names) { dialog.MultiProcess(run.list(names)); }
  /// The story after a button.
  std::string perform() { return forms::press(dialog, u"cmdPerform"), run.told(); }
  std::string skip() { return forms::press(dialog, u"cmdSkip"), run.told(); }

  FileRun run;
  dialog::frmProcessing dialog{run.engine()};
};

TEST_F(Stepping, PerformsAndSkipsFromFileToFile) {
  run.file("a").text = "A A¶";
  run.file("b").text = "nothing¶";
  start({"a", "b", "c"});
  EXPECT_TRUE(dialog.Visible());
  EXPECT_EQ(run.told(), "open a, activate a");
  EXPECT_EQ(perform(), "replaced in a");
  EXPECT_TRUE(dialog.Visible());
  EXPECT_EQ(skip(),
            "statistics, close a saving, open b, activate b, box Couldn't Find Text Block., close b, "
            "open c, activate c");
  EXPECT_TRUE(dialog.Visible());
  EXPECT_EQ(run.file("a").text, "B A¶");
  EXPECT_EQ(skip(), "statistics, close c");
  EXPECT_FALSE(dialog.Visible());
  EXPECT_EQ(run.work.context.runSummary, u"\r\n   1\t\ta\r\n   0\t\tb\r\n   0\t\tc");
  EXPECT_EQ(run.word.openNames(), "");
}

TEST_F(Stepping, EndsTheRunFromTheStatisticsOfAnyFile) {
  run.endsRun = true;
  start({"a", "b"});
  EXPECT_EQ(perform(), "open a, activate a, replaced in a, statistics, close a saving");
  EXPECT_FALSE(dialog.Visible());
  // The next run begins afresh, also where its first file has no statistics.
  run.endsRun = false;
  run.file("n").text = "nothing¶";
  start({"n", "b"});
  EXPECT_EQ(perform(),
            "open n, activate n, box Couldn't Find Text Block., close n, open b, activate b, replaced in b, "
            "statistics, close b saving");
}

TEST_F(Stepping, LeavesOutWhatTheUserLeavesOut) {
  run.file("b").readOnly = true;
  run.file("d") = {.protection = word::wdAllowOnlyFormFields, .password = "p"};
  run.word.refusals["open c"] = {4198};
  run.typed = {{}};
  run.work.boxes.answer("yny");
  start({"~a", "b", "c", "d", "e", "f"});
  EXPECT_EQ(run.told(),
            "box Potential Temporary File, open b, clear b, box Read Only File, close b, "
            "open c: 4198, open d, activate d, password none, box Skip File?, close d, open e, "
            "activate e");
  EXPECT_EQ(perform(), "replaced in e, statistics, close e saving, open f, activate f");
}

TEST_F(Stepping, ShowsNothingWhenEveryFileIsLeftOut) {
  run.work.boxes.answer("yy");
  start({"~a", "~b"});
  EXPECT_FALSE(dialog.Visible());
  EXPECT_EQ(run.work.context.runSummary, u"");
  start({});
  EXPECT_FALSE(dialog.Visible());
}

TEST_F(Stepping, ClosesAsTheFileIs) {
  const std::string start = "open a, activate a, ";
  expectStories({.protection = word::wdAllowOnlyFormFields, .password = "p"},
                {{start + "password x, unprotect a x, box Incorrect Password, password p, unprotect a p, "
                          "replaced in a, statistics, story a 1, protect a 2 p, close a saving",
                  "n",
                  "-",
                  {},
                  {"x", "p"}}},
                true);
  // The name that this run goes by has a separator, and the question about the Save As is about one without:
  // nobody is asked.
  expectStories({.readOnly = true},
                {{"open a, clear a, box Read Only File, activate a, replaced in a, statistics, close a: 5155",
                  "y",
                  "close a",
                  {5155},
                  {},
                  "",
                  "a"}},
                true);
  expectStories({},
                {{start + "replaced in a, statistics, close a: 5155, box Difficulties Closing Current File.",
                  "",
                  "close a",
                  {5155},
                  {},
                  "",
                  "a"}},
                true);
}

/// Here the numbers have no meaning of their own: whatever is refused is reported, and the run goes on. A
/// file that could not be made ready is closed.
TEST_F(Stepping, ReportsWhatIsRefused) {
  for (const std::string number : {"4198", "5485", "5408", "5155", "4605"}) {
    for (const char* call : {"path a", "readonly a", "activate a", "protection a"}) {
      run.word.refusals[call] = {std::stoi(number)};
      start({"a", "b"});
      EXPECT_THAT(run.told(), testing::EndsWith(call + (": " + number) + ", close a, open b, activate b"));
      EXPECT_TRUE(dialog.Visible());
      EXPECT_EQ(std::exchange(run.work.reports, {}), Story{number + " cpf:44"}) << call;
      EXPECT_EQ(run.word.openNames(), "b");
      skip();
    }
    run.file("c") = {.protection = word::wdAllowOnlyReading};
    run.typed = {""};
    run.word.refusals["protect c"] = {std::stoi(number)};
    start({"c", "b"});
    run.told();
    EXPECT_EQ(perform(),
              "replaced in c, statistics, story c 1, protect c: " + number + ", open b, activate b");
    EXPECT_EQ(std::exchange(run.work.reports, {}), Story{number + " cpf:45a"});
    run.word.open.clear();
  }
  EXPECT_TRUE(run.work.boxes.shown.empty());
}

TEST_F(Stepping, LeavesOpenWhatMayNotOrCannotBeClosed) {
  const struct {
    bool unsaved;
    std::deque<std::int32_t> closing;
    const char* between;
  } cases[] = {{true, {}, ""}, {false, {4605}, "close a: 4605, box Difficulties Closing Current File., "}};
  for (const auto& one : cases) {
    run.file("a").unsaved = one.unsaved;
    run.word.refusals = {{"activate a", {4605}}, {"close a", one.closing}};
    start({"a", "b"});
    EXPECT_EQ(run.told(), std::string("open a, activate a: 4605, ") + one.between + "open b, activate b");
    EXPECT_EQ(run.word.openNames(), "a b");
    skip();
    run.word.open.clear();
  }
}

TEST_F(Stepping, ClosesNothingWhereNothingIsOpen) {
  start({"a"});
  perform();
  run.engine().MultiPLUVO_CloseFile();
  EXPECT_EQ(run.told(), "");
  EXPECT_EQ(run.work.reports, Story{"91 cpf:45a"});
}

}  // namespace
}  // namespace pluvo::multifile
