#include "files/saving.h"

#include "documents/files/as_text.h"
#include "documents/files/failing_file_system.h"
#include "documents/files/scratch.h"

#include <gmock/gmock.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace pluvo::files {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

const std::string kOld = "the old version";
const std::string kNew = "the new version, " + std::string(300'000, 'n');

NewVersion versionOf(const std::string& text) {
  return {[&text](Output& out) {
            out.write(bytesOf(text).view.first(5));
            out.write(bytesOf(text).view.subspan(5));
          },
          [&text](const Bytes& written) {
            if (textOf(written.view) != text) throw DocumentError(Problem::io, "differs");
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

TEST(Saving, KeepsPermissionsAttributesAndLinks) {
  const Scratch scratch;
  const std::string path = scratch.put("file.txt", kOld);
  ASSERT_EQ(chmod(path.c_str(), 0640), 0);
  const bool attributes = setxattr(path.c_str(), "user.origin", "archive", 7, 0) == 0;
  std::filesystem::create_symlink("file.txt", scratch.path("link.txt"));

  const Saved saved = replaceWith(scratch.path("link.txt"), kNew);

  EXPECT_EQ(scratch.get("file.txt"), kNew);
  EXPECT_TRUE(std::filesystem::is_symlink(scratch.path("link.txt")));
  EXPECT_EQ(machineFileSystem().statusAt(path).permissions, 0640U);
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
  const std::pair<std::string, std::string> cases[] = {
      {"read-only.txt", "read-only: "}, {"linked.txt", "read-only: "}, {"document.txt", "locked: "},
      {"brief.txt", "locked: "},        {"über.txt", "locked: "},      {"office.txt", "locked: "}};
  const auto before = scratch.names();
  for (const auto& [name, code] : cases) {
    const std::string path = scratch.path(name);
    EXPECT_THAT(obstacleAt(path), StartsWith(code)) << name;
    EXPECT_THAT(refusalOf([&] { replaceWith(path, kNew, ".bak"); }), StartsWith(code)) << name;
    EXPECT_EQ(scratch.get(name), kOld);
  }
  EXPECT_EQ(scratch.names(), before);
  EXPECT_EQ(obstacleAt(open("free.txt")), "");
}

TEST(Saving, KeepsNoVersionThatIsWrongOrThatAnotherProgramForestalled) {
  const Scratch scratch;
  const std::string path = scratch.put("a.txt", kOld);
  const Stamp opened = stampOf(path);
  NewVersion wrong = versionOf(kNew);
  wrong.check = [](const Bytes&) { throw DocumentError(Problem::encoding, "not what was meant"); };
  EXPECT_THROW(replaceFile(machineFileSystem(), path, opened, wrong), DocumentError);
  EXPECT_EQ(scratch.get("a.txt"), kOld) << "a version that fails its own reader is not kept";
  EXPECT_THAT(scratch.names(), ElementsAre("a.txt"));

  NewVersion meddled = versionOf(kNew);
  meddled.check = [&](const Bytes&) { scratch.put("a.txt", "theirs"); };
  for (const NewVersion& version : {meddled, versionOf(kNew)}) {
    EXPECT_THAT(refusalOf([&] { replaceFile(machineFileSystem(), path, opened, version, ".bak"); }),
                StartsWith("changed: "));
    EXPECT_EQ(scratch.get("a.txt"), "theirs");
    EXPECT_THAT(scratch.names(), ElementsAre("a.txt"));
  }
}

TEST(Saving, AnyFailingCallLeavesTheOldVersionOrTheNewOneWhole) {
  for (const auto from : {FailingFileSystem::From::once, FailingFileSystem::From::on}) {
    for (int n = 1;; ++n) {
      const Scratch scratch;
      const std::string path = scratch.put("a.txt", kOld);
      const Stamp opened = stampOf(path);
      FailingFileSystem failing(n, from, ENOSPC);
      const std::string failure =
          refusalOf([&] { replaceFile(failing, path, opened, versionOf(kNew), ".bak"); });
      if (n > failing.calls()) {
        EXPECT_EQ(failure, "");
        EXPECT_GT(n, 30);
        break;
      }
      const bool replaced = scratch.get("a.txt") == kNew;
      EXPECT_TRUE(replaced || scratch.get("a.txt") == kOld) << n;
      EXPECT_TRUE(failure.starts_with("io: ") || (replaced && failure.empty())) << n << failure;
      // What goes wrong behind the rename cannot be undone; before it, nothing may stay behind.
      if (replaced) {
        EXPECT_THAT(scratch.names(), ElementsAre("a.txt", "a.txt.bak")) << n;
      } else if (from == FailingFileSystem::From::once) {
        EXPECT_THAT(scratch.names(), ElementsAre("a.txt")) << n;
      }
    }
  }
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
  version.check = [&](const Bytes& written) {
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
      createFile(killed, scratch.path("b.txt"), path, stampOf(path), versionOf(kNew));
    } catch (const DocumentError&) {
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
  createFile(machineFileSystem(), scratch.path("b.txt"), original, stampOf(original), versionOf(kNew));
  EXPECT_EQ(scratch.get("b.txt"), kNew);
  EXPECT_EQ(machineFileSystem().statusAt(scratch.path("b.txt")).permissions, 0604U);
  EXPECT_THROW(createFile(machineFileSystem(), original, original, stampOf(original), versionOf(kNew)),
               DocumentError);
  EXPECT_EQ(scratch.get("a.txt"), kOld);
  EXPECT_THAT(scratch.names(), ElementsAre("a.txt", "b.txt"));
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
    EXPECT_NO_THROW(replaceWith(path, kNew));
  }
  EXPECT_EQ(scratch.get("a.txt"), kNew);
  EXPECT_EQ(machineFileSystem().statusAt(path).permissions, 0644U) << "the group is another, and reads only";
}

}  // namespace
}  // namespace pluvo::files
