#include "fileops/clsFileOperations.h"

#include "base/names.h"
#include "base/utf.h"
#include "errors/reports.h"
#include "forms/doubles.h"
#include "storage/files/scratch.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <deque>

namespace pluvo::fileops {
namespace {

using forms::BoxAnswer;
using Calls = std::vector<std::string>;

/// A machine that writes down what it is asked to do. Calls succeed, unless a test says how the next fail.
class ScriptedActions : public FileActions {
 public:
  ErrorCode copy(const std::u16string& from, const std::u16string& to) override {
    return called(u"copy " + from + u" " + to);
  }
  ErrorCode createFolder(const std::u16string& path) override { return called(u"create " + path); }
  ErrorCode deleteFile(const std::u16string& path) override { return called(u"delete " + path); }
  ErrorCode deleteFolder(const std::u16string& path) override { return called(u"delete " + path); }
  std::optional<std::u16string> systemFolder() override { return system; }
  std::uint32_t startHidden(const std::u16string& line) override { return called(line) == kDone ? 77 : 0; }

  Calls calls;
  std::deque<ErrorCode> results;
  bool fails = false;
  std::optional<std::u16string> system = u"C:\\System";

 private:
  ErrorCode called(const std::u16string& call) {
    calls.push_back(base::utf8(call));
    if (fails) throw errors::outOfMemory();
    if (results.empty()) return kDone;
    const ErrorCode result = results.front();
    results.pop_front();
    return result;
  }
};

struct Workplace {
  explicit Workplace(FileActions& actions, std::u16string separator = u"\\")
      : operations(watched.context, boxes, actions, std::move(separator)) {
    operations.CopyFailed.handledBy(
        [this](ErrorCode error, const std::u16string& from, const std::u16string& to) {
          events.push_back(std::to_string(error) + ' ' + base::utf8(from) + ' ' + base::utf8(to));
        });
  }

