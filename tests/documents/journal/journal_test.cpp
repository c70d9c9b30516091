#include "journal/journal.h"

#include "documents/files/failing_file_system.h"
#include "documents/files/scratch.h"
#include "files/reading.h"
#include "record.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <map>

namespace pluvo::journal {
namespace {

using files::DocumentError;
using files::machineFileSystem;
using files::Problem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

class Journal : public testing::Test {
 protected:
  std::string folder() const { return state_.path("pluvo/runs"); }

  /// Changes a document as a run does.
  static void change(files::FileSystem& system, Recorder& recorder, const std::string& path,
                     const std::string& text) {
    const files::ByteSpan bytes(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
    files::NewVersion version;
    version.write = [&](files::Output& out) { out.write(bytes); };
    version.check = [](const files::Bytes&) {};
    version.beforeReplacing = [&](const files::Replacement& replacement) {
      return recorder.keep(replacement);
    };
    files::replaceFile(system, path, machineFileSystem().statusAt(path).stamp, version);
  }

  /// What happened to each document, by its name, in order.
  std::vector<std::pair<std::string, Outcome>> takeBack(const std::string& run) {
    std::vector<std::pair<std::string, Outcome>> outcomes;
    undo(machineFileSystem(), folder(), run, [&](const Undone& undone) {
      outcomes.emplace_back(undone.path.substr(undone.path.rfind('/') + 1), undone.outcome);
    });
    return outcomes;
  }
  template <class FailingSystem = files::FailingFileSystem>
  void survivesFailures(const std::string& folder);
  std::vector<journal::Run> listed() { return runs(machineFileSystem(), folder()); }

  files::Scratch state_;
  files::Scratch documents_;
};

TEST_F(Journal, TakesBackBytesPermissionsAndTimes) {
  const std::string first = documents_.put("a\nb %.txt", "first");
  const std::string second = documents_.put("second.txt", "second");
  ASSERT_EQ(chmod(first.c_str(), 0604), 0);
  const files::FileStatus before = machineFileSystem().statusAt(first);
  {
    Recorder recorder(machineFileSystem(), folder(), "pluvo replace", kDefaultLimit);
    change(machineFileSystem(), recorder, first, "FIRST");
    change(machineFileSystem(), recorder, second, "");
    change(machineFileSystem(), recorder, first, "twice");
    EXPECT_TRUE(listed().at(0).going);
    EXPECT_THROW(takeBack(listed().at(0).name), DocumentError);
  }
  EXPECT_EQ(machineFileSystem().statusAt(folder()).permissions, 0700U);
  ASSERT_EQ(chmod(first.c_str(), 0666), 0);
  ASSERT_THAT(listed(), SizeIs(1));
  EXPECT_EQ(listed()[0].command, "pluvo replace");
  EXPECT_EQ(listed()[0].documents, 3U);
  EXPECT_EQ(listed()[0].bytes, 16U);

  EXPECT_THAT(takeBack(listed()[0].name),
              ElementsAre(Pair("a\nb %.txt", Outcome::restored), Pair("second.txt", Outcome::restored),
                          Pair("a\nb %.txt", Outcome::restored)));

  EXPECT_EQ(documents_.get("a\nb %.txt"), "first");
  EXPECT_EQ(documents_.get("second.txt"), "second");
  const files::FileStatus after = machineFileSystem().statusAt(first);
  EXPECT_EQ(after.permissions, before.permissions);
  EXPECT_EQ(after.stamp.modifiedSeconds, before.stamp.modifiedSeconds);
  EXPECT_EQ(after.stamp.modifiedNanoseconds, before.stamp.modifiedNanoseconds);
  EXPECT_THAT(listed(), IsEmpty());
  EXPECT_THAT(documents_.names(), SizeIs(2));
}

TEST_F(Journal, LeavesADocumentThatChangedSince) {
  const std::string path = documents_.put("kept.txt", "old");
  const std::string other = documents_.put("other.txt", "old");
  {
    Recorder recorder(machineFileSystem(), folder(), "pluvo delete", kDefaultLimit);
    change(machineFileSystem(), recorder, path, "new");
    change(machineFileSystem(), recorder, other, "new");
  }
  documents_.put("kept.txt", "edited by hand");
  const std::string run = listed().at(0).name;
  EXPECT_THAT(takeBack(run),
              ElementsAre(Pair("other.txt", Outcome::restored), Pair("kept.txt", Outcome::failed)));
  EXPECT_EQ(documents_.get("kept.txt"), "edited by hand");
  EXPECT_EQ(documents_.get("other.txt"), "old");
  // The run stays, so that its originals can still be had; what was put back is not put back twice.
  documents_.put("other.txt", "changed again");
  EXPECT_THAT(takeBack(run), ElementsAre(Pair("kept.txt", Outcome::failed)));
  EXPECT_EQ(listed().at(0).documents, 1U);
}

TEST_F(Journal, StaysWithinItsLimit) {
  const std::string path = documents_.put("file.txt", std::string(40, 'x'));
  const auto runOnce = [&](int times) {
    Recorder recorder(machineFileSystem(), folder(), "run", 100);
    for (int i = 0; i < times; ++i)
      change(machineFileSystem(), recorder, path, std::string(40, static_cast<char>('a' + i)));
    return recorder.notKept();
  };
  EXPECT_EQ(runOnce(1), 0U);
  EXPECT_EQ(runOnce(1), 0U);
  const std::string second = listed().at(1).name;
  EXPECT_EQ(runOnce(1), 0U);
  EXPECT_THAT(listed(), SizeIs(2)) << "the oldest run made room";
  EXPECT_EQ(listed().at(0).name, second);
  EXPECT_EQ(runOnce(3), 1U);
  EXPECT_THAT(listed(), SizeIs(1));
  EXPECT_EQ(listed()[0].notKept, 1U);
}

TEST_F(Journal, ARunThatChangedNothingLeavesNothing) {
  { const Recorder recorder(machineFileSystem(), folder(), "pluvo find", kDefaultLimit); }
  EXPECT_THAT(machineFileSystem().names(folder()), IsEmpty());
  EXPECT_THROW(takeBack("../runs"), DocumentError);
  EXPECT_THROW(takeBack("20260101-000000-0"), DocumentError);
}

/// Whatever call fails, in the run or in the undo, and however often it is tried: in the end every document
/// is as it was.
TEST_F(Journal, SurvivesTheFailureOfAnyCall) { survivesFailures(folder()); }

TEST_F(Journal, SurvivesItOnAnotherDiskThanTheDocuments) {
  const std::filesystem::path disk = "/dev/shm";
  if (!std::filesystem::is_directory(disk)) GTEST_SKIP() << "needs a second disk";
  const files::Scratch other(disk);
  survivesFailures(other.path("runs"));
}

/// The original kept is the document's own file, which others may have open.
TEST_F(Journal, PutsBackNoOriginalThatWasWrittenInto) {
  const std::string path = documents_.put("a.txt", "old");
  std::ofstream open(path, std::ios::app);
  {
    Recorder recorder(machineFileSystem(), folder(), "run", kDefaultLimit);
    change(machineFileSystem(), recorder, path, "new");
  }
  open << "er" << std::flush;
  EXPECT_THAT(takeBack(listed().at(0).name), ElementsAre(Pair("a.txt", Outcome::failed)));
  EXPECT_EQ(documents_.get("a.txt"), "new");
}

template <class FailingSystem>
void Journal::survivesFailures(const std::string& folder) {
  using From = files::FailingFileSystem::From;
  constexpr int kNever = files::FailingFileSystem::kNever;
  const std::map<std::string, std::string> originals = {
      {"a.txt", "one"}, {"b.txt", std::string(300'000, 'b')}, {"later.txt", "two"}};
  const auto change = [&](files::FileSystem& system, const std::vector<std::string>& names) {
    try {
      Recorder recorder(system, folder, "run", kDefaultLimit);
      for (const std::string& name : names)
        Journal::change(system, recorder, documents_.path(name), "changed");
    } catch (const DocumentError&) {
    }
  };
  const auto undoAll = [&](files::FileSystem& system) {
    std::vector<journal::Run> all = runs(machineFileSystem(), folder);
    for (auto run = all.rbegin(); run != all.rend(); ++run) {
      try {
        undo(system, folder, run->name, [](const Undone&) {});
      } catch (const DocumentError&) {
      }
    }
  };
  const auto failsAt = [&](int n, From from, std::size_t which) {
    for (const auto& [name, text] : originals) documents_.put(name, text);
    std::array<std::unique_ptr<FailingSystem>, 3> systems;
    for (std::size_t i = 0; i < systems.size(); ++i)
      systems.at(i) = std::make_unique<FailingSystem>(i == which ? n : kNever, from);
    change(*systems[0], {"a.txt", "b.txt"});
    change(*systems[1], {"later.txt", "a.txt"});
    undoAll(*systems[2]);
    FailingSystem sound;
    undoAll(sound);
    return systems.at(which)->calls() >= n;
  };
  for (const std::size_t which : {0U, 1U, 2U}) {
    for (const auto from : {From::once, From::on}) {
      for (int n = 1; failsAt(n, from, which); ++n) {
        for (const auto& [name, text] : originals)
          EXPECT_TRUE(documents_.get(name) == text) << name << " " << which << ", call " << n;
        EXPECT_THAT(documents_.names(), SizeIs(originals.size())) << which << ", call " << n;
        EXPECT_THAT(runs(machineFileSystem(), folder), IsEmpty()) << which << ", call " << n;
        
        ASSERT_LT(n, 3000);
      }
    }
  }
}

TEST(Record, SurvivesItsLine) {
  Record record{Record::Kind::kept, "/a b/%\xFF\n", 7, "/a b/~x", {}, {1, 2, 3, -4, 5}};
  record.before.permissions = 0640;
  record.before.stamp = {0, 0, 9, 10, 11};
  const auto read = recordOf(std::string_view(lineOf(record)).substr(0, lineOf(record).size() - 1));
  ASSERT_TRUE(read);
  EXPECT_EQ(read->text, record.text);
  EXPECT_EQ(read->beside, record.beside);
  EXPECT_EQ(read->after, record.after);
  EXPECT_EQ(read->before.stamp, record.before.stamp);
  EXPECT_EQ(read->before.permissions, record.before.permissions);

  const std::string whole = lineOf(record) + lineOf({Record::Kind::command, "x", 0, {}, {}, {}});
  for (std::size_t size = 0; size < whole.size(); ++size)
    EXPECT_LE(recordsOf(whole.substr(0, size)).size(), size < lineOf(record).size() ? 0U : 1U) << size;
  for (const char* line : {"", "kept", "kept 1 2 x", "command %4", "command %zz", "other x", "command a b"})
    EXPECT_FALSE(recordOf(line)) << line;
}

}  // namespace
}  // namespace pluvo::journal
