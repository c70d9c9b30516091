#include "files/reading.h"

#include "base/fresh_memory.h"
#include "errors/document_error.h"
#include "storage/files/as_text.h"
#include "storage/files/failing_file_system.h"
#include "storage/files/scratch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace pluvo::files {
namespace {

TEST(Reading, GivesTheBytesAndOneMoreAtEverySizeThatMatters) {
  const Scratch scratch;
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  for (const std::size_t size :
       {std::size_t{0}, std::size_t{1}, page, std::size_t{kMappedFrom} - 1, std::size_t{kMappedFrom},
        std::size_t{kMappedFrom} + 1, kMappedFrom + page}) {
    std::string content(size, 'x');
    if (size > 0) content.back() = 'y';
    FailingFileSystem partial;  // reads in parts
    const FileContent read = readFile(partial, scratch.put("file", content));
    EXPECT_EQ(textOf(read.bytes.view), content);
    EXPECT_EQ(*(read.bytes.view.data() + size), base::Bytes::kBehind) << size;
    EXPECT_EQ(read.stamp, machineFileSystem().statusAt(scratch.path("file")).stamp);
  }
}

TEST(FreshMemory, HoldsWhatAVectorHolds) {
  constexpr std::size_t kLarge = std::size_t{4} << 20U;
  for (const std::size_t size : {std::size_t{0}, std::size_t{1}, kLarge - 1, kLarge, kLarge + 1}) {
    std::vector<std::uint8_t> plain(size);
    const auto fresh = base::freshMemory(size);
    const auto other = base::freshMemory(size);  // must be another place
    for (std::size_t i = 0; i < size; ++i) {
      plain[i] = static_cast<std::uint8_t>(i * 31 >> 3U);
      fresh[static_cast<std::ptrdiff_t>(i)] = plain[i];
      other[static_cast<std::ptrdiff_t>(i)] = 0;
    }
    EXPECT_TRUE(std::equal(plain.begin(), plain.end(), fresh.get())) << size;
  }
}

TEST(Reading, RefusesWhatIsNoFileWithoutWaiting) {
  const Scratch scratch;
  std::filesystem::create_directory(scratch.path("folder"));
  ASSERT_EQ(mkfifo(scratch.path("pipe").c_str(), 0600), 0);
  std::filesystem::create_symlink("nowhere", scratch.path("dangling"));
  std::filesystem::create_symlink("circle", scratch.path("circle"));
  std::filesystem::create_symlink("pipe", scratch.path("link"));
  const std::pair<std::string, const char*> cases[] = {
      {scratch.path("folder"), "folder"},
      {scratch.path("pipe"), "named pipe"},
      {scratch.path("link"), "named pipe"},
      {"/dev/null", "device"},
      {scratch.path("missing"), "no such"},
      {scratch.path("dangling"), "The link leads to a file that is gone"},
      {scratch.path("circle"), "in a circle"},
      {"", "no such"}};
  for (const auto& [path, said] : cases)
    EXPECT_THAT(refusalOf([&, &at = path] { readFile(machineFileSystem(), at); }),
                testing::ContainsRegex("^io: .*" + std::string(said)));
}

TEST(Reading, FollowsNoLinkBelowTheFolderThatWasLookedThrough) {
  const Scratch scratch;
  scratch.put("secret/file", "secret");
  scratch.put("named/a/b/file", "text");
  std::filesystem::create_symlink("../secret/file", scratch.path("named/link"));
  std::filesystem::create_symlink("../../secret", scratch.path("named/a/link"));
  std::filesystem::create_symlink("named", scratch.path("linked"));
  const std::pair<const char*, const char*> cases[] = {
      {"named/a/b/file", "text"},
      {"linked/a/b/file", "text"},  // the user named that link
      {"named/link", "^changed: The file has become a link"},
      {"named/a/link/file", "^changed: \".*named/a/link\" has become a link"},
      {"named/a/b/file/file", "^io: There is no such"},
      {"named/a/b", "^io: This is a folder"},
  };
  for (const auto& [path, expected] : cases) {
    const std::string whole = scratch.path(path);
    std::string text;
    const std::string refused = refusalOf([&] {
      text = textOf(
          readFileBelow(machineFileSystem(), whole, whole.find('/', scratch.path("").size()) + 1).bytes.view);
    });
    EXPECT_THAT(text + refused, testing::ContainsRegex(expected)) << path;
  }
}

TEST(Reading, OutlivesAMappedFileThatIsCutShort) {
  const Scratch scratch;
  const std::string path = scratch.put("file", std::string(3 * kMappedFrom, 'x'));
  const FileContent read = readFile(machineFileSystem(), path);
  EXPECT_FALSE(read.bytes.vanished());
  std::filesystem::resize_file(path, 10);
  EXPECT_EQ(read.bytes.view[0], 'x');
  EXPECT_EQ(read.bytes.view[2 * kMappedFrom], 0);
  EXPECT_TRUE(read.bytes.vanished());
}

TEST(Reading, KeepsTheMarkAfterAMappedFileThatIsCutShortAndLengthenedAgain) {
  const Scratch scratch;
  for (const std::size_t size : {std::size_t{kMappedFrom}, std::size_t{kMappedFrom + 100}}) {
    const std::string path = scratch.put("file", std::string(size, 'x'));
    const FileContent read = readFile(machineFileSystem(), path);
    std::filesystem::resize_file(path, 10);
    std::filesystem::resize_file(path, 2 * size);
    EXPECT_EQ(read.bytes.view.data()[size], base::Bytes::kBehind) << size;
  }
}

TEST(Reading, AnyFailingCallIsAnIoError) {
  const Scratch scratch;
  for (const std::size_t size : {std::size_t{100}, std::size_t{kMappedFrom}}) {
    const std::string path = scratch.put("file", std::string(size, 'x'));
    FailingFileSystem counting;
    readFile(counting, path);
    for (int n = 1; n < counting.calls(); ++n) {  // the last is the close, which nothing depends on
      FailingFileSystem failing(n);
      EXPECT_THAT(refusalOf([&] { readFile(failing, path); }), testing::StartsWith("io: ")) << n;
    }
  }
}

}  // namespace
}  // namespace pluvo::files
