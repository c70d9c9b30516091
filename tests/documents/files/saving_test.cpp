#include "files/saving.h"

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

const std::string kOld = "the old version";
const std::string kNew = "the new version, " + std::string(300'000, 'n');

ByteSpan bytesOf(const std::string& text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

NewVersion versionOf(const std::string& text) {
  return {[&text](Output& out) {
            out.write(bytesOf(text).first(5));
            out.write(bytesOf(text).subspan(5));
          },
          [&text](const Bytes& written) {
            if (!std::ranges::equal(written.view, bytesOf(text))) throw DocumentError(Problem::io, "differs");
          }};
}

Stamp stampOf(const std::string& path) { return machineFileSystem().statusAt(path).stamp; }

Saved replaceWith(const std::string& path, const std::string& text,
                  const std::optional<std::string>& suffix = std::nullopt) {
  return replaceFile(machineFileSystem(), path, stampOf(path), versionOf(text), suffix);
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
  const struct {
    std::string name;
    Problem problem;
  } cases[] = {{"read-only.txt", Problem::readOnly}, {"linked.txt", Problem::readOnly},
               {"document.txt", Problem::locked},    {"brief.txt", Problem::locked},
               {"über.txt", Problem::locked},        {"office.txt", Problem::locked}};
  const auto before = scratch.names();
  for (const auto& [name, problem] : cases) {
    const std::string path = scratch.path(name);
    const auto obstacle = obstacleToSaving(machineFileSystem(), path);
    ASSERT_TRUE(obstacle) << name;
    EXPECT_EQ(obstacle->problem(), problem) << name;
    try {
      replaceWith(path, kNew, ".bak");
      ADD_FAILURE() << name;
    } catch (const DocumentError& error) {
      EXPECT_EQ(error.problem(), problem) << name << error.what();
    }
    EXPECT_EQ(scratch.get(name), kOld);
  }
  EXPECT_EQ(scratch.names(), before);
  EXPECT_FALSE(obstacleToSaving(machineFileSystem(), open("free.txt")));
}

TEST(Saving, NoticesAnotherProgramBeforeAndDuringTheSave) {
  const Scratch scratch;
  const std::string path = scratch.put("a.txt", kOld);
  const Stamp opened = stampOf(path);
  NewVersion meddled = versionOf(kNew);
  meddled.check = [&](const Bytes&) { scratch.put("a.txt", "theirs"); };
  for (const NewVersion& version : {meddled, versionOf(kNew)}) {
    try {
      replaceFile(machineFileSystem(), path, opened, version, ".bak");
      ADD_FAILURE();
    } catch (const DocumentError& error) {
      EXPECT_EQ(error.problem(), Problem::changed);
    }
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
      bool failed = false;
      try {
        replaceFile(failing, path, opened, versionOf(kNew), ".bak");
      } catch (const DocumentError& error) {
        failed = true;
        EXPECT_EQ(error.problem(), Problem::io) << error.what();
      }
      if (n > failing.calls()) {
        EXPECT_FALSE(failed);
        EXPECT_GT(n, 30);
        break;
      }
      const bool replaced = scratch.get("a.txt") == kNew;
      EXPECT_TRUE(replaced || scratch.get("a.txt") == kOld) << n;
      EXPECT_TRUE(failed || replaced) << n;
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
}

TEST(Saving, AVersionThatFailsItsOwnReaderIsNotKept) {
  const Scratch scratch;
  const std::string path = scratch.put("a.txt", kOld);
  NewVersion wrong = versionOf(kNew);
  wrong.check = [](const Bytes&) { throw DocumentError(Problem::encoding, "not what was meant"); };
  EXPECT_THROW(replaceFile(machineFileSystem(), path, stampOf(path), wrong), DocumentError);
  EXPECT_EQ(scratch.get("a.txt"), kOld);
  EXPECT_THAT(scratch.names(), ElementsAre("a.txt"));
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
    const auto obstacle = obstacleToSaving(machineFileSystem(), path);
    ASSERT_TRUE(obstacle);
    EXPECT_EQ(obstacle->problem(), Problem::readOnly);
  }
  ASSERT_EQ(chown(path.c_str(), Nobody::kNobody, 0), 0);
  {
    const Nobody nobody;
    const auto obstacle = obstacleToSaving(machineFileSystem(), path);
    ASSERT_TRUE(obstacle);
    EXPECT_THAT(obstacle->what(), testing::HasSubstr("folder may not be written"));
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