  errors::WatchedContext watched;
  forms::ScriptedBoxes boxes;
  Calls events;
  clsFileOperations operations;
};

TEST(Copy, GoesOnAsTheMissingFolderIsAnswered) {
  constexpr const char* kCopy = "copy s\\a d\\b";
  constexpr const char* kCreate = "create d\\";
  const struct {
    const char* story;
    std::deque<ErrorCode> results;
    std::deque<BoxAnswer> answers;
    Calls calls;
    Calls events;
    std::size_t messages;
    std::int32_t policy;
    bool failures;
    const char16_t* folder = u"d\\";
  } cases[] = {
      {"it works", {}, {}, {kCopy}, {}, 0, 0, false},
      {"another error is told", {5}, {}, {kCopy}, {"5 s\\a d\\b"}, 0, 1, true},
      {"asked, the user says no", {3}, {BoxAnswer::no}, {kCopy}, {}, 1, 0, true},
      {"asked, the user says yes", {3}, {BoxAnswer::yes}, {kCopy, kCreate, kCopy}, {}, 1, 0, false},
      {"made without asking", {3}, {}, {kCopy, kCreate, kCopy}, {}, 0, 1, false},
      {"made, and the copy fails", {3, 0, 5}, {}, {kCopy, kCreate, kCopy}, {"5 s\\a d\\b"}, 0, 1, true},
      {"never made", {3}, {}, {kCopy}, {}, 0, 2, true},
      {"a policy that is none", {3}, {}, {kCopy}, {}, 0, 3, false},
      {"missing all the same", {3, 0, 3}, {}, {kCopy, kCreate, kCopy, kCreate}, {}, 0, 1, false},
      {"asked before each attempt",
       {3, 0, 3},
       {BoxAnswer::yes, BoxAnswer::yes},
       {kCopy, kCreate, kCopy, kCreate},
       {},
       2,
       0,
       false},
      {"it cannot be made", {3, 13, 3, 13}, {}, {kCopy, kCreate, kCopy, kCreate}, {}, 2, 1, true},
      {"no folder to ask about", {3}, {}, {"copy s\\a b"}, {}, 0, 0, false, u""},
      {"no folder to make", {3}, {}, {"copy s\\a b"}, {}, 0, 1, false, u""}};
  for (const auto& one : cases) {
    SCOPED_TRACE(one.story);
    ScriptedActions actions;
    Workplace work(actions);
    work.operations.SourcePath(u"s");
    work.operations.SourceFile(u"a");
    work.operations.DestinationPath(one.folder);
    work.operations.DestinationFile(u"b");
    work.operations.AutoCreateFolders(one.policy);
    actions.results = one.results;
    work.boxes.answers = one.answers;
    work.operations.Copy();
    EXPECT_EQ(actions.calls, one.calls);
    EXPECT_EQ(work.operations.Failures(), one.failures);
    EXPECT_EQ(work.events, one.events);
    EXPECT_EQ(work.boxes.shown.size(), one.messages);
    EXPECT_TRUE(work.boxes.answers.empty());
    work.operations.FailuresReset();
    EXPECT_FALSE(work.operations.Failures());
  }
}

TEST(clsFileOperations, WordsItsMessages) {
  ScriptedActions actions;
  Workplace work(actions);
  actions.results = {3, 183};
  work.boxes.answers = {BoxAnswer::yes};
  work.operations.DestinationPath(u"d");
  work.operations.Copy();
  ASSERT_EQ(work.boxes.shown.size(), 2U);
  EXPECT_EQ(work.boxes.shown[0],
            (forms::ScriptedBoxes::Box{u"The Directory d\\ does not exist.  Would you like it created?",
                                       forms::Buttons::yesNo, u"Create Directory"}));
  EXPECT_EQ(work.boxes.shown[1].text, u"Unable to create Directory d\\\r\nError Code:183");
  EXPECT_EQ(work.boxes.shown[1].buttons, forms::Buttons::ok);
}

TEST(clsFileOperations, ReportsAFaultWithItsTag) {
  ScriptedActions actions;
  actions.fails = true;
  Workplace work(actions);
  work.operations.Copy();
  work.operations.CreateFolder();
  work.operations.DeleteFile();
  work.operations.DeleteFolder();
  work.operations.RegisterDLL(u"a");
  work.operations.UnRegisterDLL(u"a");
  EXPECT_EQ(work.watched.reports, (Calls{"7 cfilop:17", "7 cfilop:18", "7 cfilop:19", "7 cfilop:20",
                                         "7 cfilop:21", "7 cfilop:22"}));
}

TEST(clsFileOperations, RegistersAndUnregistersWithTheSystemsTool) {
  ScriptedActions actions;
  Workplace work(actions);
  work.operations.DestinationPath(u"C:\\p");
  work.operations.DestinationFile(u"q.dll");
  work.operations.RegisterDLL(u"");
  work.operations.UnRegisterDLL(u"D:\\x.dll");
  EXPECT_EQ(actions.calls, (Calls{"C:\\System\\regsvr32.exe /s \"C:\\p\\q.dll\"",
                                  "C:\\System\\regsvr32.exe /u /s \"D:\\x.dll\""}));
  EXPECT_FALSE(work.operations.Failures());

  actions.results = {1};
  work.operations.RegisterDLL(u"");
  EXPECT_TRUE(work.operations.Failures()) << "the tool did not start";
  work.operations.FailuresReset();
  actions.system.reset();
  work.operations.UnRegisterDLL(u"");
  EXPECT_TRUE(work.operations.Failures()) << "there is no such tool";
  EXPECT_EQ(actions.calls.size(), 3U);
}

TEST(clsFileOperations, WorksOnTheMachinesFiles) {
  const files::Scratch scratch;
  const auto actions = machineFileActions();
  Workplace work(*actions, u"/");
  auto& operations = work.operations;
  const std::string odd = std::string("a") + files::kOddLetter + ".txt";
  scratch.put(odd, "new");
  scratch.put("b.txt", "old and longer");
  operations.SourcePath(base::nameText(scratch.path("")));
  operations.SourceFile(base::nameText(odd));
  operations.DestinationPath(base::nameText(scratch.path("")));
  operations.DestinationFile(u"b.txt");
  operations.Copy();
  EXPECT_EQ(scratch.get("b.txt"), "new");

  operations.DestinationPath(base::nameText(scratch.path("made")));
  operations.AutoCreateFolders(1);
  operations.Copy();
  EXPECT_EQ(scratch.get("made/b.txt"), "new");
  EXPECT_FALSE(operations.Failures());

  operations.DeletePath(base::nameText(scratch.path("made")));
  operations.DeleteFolder();
  EXPECT_TRUE(operations.Failures()) << "it is not empty";
  operations.FailuresReset();
  operations.DeleteFileName(u"b.txt");
  operations.DeleteFile();
  operations.DeleteFolder();
  EXPECT_FALSE(operations.Failures());
  EXPECT_EQ(scratch.names(), (std::set<std::string>{odd, "b.txt"}));

  operations.SourceFile(u"missing");
  operations.Copy();
  ASSERT_EQ(work.events.size(), 1U) << "once the folder is there again";
  EXPECT_TRUE(work.events[0].starts_with(std::to_string(ENOENT) + " ")) << work.events[0];

#ifndef _WIN32
  operations.RegisterDLL(u"/x.so");
  EXPECT_TRUE(operations.Failures());
#endif
  EXPECT_TRUE(work.watched.reports.empty());
}

TEST(MachineFileActions, GoDeeperThanWindowsPlainCallsDo) {
  const files::Scratch scratch;
  const auto actions = machineFileActions();
  std::u16string folder = base::nameText(scratch.path(""));
  std::vector<std::u16string> made;
  while (folder.size() < 600) {
    folder += std::u16string(99, u'\u00E4');
    ASSERT_EQ(actions->createFolder(folder), kDone) << folder.size();
    made.push_back(folder);
    folder += u'/';
  }
  scratch.put("a", "deep down");
  EXPECT_EQ(actions->copy(base::nameText(scratch.path("a")), folder + u"a"), kDone);
  EXPECT_EQ(actions->copy(folder + u"../a", folder + u"b"), ENOENT) << "names are what they are elsewhere";
  EXPECT_EQ(actions->deleteFile(folder + u"a"), kDone);
  for (; !made.empty(); made.pop_back()) EXPECT_EQ(actions->deleteFolder(made.back()), kDone);
}

}  // namespace
}  // namespace pluvo::fileops
