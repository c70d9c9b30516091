#include "documents/files/scratch.h"
#include "store/store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <random>
#include <string>
#include <thread>

namespace pluvo::store {
namespace {

using files::Scratch;

constexpr std::size_t kSize = 600'000;

/// Replaces every letter of the text by another.
void rewrite(const std::string& path, char16_t letter) {
  const auto opened = Store().open(path);
  auto& model = opened->document()->model();
  model.replace({0, model.length() - 1}, std::u16string(kSize, letter), text::View::results);
  opened->save({".bak", {}});
}

bool isWhole(const std::string& content) {
  return content.size() == kSize && content.find_first_not_of(content[0]) == std::string::npos;
}

TEST(Interruption, KilledAtAnyMomentASaveLeavesTheOldTextOrTheNewOneWhole) {
  const Scratch scratch;
  const std::string path = scratch.put("a.txt", std::string(kSize, 'a'));
  using Clock = std::chrono::steady_clock;
  const auto begun = Clock::now();
  rewrite(path, u'b');
  const auto once = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begun).count();
  std::filesystem::remove(scratch.path("a.txt.bak"));
  std::mt19937 random(1);
  std::uniform_int_distribution<std::int64_t> delay(0, 3 * once);
  const auto deadline = Clock::now() + std::chrono::seconds(5);
  int rewritten = 0;
  // On a busy machine no save may come about in that time; then there is more of it.
  for (int round = 0; round < 300 && (rewritten == 0 || Clock::now() < deadline); ++round) {
    const char before = scratch.get("a.txt")[0];
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      for (char16_t letter = before == 'a' ? u'b' : u'a';; letter = letter == u'a' ? u'b' : u'a')
        rewrite(path, letter);
    }
    std::this_thread::sleep_for(std::chrono::microseconds(delay(random) * (rewritten == 0 ? round + 1 : 1)));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);

    rewritten += scratch.get("a.txt")[0] != before ? 1 : 0;
    for (const std::string& name : scratch.names()) {
      if (name.starts_with("~pluvo-") && name.ends_with(".tmp")) {
        std::filesystem::remove(scratch.path(name));
        continue;
      }
      ASSERT_TRUE(isWhole(scratch.get(name))) << name << " in round " << round;
      if (name != "a.txt") std::filesystem::remove(scratch.path(name));
    }
  }
  EXPECT_GT(rewritten, 0) << "no save was ever done, so nothing was tested";
}

TEST(Interruption, AFullDiskLeavesTheOldText) {
  const Scratch scratch;
  const std::string disk = scratch.path("disk");
  std::filesystem::create_directory(disk);
  if (mount("tmpfs", disk.c_str(), "tmpfs", 0, "size=1m") != 0) GTEST_SKIP() << "needs the right to mount";
  const std::string path = scratch.put("disk/a.txt", std::string(kSize, 'a'));
  try {
    rewrite(path, u'b');
    ADD_FAILURE();
  } catch (const files::DocumentError& error) {
    EXPECT_EQ(error.problem(), files::Problem::io);
    EXPECT_THAT(error.what(), testing::HasSubstr("no room"));
  }
  EXPECT_EQ(scratch.get("disk/a.txt"), std::string(kSize, 'a'));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(disk), {}), 1);
  umount(disk.c_str());
}

}  // namespace
}  // namespace pluvo::store
