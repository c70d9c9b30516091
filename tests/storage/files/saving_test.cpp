#include "files/saving.h"

#include "storage/files/as_text.h"
#include "storage/files/failing_file_system.h"
#include "storage/files/scratch.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <map>

namespace pluvo::files {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

const std::string kOld = "the old version";
const std::string kNew = "the new version, " + std::string(300'000, 'n');
const std::string kShort = "the new version";

NewVersion versionOf(const std::string& text) {
  return {[&text](base::Output& out) {
            out.write(bytesOf(text).view.first(5));
            out.write(bytesOf(text).view.subspan(5));
          },
          [&text](const base::Bytes& written) {
            if (textOf(written.view) != text) throw errors::DocumentError(errors::Problem::io, "differs");
          }};
}

Stamp stampOf(const std::string& path) { return machineFileSystem().statusAt(path).stamp; }

Saved replaceWith(const std::string& path, const std::string& text,
                  const std::optional<std::string>& suffix = std::nullopt) {
  return replaceFile(machineFileSystem(), path, stampOf(path), versionOf(text), suffix);
}

std::string obstacleAt(const std::string& path) {
  return refusalOf([&] {
    if (const auto obstacle = obstacleToSaving(machineFileSystem(), path)) throw *obstacle;
  });
}

int lockAs(int file, int type) {
  struct flock lock = {};
  lock.l_type = static_cast<short>(type);
  return fcntl(file, F_OFD_SETLK, &lock);
}

TEST(Saving, KeepsPermissionsAttributesAndLinks) {
  const Scratch scratch;
  const std::string path = scratch.put("file.txt", kOld);
  const std::string capability("\1\0\0\2\0\4\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 20);  // cap_net_bind_service
  setxattr(path.c_str(), "security.capability", capability.data(), capability.size(), 0);  // needs root
  ASSERT_EQ(chmod(path.c_str(), 06640), 0);
  const bool attributes = setxattr(path.c_str(), "user.origin", "archive", 7, 0) == 0;
  std::filesystem::create_symlink("file.txt", scratch.path("link.txt"));

  const Saved saved = replaceWith(scratch.path("link.txt"), kNew);

  EXPECT_EQ(scratch.get("file.txt"), kNew);
  EXPECT_TRUE(std::filesystem::is_symlink(scratch.path("link.txt")));
  EXPECT_EQ(machineFileSystem().statusAt(path).permissions, 0640U) << "no set-id bits for other contents";
  EXPECT_LT(getxattr(path.c_str(), "security.capability", nullptr, 0), 0);
  EXPECT_EQ(saved.stamp, stampOf(path));
  EXPECT_THAT(scratch.names(), ElementsAre("file.txt", "link.txt"));
  char value[7] = {};
  if (attributes) {
    EXPECT_EQ(getxattr(path.c_str(), "user.origin", value, sizeof value), 7);
  }
}

TEST(Saving, BackupsNeverReplaceEarlierOnes) {
  const Scratch scratch;
  const std::string path = scratch.put("a.txt", "one");
  EXPECT_EQ(replaceWith(path, "two..", ".bak").backup, path + ".bak");
  EXPECT_EQ(replaceWith(path, "three", ".bak").backup, path + ".bak.2");
  EXPECT_EQ(scratch.get("a.txt.bak"), "one");
  EXPECT_EQ(scratch.get("a.txt.bak.2"), "two..");
  EXPECT_THAT(scratch.names(), ElementsAre("a.txt", "a.txt.bak", "a.txt.bak.2"));
}

TEST(Saving, LeavesAloneWhatItMayNotOrShouldNotReplace) {
  const Scratch scratch;
  const auto open = [&](const std::string& name) { return scratch.put(name, kOld); };
  chmod(open("read-only.txt").c_str(), 0444);
  std::filesystem::create_hard_link(open("linked.txt"), scratch.path("other.txt"));
  open("document.txt"), open("~$cument.txt");
  open("brief.txt"), open("~$brief.txt");
  open("über.txt"), open("~$er.txt");
  open("office.txt"), open(".~lock.office.txt#");
  open("ab.txt"), open("aab.txt"), open("~$ab.txt");
  open("1234567.txt"), open("234567.txt"), open("~$234567.txt");
  const std::pair<std::string, std::string> cases[] = {
      {"read-only.txt", "read-only: "}, {"linked.txt", "read-only: "}, {"document.txt", "locked: "},
      {"brief.txt", "locked: "},        {"über.txt", "locked: "},      {"office.txt", "locked: "},
      {"ab.txt", "locked: "},           {"1234567.txt", "locked: "}};
  const auto before = scratch.names();
  for (const auto& [name, code] : cases) {
    const std::string path = scratch.path(name);
    EXPECT_THAT(obstacleAt(path), StartsWith(code)) << name;
    EXPECT_THAT(refusalOf([&] { replaceWith(path, kNew, ".bak"); }), StartsWith(code)) << name;
    EXPECT_EQ(scratch.get(name), kOld);
  }
  EXPECT_EQ(scratch.names(), before);
  EXPECT_EQ(obstacleAt(open("free.txt")), "");
  EXPECT_EQ(obstacleAt(scratch.path("aab.txt")), "") << "the lock is that of ab.txt, which is there";
}

TEST(Saving, NamesTheLockFileAndItsOwner) {
  const std::string word =
      "\x03"
      "J.D" +
      std::string(50, ' ') + std::string("\x02\0J\0\xE9\0", 6) + std::string(102, '\0');
  const struct {
    const char* name;
    std::string content;
    const char* said;
  } cases[] = {
      {"~$cument.txt", word, "\"~$cument.txt\" beside the document says that J\u00E9 has it open"},
      {"~$cument.txt", word.substr(0, 57), "that a word processor has"},
      {"~$cument.txt", word.substr(0, 60), "that J\u00E9 has"},
      {"~$cument.txt", word.substr(0, 54) + '5' + std::string(120, 'A'), "that a word processor has"},
      {"~$cument.txt", "", "that a word processor has"},
      {".~lock.document.txt#", ",Ann\\, B\x1B,host,;", "that Ann, B has"},
      {".~lock.document.txt#", ",,host;", "that host has"},
      {".~lock.document.txt#", ",Ann\\", "that Ann\\ has"}};
  for (const auto& each : cases) {
    const Scratch scratch;
    scratch.put(each.name, each.content);
    EXPECT_THAT(obstacleAt(scratch.put("document.txt", kOld)), testing::HasSubstr(each.said));
  }
}

/// A user who may write a document can lock it, and a reader cannot.
TEST(Saving, HeedsTheLocksOfWritersOnly) {
  const struct {
    int open;
    std::function<int(int)> lock;
    const char* refusal;
  } cases[] = {{O_RDONLY, [](int file) { return flock(file, LOCK_EX); }, ""},
               {O_RDONLY, [](int file) { return lockAs(file, F_RDLCK); }, ""},
               {O_RDWR, [](int file) { return lockAs(file, F_WRLCK); }, "locked:"}};
  for (const auto& each : cases) {
    const Scratch scratch;
    const std::string path = scratch.put("a.txt", kOld);
    const int other = ::open(path.c_str(), each.open);
    ASSERT_EQ(each.lock(other), 0);
    const std::string refusal = refusalOf([&] { replaceWith(path, kNew); });
    EXPECT_EQ(refusal.substr(0, refusal.find(' ')), each.refusal);
    EXPECT_EQ(scratch.get("a.txt"), refusal.empty() ? kNew : kOld);
    ::close(other);
  }
}

TEST(Saving, ReplacesWhatHasALongName) {
  for (const std::size_t length : {247U, 248U, 251U}) {
    const Scratch scratch;
    replaceWith(scratch.put(std::string(length, 'n') + ".txt", kOld), kNew);
    EXPECT_EQ(scratch.get(std::string(length, 'n') + ".txt"), kNew) << length;
  }
}

/// Every file of a folder, by its name.
std::map<std::string, std::string> filesIn(const Scratch& scratch, const std::string& folder) {
  std::map<std::string, std::string> found;
  for (const auto& entry : std::filesystem::directory_iterator(scratch.at(folder)))
    found[entry.path().filename()] = scratch.get(folder + "/" + entry.path().filename().string());
  return found;
}

TEST(Saving, AFolderThatIsExchangedWithALinkLeadsNowhereElse) {
  using Files = std::map<std::string, std::string>;
  const auto around = [](int n, const std::string& exchanged, const auto& work) {
    const Scratch scratch;
    scratch.put("theirs/a.txt", "theirs");
    scratch.put("mine/a.txt", kOld);
    std::filesystem::create_directory(scratch.path("out"));
    ExchangingFileSystem system(n, scratch.path(exchanged), scratch.path("theirs"));
    const std::string refusal = refusalOf([&] { work(system, scratch); });
    EXPECT_EQ(filesIn(scratch, "theirs"), (Files{{"a.txt", "theirs"}})) << n;
    system.putBack();
    const Files old = {{"a.txt", kOld}};
    const Files changed = {{"a.txt", kNew}, {"a.txt.bak", kOld}};
    EXPECT_TRUE(filesIn(scratch, "mine") == old || (refusal.empty() && filesIn(scratch, "mine") == changed))
        << n << refusal;
    return system.calls() >= n;
  };
  const auto replace = [](FileSystem& system, const Scratch& scratch) {
    const std::string path = scratch.path("mine/a.txt");
    replaceFile(system, path, stampOf(scratch.path("mine/a.txt")), versionOf(kNew), ".bak");
  };
  const auto create = [](FileSystem& system, const Scratch& scratch) {
    const std::string original = scratch.path("mine/a.txt");
    beginCreatingFile(system, scratch.path("out/new/b.txt"), original, stampOf(original), versionOf(kNew),
                      scratch.path("out"))
        ->finish();
  };
  int calls = 0;
  for (int n = 1; around(n, "mine", replace); ++n) ++calls;
  for (int n = 1; around(n, "out/new", create); ++n) ++calls;
  EXPECT_GT(calls, 50);
}

TEST(Saving, KeepsNoVersionThatIsWrongOrThatAnotherProgramForestalled) {
  const Scratch scratch;
  const std::string path = scratch.put("a.txt", kOld);
  const Stamp opened = stampOf(path);
  NewVersion wrong = versionOf(kNew);
  wrong.check = [](const base::Bytes&) {
    throw errors::DocumentError(errors::Problem::encoding, "not what was meant");
  };
  NewVersion wrongAndShort = versionOf(kShort);
  wrongAndShort.isFlushedDuringCheck = true;
  wrongAndShort.check = wrong.check;
  for (const NewVersion& version : {wrong, wrongAndShort}) {
    EXPECT_THROW(replaceFile(machineFileSystem(), path, opened, version), errors::DocumentError);
    EXPECT_EQ(scratch.get("a.txt"), kOld) << "a version that fails its own reader is not kept";
    EXPECT_THAT(scratch.names(), ElementsAre("a.txt"));
  }

  NewVersion meddled = versionOf(kNew);
  meddled.check = [&](const base::Bytes&) { scratch.put("a.txt", "theirs"); };
  for (const NewVersion& version : {meddled, versionOf(kNew)}) {
    EXPECT_THAT(refusalOf([&] { replaceFile(machineFileSystem(), path, opened, version, ".bak"); }),
                StartsWith("changed: "));
    EXPECT_EQ(scratch.get("a.txt"), "theirs");
    EXPECT_THAT(scratch.names(), ElementsAre("a.txt"));
  }
}

TEST(Saving, AnyFailingCallLeavesTheOldVersionOrTheNewOneWhole) {
  using From = FailingFileSystem::From;
  const auto failAtEach = [](From from, const std::string& text, const std::optional<std::string>& suffix) {
    NewVersion version = versionOf(text);
    version.isFlushedDuringCheck = true;
    for (int n = 1;; ++n) {
      const Scratch scratch;
      const std::string path = scratch.put("a.txt", kOld);
      const Stamp opened = stampOf(path);
      FailingFileSystem failing(n, from, ENOSPC);
      const std::string failure = refusalOf([&] { replaceFile(failing, path, opened, version, suffix); });
      if (n > failing.calls()) {
        EXPECT_EQ(failure, "");
        EXPECT_GT(n, 20);
        break;
      }
      const bool replaced = scratch.get("a.txt") == text;
      EXPECT_TRUE(replaced || scratch.get("a.txt") == kOld) << n;
      EXPECT_TRUE(failure.starts_with("io: ") || (replaced && failure.empty())) << n << failure;
      // What goes wrong after the rename cannot be undone; before it, nothing may stay behind.
      if (replaced && suffix) {
        EXPECT_THAT(scratch.names(), ElementsAre("a.txt", "a.txt.bak")) << n;
      } else if (replaced || from == From::once) {
        EXPECT_THAT(scratch.names(), ElementsAre("a.txt")) << n;
      }
    }
  };
  failAtEach(From::once, kNew, ".bak");
  failAtEach(From::on, kNew, ".bak");
  failAtEach(From::once, kShort, std::nullopt);
}

TEST(Saving, AVersionHasNoNameWhileItIsWritten) {
  const Scratch scratch;
  const std::string path = scratch.put("a.txt", kOld);
  try {
    const OpenFile unnamed(machineFileSystem(), machineFileSystem().createUnnamed(scratch.path("")));
  } catch (const std::system_error&) {
    GTEST_SKIP() << "not on this disk";
  }
  NewVersion version = versionOf(kNew);
  const auto check = version.check;
  version.check = [&](const base::Bytes& written) {
    check(written);
    EXPECT_THAT(scratch.names(), ElementsAre("a.txt"));
  };
  replaceFile(machineFileSystem(), path, stampOf(path), version);
  EXPECT_EQ(scratch.get("a.txt"), kNew);
  EXPECT_THAT(scratch.names(), ElementsAre("a.txt"));

  // A program that is killed at any call leaves no new file, or a whole one.
  bool failed = true;
  for (int n = 1; failed; ++n) {
    FailingFileSystem killed(n, FailingFileSystem::From::on);
    try {
      beginCreatingFile(killed, scratch.path("b.txt"), path, stampOf(path), versionOf(kNew))->finish();
    } catch (const errors::DocumentError&) {
    }
    failed = killed.calls() >= n;
    if (!machineFileSystem().exists(scratch.path("b.txt"))) {
      EXPECT_THAT(scratch.names(), ElementsAre("a.txt")) << n;
      continue;
    }
    EXPECT_THAT(scratch.names(), ElementsAre("a.txt", "b.txt")) << n;
    EXPECT_EQ(scratch.get("b.txt"), kNew) << n;
    machineFileSystem().remove(scratch.path("b.txt"));
  }
}

TEST(Saving, ANewFileTakesAFreeNameOnly) {
  const Scratch scratch;
  const std::string original = scratch.put("a.txt", kOld);
  chmod(original.c_str(), 0604);
  beginCreatingFile(machineFileSystem(), scratch.path("b.txt"), original, stampOf(original), versionOf(kNew))
      ->finish();
  EXPECT_EQ(scratch.get("b.txt"), kNew);
  EXPECT_EQ(machineFileSystem().statusAt(scratch.path("b.txt")).permissions, 0604U);
  EXPECT_THROW(beginCreatingFile(machineFileSystem(), original, original, stampOf(original), versionOf(kNew))
                   ->finish(),
               errors::DocumentError);
  EXPECT_EQ(scratch.get("a.txt"), kOld);
  EXPECT_THAT(scratch.names(), ElementsAre("a.txt", "b.txt"));

  const auto below = [&](const std::string& name, const std::string& text = kNew) {
    NewVersion version = versionOf(kNew);
    if (text != kNew) version.check = versionOf(text).check;
    return refusalOf([&] {
      beginCreatingFile(machineFileSystem(), scratch.path("out/" + name), original, stampOf(original),
                        version, scratch.path("out"))
          ->finish();
    });
  };
  std::filesystem::create_directories(scratch.path("out/there"));
  std::filesystem::create_symlink(scratch.path("out/there"), scratch.path("out/link"));
  EXPECT_EQ(below("there/new/c.txt"), "");
  EXPECT_EQ(scratch.get("out/there/new/c.txt"), kNew);
  const std::string no = "is a link or a file where a folder should be, so nothing was written there";
  const std::pair<std::string, std::string> refused[] = {
      {"link/c.txt", no},
      {"there/new/c.txt/c.txt", no},
      {std::string(300, 'n') + "/c.txt", "io: The folder \"" + scratch.path("out/nn")}};
  for (const auto& [name, said] : refused) EXPECT_THAT(below(name), testing::HasSubstr(said));
  EXPECT_EQ(below("d.txt", "another"), "io: differs");
  EXPECT_FALSE(std::filesystem::exists(scratch.path("out/d.txt")));
}

/// Somebody whom permissions bind, for as long as this lives; needs root.
class Nobody {
 public:
  Nobody() { become(kNobody); }
  Nobody(const Nobody&) = delete;
  Nobody& operator=(const Nobody&) = delete;
  ~Nobody() {
    EXPECT_EQ(seteuid(0), 0);
    become(0);
  }
  static constexpr unsigned kNobody = 65534;

 private:
  static void become(unsigned id) {
    EXPECT_EQ(setgroups(1, &id), 0);
    EXPECT_EQ(setegid(id), 0);
    EXPECT_EQ(seteuid(id), 0);
  }
};

TEST(Saving, NobodyGainsRightsFromAnOwnerThatCannotBeKept) {
  if (geteuid() != 0) GTEST_SKIP() << "needs root, to become somebody else";
  const Scratch scratch;
  const std::string path = scratch.put("a.txt", kOld);
  chmod(path.c_str(), 0664);
  chmod(scratch.path("").c_str(), 0755);
  {
    const Nobody nobody;
    EXPECT_THAT(obstacleAt(path), StartsWith("read-only: "));
  }
  ASSERT_EQ(chown(path.c_str(), Nobody::kNobody, 0), 0);
  {
    const Nobody nobody;
    EXPECT_THAT(obstacleAt(path), testing::HasSubstr("folder may not be written"));
  }
  chmod(scratch.path("").c_str(), 0777);
  {
    const Nobody nobody;
    const NotKept notKept = replaceWith(path, kNew).notKept;
    EXPECT_TRUE(!notKept.owner && notKept.group);
  }
  EXPECT_EQ(scratch.get("a.txt"), kNew);
  EXPECT_EQ(machineFileSystem().statusAt(path).permissions, 0644U) << "the group is another, and reads only";
}

}  // namespace
}  // namespace pluvo::files
