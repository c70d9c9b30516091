#include "journal/journal.h"

#include "files/reading.h"
#include "record.h"
#include "run_folder.h"
#include "storage/files/failing_file_system.h"
#include "storage/files/scratch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <map>
#include <sstream>

namespace pluvo::journal {
namespace {

using errors::DocumentError;
using files::machineFileSystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

class Journal : public testing::Test {
 protected:
  std::string folder() const { return state_.path("pluvo/runs"); }

  /// Changes a document as a run does.
  static void change(files::FileSystem& system, Recorder& recorder, const std::string& path,
                     const std::string& text, std::optional<files::Stamp> opened = std::nullopt) {
    const base::ByteSpan bytes(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
    files::NewVersion version;
    version.write = [&](base::Output& out) { out.write(bytes); };
    version.check = [](const base::Bytes&) {};
    version.beforeReplacing = [&](const files::Replacement& replacement) {
      return recorder.keep(replacement);
    };
    files::replaceFile(system, path, opened ? *opened : system.statusAt(path).stamp, version);
  }

  /// A run of its own, by its name.
  std::string changeOnce(const std::string& path) {
    Recorder recorder(machineFileSystem(), folder(), "run", kDefaultLimit);
    change(machineFileSystem(), recorder, path, "new");
    return listed().back().name;
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
  void survivesFailures(const std::string& folder, std::size_t sizeOfB = 1000);
  static void expectNoParts(const std::string& folder);
  std::vector<journal::Run> listed() { return runs(machineFileSystem(), folder()); }

  static std::filesystem::path fastDisk() {
    const std::filesystem::path memory = "/dev/shm";
    return std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path();
  }

  files::Scratch state_{fastDisk()};
  files::Scratch documents_{fastDisk()};
};

/// Files of one disk that lies in two places, of which no file can be renamed into the other.
class TwoPlaces : public files::FailingFileSystem {
 public:
  using FailingFileSystem::FailingFileSystem;
  void rename(const files::Place& from, const files::Place& to) override {
    FailingFileSystem::rename(from, to);
    if (from.folder == to.folder) return;
    machineFileSystem().rename(to, from);
    throw std::system_error(EXDEV, std::generic_category(), "test");
  }
};

/// A disk that cannot swap, and whose times are of two seconds.
class PlainDisk : public files::FailingFileSystem {
 public:
  using FailingFileSystem::FailingFileSystem;
  files::FileStatus statusAt(const files::Place& place) override {
    return coarse(FailingFileSystem::statusAt(place));
  }
  files::FileStatus status(files::Handle file) override { return coarse(FailingFileSystem::status(file)); }
  void exchange(const files::Place&, const files::Place&) override {
    throw std::system_error(ENOTSUP, std::generic_category(), "test");
  }

 private:
  static files::FileStatus coarse(files::FileStatus status) {
    status.stamp.modifiedSeconds -= status.stamp.modifiedSeconds % 2;
    status.stamp.modifiedNanoseconds = 0;
    return status;
  }
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

/// Many may be of one second, and those in between may be gone.
TEST_F(Journal, ListsRunsInTheirOrder) {
  const std::string path = documents_.put("a.txt", "old");
  std::vector<std::string> commands;
  for (int i = 0; i < 13; ++i) {
    if (i == 12) std::filesystem::remove_all(folder() + "/" + listed().at(0).name);
    commands.push_back("run" + std::to_string(i));
    Recorder recorder(machineFileSystem(), folder(), commands.back(), kDefaultLimit);
    change(machineFileSystem(), recorder, path, commands.back());
  }
  commands.erase(commands.begin());
  std::vector<std::string> found;
  for (const journal::Run& run : listed()) found.push_back(run.command);
  EXPECT_EQ(found, commands);
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
  EXPECT_THROW(takeBack("./" + run), DocumentError);
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

TEST_F(Journal, StaysWithinItsLimitWhileRunsGoOnAtOnce) {
  const auto begin = [&] { return std::make_unique<Recorder>(machineFileSystem(), folder(), "run", 200); };
  const auto keep = [&](Recorder& run, std::size_t size) {
    change(machineFileSystem(), run, documents_.put("file.txt", std::string(size, 'x')), "new");
  };
  keep(*begin(), 40);
  auto early = begin();
  keep(*begin(), 40);
  keep(*early, 100);
  early = nullptr;
  EXPECT_THAT(listed(), SizeIs(3));
  keep(*begin(), 40);
  EXPECT_THAT(listed(), SizeIs(3)) << "the newest run did not know what the early one would keep";
  keep(*begin(), 20);
  EXPECT_THAT(listed(), SizeIs(4));
}

TEST_F(Journal, LiesWhereTheUserOrTheSystemSaysSo) {
  struct Case {
    const char* state;
    const char* home;
    std::optional<std::string> wanted;
  };
  const auto set = [](const char* name, const char* value) {
    value != nullptr ? setenv(name, value, 1) : unsetenv(name);
  };
  for (const Case& each : {Case{"/s", "/h", "/s/pluvo/runs"}, Case{"s", "/h", "/h/.local/state/pluvo/runs"},
                           Case{nullptr, "/h", "/h/.local/state/pluvo/runs"},
                           Case{nullptr, "h", std::nullopt}, Case{"", nullptr, std::nullopt}}) {
    set("XDG_STATE_HOME", each.state);
    set("HOME", each.home);
    EXPECT_EQ(defaultFolder(), each.wanted);
  }
  const std::string made = folderBelow(state_.path("not/../made/yet//"));
  EXPECT_EQ(made, state_.path("made/yet/pluvo/runs"));
  Recorder recorder(machineFileSystem(), made, "run");
  change(machineFileSystem(), recorder, documents_.put("a.txt", "old"), "new");
  EXPECT_EQ(recorder.name(), runs(machineFileSystem(), made).at(0).name);
}

/// After a power failure there would be neither the version that was replaced nor a record of it.
TEST_F(Journal, ReplacesNothingBeforeItsRecordIsOnDisk) {
  class Unflushed : public files::FailingFileSystem {
   public:
    void flush(files::Handle) override { strike(); }
  } unflushed;
  Recorder recorder(unflushed, folder(), "run");
  const std::string path = documents_.put("a.txt", "old");
  EXPECT_THROW(change(machineFileSystem(), recorder, path, "new"), DocumentError);
  EXPECT_EQ(documents_.get("a.txt"), "old");
}

TEST_F(Journal, ARunThatChangedNothingLeavesNothing) {
  { const Recorder recorder(machineFileSystem(), folder(), "pluvo find", kDefaultLimit); }
  EXPECT_THAT(machineFileSystem().names(folder()), IsEmpty());
  EXPECT_THROW(takeBack("../runs"), DocumentError);
  EXPECT_THROW(takeBack("20260101-000000-0"), DocumentError);
}

/// Whatever call fails, in the run or in the undo, and however often it is tried: in the end every document
/// is as it was.
TEST_F(Journal, SurvivesTheFailureOfAnyCall) { survivesFailures(folder(), 300'000); }

TEST_F(Journal, SurvivesItOnAnotherDiskThanTheDocuments) {
  const files::Scratch other;
  survivesFailures(other.path("runs"));
}

TEST_F(Journal, SurvivesItOnADiskInTwoPlaces) { survivesFailures<TwoPlaces>(folder()); }

TEST_F(Journal, SurvivesItOnAPlainDisk) { survivesFailures<PlainDisk>(folder()); }

/// Size and time do not tell them apart where the clock is coarse.
TEST_F(Journal, TellsVersionsOfOneMomentApart) {
  PlainDisk disk;
  const std::string path = documents_.put("a.txt", "one");
  for (const char* text : {"two", "six"}) {
    Recorder recorder(disk, folder(), "run", kDefaultLimit);
    change(disk, recorder, path, text);
  }
  const std::string first = listed().at(0).name;
  const std::string second = listed().at(1).name;
  std::vector<Outcome> outcomes;
  for (const std::string& run : {first, second, first})
    undo(disk, folder(), run, [&](const Undone& undone) {
      outcomes.push_back(undone.outcome);
      if (undone.problem) {
        EXPECT_THAT(undone.problem->what(), testing::StartsWith("The run " + second + " changed"));
      }
    });
  EXPECT_THAT(outcomes, ElementsAre(Outcome::failed, Outcome::restored, Outcome::restored));
  EXPECT_EQ(documents_.get("a.txt"), "one");
}

/// An editor that saves in the very moment in which a run or an undo replaces the document.
TEST_F(Journal, LosesNoVersionThatCameBetween) {
  class Edited : public files::FailingFileSystem {
   public:
    explicit Edited(std::string path) : path_(std::move(path)) {}
    void exchange(const files::Place& one, const files::Place& other) override {
      if (!std::exchange(edited_, true)) {
        std::ofstream(path_ + ".new") << "edited";
        rename(path_ + ".new", path_);
      }
      FailingFileSystem::exchange(one, other);
    }

   private:
    const std::string path_;
    bool edited_ = false;
  };
  const std::string path = documents_.put("a.txt", "old");
  {
    Edited system(path);
    Recorder recorder(system, folder(), "run", kDefaultLimit);
    EXPECT_THROW(change(system, recorder, path, "new"), DocumentError);
  }
  EXPECT_EQ(documents_.get("a.txt"), "edited");
  EXPECT_THAT(documents_.names(), SizeIs(1));
  documents_.put("a.txt", "old");
  changeOnce(path);
  Edited system(path);
  undo(system, folder(), listed().at(0).name,
       [](const Undone& undone) { EXPECT_EQ(undone.outcome, Outcome::failed); });
  EXPECT_EQ(documents_.get("a.txt"), "edited");
  EXPECT_THAT(listed(), SizeIs(1));
}

TEST_F(Journal, FollowsADocumentMovedToAnotherDisk) {
  const files::Scratch other;
  const std::string path = documents_.put("a.txt", "old");
  changeOnce(path);
  std::filesystem::copy(path, other.path("a.txt"));
  std::filesystem::last_write_time(other.path("a.txt"), std::filesystem::last_write_time(path));
  std::filesystem::remove(path);
  std::filesystem::create_symlink(other.path("a.txt"), path);
  EXPECT_THAT(takeBack(listed().at(0).name), ElementsAre(Pair("a.txt", Outcome::restored)));
  EXPECT_EQ(other.get("a.txt"), "old");
}

/// After a power failure a version may lie there in part, and the disk may have another number.
TEST_F(Journal, ClearsWhatTheRunLeftBesideDocuments) {
  Record record{Record::Kind::kept, documents_.path("a.txt"), 0, "~x", {}, {}};
  const OwnFolder run(machineFileSystem(), state_.path(""), state_.path(""));
  const auto isCleared = [&](const char* content, std::uint64_t inodeAway) {
    documents_.put("~x", content);
    const files::Stamp found = machineFileSystem().statusAt(documents_.path("~x")).stamp;
    record.after = found;
    record.after.device += 1;
    record.after.inode += inodeAway;
    record.after.size = 3;
    clearBeside(machineFileSystem(), run, record, folderOf(machineFileSystem(), record));
    return documents_.names().empty();
  };
  EXPECT_TRUE(isCleared("new", 0));
  EXPECT_TRUE(isCleared("n", 0));
  EXPECT_FALSE(isCleared("old, written into", 1));
}

/// The original kept is the document's own file, which others may have open.
TEST_F(Journal, PutsBackNoOriginalThatWasWrittenInto) {
  const std::string path = documents_.put("a.txt", "old");
  std::ofstream open(path, std::ios::app);
  changeOnce(path);
  open << "er" << std::flush;
  EXPECT_THAT(takeBack(listed().at(0).name), ElementsAre(Pair("a.txt", Outcome::failed)));
  EXPECT_EQ(documents_.get("a.txt"), "new");
}

/// On a full disk a part of a copy would take what room there is.
void Journal::expectNoParts(const std::string& folder) {
  if (!machineFileSystem().exists(folder)) return;
  const OwnFolder runs = openRuns(machineFileSystem(), folder);
  for (const std::string& name : runNames(machineFileSystem(), runs)) {
    const OwnFolder run = openRun(machineFileSystem(), runs, name);
    std::set<std::string> known = {"journal", "lock"};
    for (const Record& record : keptOf(recordsIn(machineFileSystem(), run).value()))
      known.insert(std::to_string(record.number));
    for (const std::string& file : machineFileSystem().names(run.at(".")))
      EXPECT_TRUE(known.contains(file)) << file;
  }
}

template <class FailingSystem>
void Journal::survivesFailures(const std::string& folder, std::size_t sizeOfB) {
  using From = files::FailingFileSystem::From;
  constexpr int kNever = files::FailingFileSystem::kNever;
  const std::map<std::string, std::string> originals = {
      {"a.txt", "one"}, {"b.txt", std::string(sizeOfB, 'b')}, {"later.txt", "two"}};
  const auto change = [&](files::FileSystem& system, const std::vector<std::string>& names) {
    try {
      Recorder recorder(system, folder, "run", kDefaultLimit);
      for (const std::string& name : names) {
        try {
          Journal::change(system, recorder, documents_.path(name), "changed");
        } catch (const DocumentError&) {
        } catch (const std::system_error&) {
        }
      }
    } catch (const DocumentError&) {
    }
  };
  const auto undoAll = [&](files::FileSystem& system) {
    std::vector<journal::Run> all = runs(machineFileSystem(), folder);
    for (auto run = all.rbegin(); run != all.rend(); ++run) {
      try {
        bool whole = true;
        undo(system, folder, run->name,
             [&](const Undone& undone) { whole &= undone.outcome != Outcome::failed; });
        EXPECT_FALSE(whole && std::filesystem::exists(folder + "/" + run->name)) << "it says nothing";
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
    if (from == From::once) expectNoParts(folder);
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
        ASSERT_FALSE(HasFailure());
        ASSERT_LT(n, 3000);
        std::filesystem::remove_all(folder);
      }
    }
  }
}

/// Even where the run that was taken back is not the newest, which is the only one that a new run looks into.
TEST_F(Journal, ClearsWhatAKilledUndoLeft) {
  const auto names = [&] { return machineFileSystem().names(folder()); };
  bool isKilled = true;
  for (int n = 1; isKilled; ++n) {
    for (const char* name : {"a.txt", "b.txt", "c.txt"}) changeOnce(documents_.put(name, "old"));
    files::FailingFileSystem killed(n, files::FailingFileSystem::From::on);
    try {
      undo(killed, folder(), listed().at(0).name, [](const Undone&) {});
    } catch (const DocumentError&) {
    }
    isKilled = killed.calls() >= n;
    changeOnce(documents_.put("d.txt", "old"));
    EXPECT_THAT(documents_.names(), SizeIs(4)) << n;
    EXPECT_THAT(names(), SizeIs(listed().size())) << n;
    for (const std::string& name : names())
      EXPECT_FALSE(machineFileSystem().exists(folder() + "/" + name + "/lock")) << n;
    ASSERT_FALSE(HasFailure());
    std::filesystem::remove_all(folder());
  }
}

/// The owner of a folder may put a link in its place at any moment: of the documents', or of the journal's.
TEST_F(Journal, FollowsNoLinkInThePlaceOfAFolder) {
  const std::string past = "/20200101-000000-0";
  const auto theirs = [&](const files::Scratch& scratch) {
    return scratch.get("theirs/a.txt") + scratch.get("theirs" + past + "/0") +
           std::to_string(
               std::distance(std::filesystem::recursive_directory_iterator(scratch.at("theirs")), {}));
  };
  const auto survives = [&](const std::string& exchanged, bool inUndo, int n) {
    const files::Scratch scratch(fastDisk());
    scratch.put("theirs/a.txt", "theirs");
    scratch.put("theirs" + past + "/0", "kept");
    scratch.put("mine/a.txt", "old");
    const std::string path = scratch.path("mine/a.txt");
    const std::string runsFolder = scratch.path("state/runs");
    std::filesystem::create_directory(scratch.path("state"));
    chmod(scratch.path("theirs").c_str(), 0700);
    chmod(scratch.path("theirs" + past).c_str(), 0700);
    files::ExchangingFileSystem system(n, scratch.path(exchanged), scratch.path("theirs"));
    files::FileSystem& plain = machineFileSystem();
    const files::Stamp opened = plain.statusAt(path).stamp;
    const auto attempt = [](const auto& work) {
      try {
        work();
      } catch (const DocumentError&) {
      } catch (const std::system_error&) {
      }
    };
    const auto takeBackAll = [&](files::FileSystem& by) {
      for (const journal::Run& run : runs(by, runsFolder))
        undo(by, runsFolder, run.name, [](const Undone&) {});
    };
    attempt([&] {
      Recorder recorder(inUndo ? plain : system, runsFolder, "run", kDefaultLimit);
      change(inUndo ? plain : system, recorder, path, "new", opened);
    });
    if (inUndo) attempt([&] { takeBackAll(system); });
    EXPECT_EQ(theirs(scratch), "theirskept3") << exchanged << inUndo << n;
    system.putBack();
    attempt([&] { takeBackAll(plain); });
    EXPECT_EQ(scratch.get("mine/a.txt"), "old") << exchanged << inUndo << n;
    EXPECT_THAT(plain.names(scratch.path("mine")), SizeIs(1)) << exchanged << inUndo << n;
    return system.calls() >= n;
  };
  for (const char* const exchanged : {"mine", "state/runs", "state"})
    for (const bool inUndo : {false, true})
      for (int n = 1; survives(exchanged, inUndo, n); ++n) ASSERT_LT(n, 300);
}

/// What lies beside a document may be anybody's: a link, a second name, another file that looks the same.
TEST_F(Journal, TrustsBesideTheDocumentOnlyItsOwnFile) {
  enum class Planted { nothing, link, secondName, lookAlike };
  for (const Planted planted : {Planted::link, Planted::secondName, Planted::lookAlike, Planted::nothing}) {
    const files::Scratch aside(fastDisk());
    const std::string run = changeOnce(documents_.put("a.txt", "old"));
    const OwnFolder own = openRun(machineFileSystem(), openRuns(machineFileSystem(), folder()), run);
    const std::string beside = documents_.path(recordsIn(machineFileSystem(), own).value().back().beside);
    // As a program leaves it that is killed between swapping and moving the original.
    std::filesystem::rename(own.path() + "/0", beside);
    if (planted == Planted::secondName) std::filesystem::create_hard_link(beside, aside.path("second"));
    if (planted == Planted::link || planted == Planted::lookAlike) {
      std::filesystem::copy(beside, aside.path("secret"));
      std::filesystem::last_write_time(aside.path("secret"), std::filesystem::last_write_time(beside));
      std::filesystem::rename(beside, aside.path("original"));
      if (planted == Planted::link) std::filesystem::create_symlink(aside.path("secret"), beside);
      if (planted == Planted::lookAlike) std::filesystem::rename(aside.path("secret"), beside);
    }
    const bool isGenuine = planted == Planted::nothing;
    EXPECT_THAT(takeBack(run), ElementsAre(Pair("a.txt", isGenuine ? Outcome::restored : Outcome::failed)));
    EXPECT_EQ(documents_.get("a.txt"), isGenuine ? "old" : "new");
    std::filesystem::remove(beside);
  }
}

TEST_F(Journal, RefusesWhatOthersMayWrite) {
  const std::string path = documents_.put("a.txt", "old");
  const std::string run = changeOnce(path);
  const auto refusal = [](const auto& work) {
    try {
      work();
      return std::string();
    } catch (const DocumentError& refused) {
      return std::string(refused.what());
    }
  };
  for (const std::string& which : {std::string("pluvo"), std::string("pluvo/runs"), "pluvo/runs/" + run,
                                   "pluvo/runs/" + run + "/journal"}) {
    const std::filesystem::path place = state_.at(which);
    const auto before = std::filesystem::status(place).permissions();
    std::filesystem::permissions(place, std::filesystem::perms::others_write,
                                 std::filesystem::perm_options::add);
    const std::string said = refusal([&] { takeBack(run); });
    EXPECT_THAT(said, testing::AllOf(testing::HasSubstr(state_.path(which) + "\" is a link, or"),
                                     testing::HasSubstr("XDG_STATE_HOME")));
    if (which == "pluvo") {
      EXPECT_THAT(refusal([&] { createBeside(machineFileSystem(), folder(), "list"); }),
                  testing::HasSubstr("is a link, or"));
    }
    if (which.find(run) != std::string::npos) {
      EXPECT_TRUE(listed().at(0).refused);
      EXPECT_EQ(listed().at(0).name, run);
      { const Recorder other(machineFileSystem(), folder(), "another", kDefaultLimit); }
    } else {
      EXPECT_THAT(
          refusal([&] { const Recorder other(machineFileSystem(), folder(), "another", kDefaultLimit); }),
          testing::HasSubstr("is a link, or"));
    }
    std::filesystem::permissions(place, before);
  }
  EXPECT_EQ(documents_.get("a.txt"), "new");
  class Another : public files::FailingFileSystem {
   public:
    std::uint32_t user() override { return FailingFileSystem::user() + 1; }
  } another;
  EXPECT_THAT(refusal([&] { runs(another, folder()); }), testing::HasSubstr("belongs to another user"));
  EXPECT_THAT(takeBack(run), ElementsAre(Pair("a.txt", Outcome::restored)));
}

/// The document's present owner could read the original.
TEST_F(Journal, HandsNoOriginalToAnotherOwner) {
  class Given : public files::FailingFileSystem {
   public:
    files::FileStatus statusAt(const files::Place& place) override {
      files::FileStatus status = FailingFileSystem::statusAt(place);
      if (place.name.ends_with("/a.txt")) ++status.owner;
      return status;
    }
  } given;
  const std::string path = documents_.put("a.txt", "old");
  changeOnce(path);
  undo(given, folder(), listed().at(0).name,
       [](const Undone& undone) { EXPECT_EQ(undone.outcome, Outcome::failed); });
  EXPECT_EQ(documents_.get("a.txt"), "new");
}

/// Those that do not tell the original's inode and owner, and have the path of what lay beside.
TEST_F(Journal, TakesBackRunsOfEarlierVersions) {
  const std::string path = documents_.put("a.txt", "old");
  const std::string run = changeOnce(path);
  const std::string name = "pluvo/runs/" + run + "/journal";
  std::istringstream lines(state_.get(name));
  std::string command;
  std::string kept;
  std::getline(lines, command);
  std::string others;
  std::getline(lines, others);
  for (std::string word; lines >> word;) {
    const auto number = std::count(kept.begin(), kept.end(), ' ');
    if (number == 15) word.insert(0, documents_.path(""));
    kept += word + " ";
  }
  for (int dropped = 0; dropped < 4; ++dropped) {
    std::size_t at = 0;
    for (int word = 0; word < 11; ++word) at = kept.find(' ', at) + 1;
    kept.erase(at, kept.find(' ', at) + 1 - at);
  }
  kept.back() = '\n';
  state_.put(name, command + "\n" + kept);
  EXPECT_THAT(takeBack(run), ElementsAre(Pair("a.txt", Outcome::restored)));
}

TEST_F(Journal, ForgetsDocumentsThatWereNotReplacedAfterAll) {
  class Full : public files::FailingFileSystem {
   public:
    void exchange(const files::Place&, const files::Place&) override {
      throw std::system_error(ENOTSUP, std::generic_category(), "test");
    }
    void rename(const files::Place&, const files::Place&) override {
      throw std::system_error(ENOSPC, std::generic_category(), "test");
    }
  } full;
  const std::string path = documents_.put("a.txt", "old");
  for (const bool another : {false, true}) {
    {
      Recorder recorder(machineFileSystem(), folder(), "run", kDefaultLimit);
      EXPECT_THROW(change(full, recorder, path, "new"), DocumentError);
      if (another) change(machineFileSystem(), recorder, documents_.put("b.txt", "old"), "new");
    }
    EXPECT_THAT(machineFileSystem().names(folder()), SizeIs(another ? 1 : 0));
    documents_.put("a.txt", "changed later");
  }
  EXPECT_EQ(listed().at(0).documents, 1U);
  EXPECT_THAT(takeBack(listed().at(0).name), ElementsAre(Pair("b.txt", Outcome::restored)));
}

/// Before one of the calls of a run, another run ends and a third one clears the journal of empty runs.
TEST_F(Journal, KeepsOriginalsWhileOtherRunsComeAndGo) {
  class Busy : public files::FailingFileSystem {
   public:
    Busy(int n, std::function<void()> others) : FailingFileSystem(n), others_(std::move(others)) {}
    void strike() override { others_(); }

   private:
    std::function<void()> others_;
  };
  const std::string path = documents_.put("a.txt", "old");
  bool struck = true;
  for (int n = 1; struck; ++n) {
    struck = false;
    auto ending = std::make_unique<Recorder>(machineFileSystem(), folder(), "run", kDefaultLimit);
    Busy busy(n, [&] {
      struck = true;
      change(machineFileSystem(), *ending, documents_.put("b.txt", "old"), "new");
      ending = nullptr;
      Recorder third(machineFileSystem(), folder(), "run", kDefaultLimit);
      change(machineFileSystem(), third, documents_.put("c.txt", "old"), "new");
    });
    EXPECT_NO_THROW({
      Recorder recorder(busy, folder(), "run", kDefaultLimit);
      change(machineFileSystem(), recorder, path, "new");
      runs(busy, folder());
    }) << n;
    EXPECT_EQ(listed().size(), struck ? 3U : 1U) << n;
    ending = nullptr;
    std::filesystem::remove_all(folder());
  }
}

TEST(Record, SurvivesItsLine) {
  Record record{Record::Kind::kept, "/a b/%\xFF\n", 7, "~pluvo-0123456789abcdef.tmp", {}, {1, 2, 3, -4, 5}};
  record.before = {files::FileKind::regular, {7, 8, 9, 10, 11}, 1, 0640, 12, 13};
  const auto read = recordOf(std::string_view(lineOf(record)).substr(0, lineOf(record).size() - 1));
  ASSERT_TRUE(read);
  EXPECT_EQ(read->text, record.text);
  EXPECT_EQ(read->beside, record.beside);
  EXPECT_EQ(read->after, record.after);
  EXPECT_EQ(read->before.stamp, record.before.stamp);
  EXPECT_EQ(read->before.owner, record.before.owner);
  EXPECT_EQ(read->before.group, record.before.group);
  EXPECT_EQ(read->before.permissions, record.before.permissions);

  const std::string whole = lineOf(record) + lineOf({Record::Kind::command, "x", 0, {}, {}, {}});
  for (std::size_t size = 0; size < whole.size(); ++size)
    EXPECT_LE(recordsOf(whole.substr(0, size)).size(), size < lineOf(record).size() ? 0U : 1U) << size;
  for (const char* line : {"", "kept", "kept 1 2 x", "command %4", "command %zz", "other x", "command a b"})
    EXPECT_FALSE(recordOf(line)) << line;
}

}  // namespace
}  // namespace pluvo::journal
