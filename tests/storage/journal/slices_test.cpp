#include "files/reading.h"
#include "journal/slice_recorder.h"
#include "slice_progress.h"
#include "storage/files/failing_file_system.h"
#include "storage/files/scratch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace pluvo::journal {
namespace {

using files::machineFileSystem;

class SliceJournal : public testing::Test {
 protected:
  std::string folder() const { return state_.path("pluvo/runs"); }
  static SliceToBegin slice() { return {{"r", 2, "request", "pluvo replace", {2, 3, 4}}, 1, true}; }

  /// Works on the documents as a run does, and leaves out those that are done.
  void work(files::FileSystem& system, const SliceToBegin& begun = slice()) {
    SliceRecorder recorder(system, folder(), begun, "pluvo replace");
    recorder.list({{first_, "as listed", {}}, {second_, second_, {}}});
    for (const std::string& path : {first_, second_}) {
      const auto earlier = recorder.earlier(path);
      ASSERT_FALSE(earlier && earlier->isUnclear) << path;
      if (earlier) continue;
      files::NewVersion version;
      version.write = [&](base::Output& out) {
        const files::FileContent before = files::readFile(machineFileSystem(), path);
        out.write(before.bytes.view);
        out.write(before.bytes.view.first(1));
      };
      version.check = [](const base::Bytes&) {};
      version.beforeReplacing = [&](const files::Replacement& replacement) {
        return recorder.keep(replacement, "done");
      };
      files::replaceFile(system, path, system.statusAt(path).stamp, version);
      recorder.result(path, "done");
    }
    recorder.end();
  }
  std::string texts() const { return documents_.get("a") + " " + documents_.get("ab"); }

