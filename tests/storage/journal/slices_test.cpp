#include "files/reading.h"
#include "journal/slice_recorder.h"
#include "slice_progress.h"
#include "storage/files/failing_file_system.h"
#include "storage/files/scratch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pluvo::journal {
namespace {

using files::machineFileSystem;

class SliceJournal : public testing::Test {
 protected:
  std::string folder() const { return state_.path("pluvo/runs"); }
  static SliceToBegin slice() { return {{"r", 2, "request", "pluvo replace", {}}, 1, true}; }

  /// Works on the documents as a run does, and leaves out those that are done.
  void work(files::FileSystem& system) {
    SliceRecorder recorder(system, folder(), slice(), "pluvo replace");
    recorder.list({{first_, first_, {}}, {second_, second_, {}}});
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