  static std::filesystem::path fastDisk() {
    const std::filesystem::path memory = "/dev/shm";
    return std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path();
  }
  files::Scratch state_{fastDisk()};
  files::Scratch documents_{fastDisk()};
  const std::string first_ = documents_.put("ab", "x");
  const std::string second_ = documents_.put("a", "y");
};

TEST_F(SliceJournal, KnowsWhatIsDoneWhateverCallFails) {
  using From = files::FailingFileSystem::From;
  for (const From from : {From::once, From::on}) {
    bool over = false;
    for (int n = 1; !over; ++n) {
      files::FailingFileSystem failing(n, from);
      try {
        work(failing);
      } catch (const std::exception&) {
        // What it leaves is what this is about.
      }
      over = failing.calls() < n;
      // On a disk that takes no calls any more the lock may stay; the program is gone with it.
      work(machineFileSystem());
      ASSERT_EQ(texts(), "yy xx") << n;
      NamedRun run(machineFileSystem(), folder(), "r");
      ASSERT_EQ(run.slice(1).stage, SliceState::Stage::ended) << n;
      run.takeBack([](const Undone&) {});
      ASSERT_EQ(texts(), "y x") << n;
      ASSERT_THAT(namedRuns(machineFileSystem(), folder()), testing::IsEmpty()) << n;
    }
  }
}

/// An undo that fails somewhere says so, and another one does the rest.
TEST_F(SliceJournal, IsTakenBackOrForgottenWhateverCallFails) {
  SliceToBegin only = slice();
  only.of.slices = 1;
  for (const bool forgets : {false, true}) {
    const auto end = [&](files::FileSystem& system) {
      try {
        NamedRun run(system, folder(), "r");
        bool whole = true;
        const auto note = [&](const Undone& undone) { whole &= undone.outcome != Outcome::failed; };
        forgets ? run.forget() : run.takeBack(note);
        EXPECT_EQ(whole, run.slice(1).stage == SliceState::Stage::neverBegun) << "it says otherwise";
      } catch (const errors::DocumentError&) {
        // It says that something is left.
      }
    };
    bool over = false;
    for (int n = 1; !over; ++n) {
      documents_.put("ab", "x");
      documents_.put("a", "y");
      work(machineFileSystem(), only);
      files::FailingFileSystem failing(n);
      end(failing);
      over = failing.calls() < n;
      end(machineFileSystem());
      ASSERT_EQ(texts(), forgets ? "yy xx" : "y x") << n;
      ASSERT_FALSE(HasFailure()) << n;
    }
  }
}

TEST_F(SliceJournal, TellsItsDocumentsAndAttempts) {
  SliceToBegin begun = slice();
  begun.keepsOriginals = false;
  work(machineFileSystem(), begun);
  work(machineFileSystem());
  const NamedRun run(machineFileSystem(), folder(), "r");
  const SliceState state = run.slice(1);
  EXPECT_THAT(state.attempts, testing::SizeIs(2));
  EXPECT_TRUE(state.attempts.at(0).ended && state.attempts.at(1).ended);
  EXPECT_EQ(state.notKept, 2U);
  EXPECT_EQ(state.kept + state.bytes, 0U);
  EXPECT_EQ(state.documents.at(0).name, "as listed");
  EXPECT_EQ(state.documents.at(1).name, second_);
  EXPECT_THAT(state.documents, testing::SizeIs(2));
  EXPECT_EQ(run.slice(2).stage, SliceState::Stage::neverBegun);

  { const SliceRecorder killed(machineFileSystem(), folder(), slice(), "pluvo replace"); }
  EXPECT_EQ(run.slice(1).stage, SliceState::Stage::brokenOff);
  EXPECT_FALSE(run.slice(1).attempts.at(2).ended);
}

TEST_F(SliceJournal, RefusesWhatIsNoSliceOfTheRun) {
  SliceToBegin request = slice();
  request.of.request = "another";
  SliceToBegin slices = slice();
  slices.of.slices = 3;
  SliceToBegin paths = slice();
  paths.of.list.keys = 5;
  SliceToBegin list = paths;
  list.of.list.count = 3;
  SliceToBegin free = slice();
  free.number = 2;
  const SliceRecorder going(machineFileSystem(), folder(), slice(), "pluvo replace");
  const std::string process = "(process " + std::to_string(getpid()) + " on ";
  for (const auto& [begun, wanted] :
       {std::pair{request, "is of another request: it was begun as 'pluvo replace'. Give the same"},
        {slices, "is in 2 slices, and this is one of 3. Give --slice K/2,"},
        {paths, "here its names lead to other paths"},
        {list, process.c_str()},
        {slice(), process.c_str()},
        {free, ""}}) {
    std::string said;
    try {
      const SliceRecorder refused(machineFileSystem(), folder(), begun, "pluvo replace");
    } catch (const errors::DocumentError& problem) {
      said = problem.what();
    }
    EXPECT_THAT(said, testing::HasSubstr(wanted));
    EXPECT_EQ(said.empty(), *wanted == 0) << said;
  }
  NamedRun run(machineFileSystem(), folder(), "r");
  EXPECT_EQ(run.slice(1).stage, SliceState::Stage::going);
  EXPECT_THROW(run.forget(), errors::DocumentError);
}

/// Two that begin at the same time.
TEST_F(SliceJournal, FindsTheRequestOfAnotherSlice) {
  class Meanwhile : public files::FailingFileSystem {
   public:
    void renameToFree(const files::Place& from, const files::Place& to) override {
      FailingFileSystem::renameToFree(from, to);
      if (to.name != "request") return;
      close(createNew(from));
      FailingFileSystem::renameToFree(from, to);
    }
  } meanwhile;
  work(meanwhile);
  EXPECT_EQ(texts(), "yy xx");
}

/// After a power failure the end of a journal may be missing, and the rest of a name may be another's.
TEST_F(SliceJournal, TakesNoPartOfALineForAnotherDocument) {
  work(machineFileSystem());
  const std::string journal = "pluvo/named/r/1-of-2/journal";
  const std::string whole = state_.get(journal);
  const OwnFolder named = openAllNamed(machineFileSystem(), folder());
  const OwnFolder slice =
      openNamed(machineFileSystem(), openNamed(machineFileSystem(), named, "r"), "1-of-2");
  for (std::size_t length = 0; length < whole.size(); ++length) {
    state_.put(journal, whole.substr(0, length) + kUnlessWhole);
    const SliceProgress progress(machineFileSystem(), slice);
    const auto resultOf = [&](const std::string& key) { return whole.find("result done " + key + " .\n"); };
    for (const SliceProgress::Document& each : progress.documents()) {
      ASSERT_TRUE(each.key == first_ || each.key == second_) << each.key;
      ASSERT_EQ(each.outcome.empty(),
                length < resultOf(each.key) + ("result done " + each.key + " .\n").size())
          << length;
    }
  }
}

}  // namespace
}  // namespace pluvo::journal
