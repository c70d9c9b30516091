#include "zip/rewrite.h"

#include "containers/zip/zip_builder.h"
#include "storage/files/as_text.h"
#include "storage/files/scratch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <random>
#include <string>

namespace pluvo::zip {
namespace {

using files::bytesOf;
using files::textOf;

base::ByteSpan spanOf(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

std::string rewritten(const Archive& archive, const std::vector<Change>& changes) {
  base::MemoryOutput out;
  rewrite(archive, changes, out);
  return textOf(out.bytes());
}

std::string rawOf(const Archive& archive, const Member& member) {
  return textOf(archive.bytes().subspan(member.header, member.next - member.header));
}

/// An entry of the directory without what must change with the member's place.
std::string entryBut(const Member& member, bool itsContents) {
  std::string entry = textOf(member.entry);
  entry.replace(42, 4, "....");
  if (itsContents) entry.replace(16, 12, "............").replace(8, 2, "..");
  return entry;
}

/// Everything but the changed member is as it was.
void expectOnlyChanged(const Archive& before, const Archive& after, const std::string& name, bool zip64) {
  ASSERT_EQ(after.members().size(), before.members().size());
  for (std::size_t i = 0; i < before.members().size(); ++i) {
    const Member& old = before.members()[i];
    const Member& made = after.members()[i];
    const bool changed = old.name == name;
    EXPECT_EQ(made.name, old.name);
    if (!zip64) {
      EXPECT_EQ(entryBut(made, changed), entryBut(old, changed));
    }
    if (!changed) {
      EXPECT_EQ(rawOf(after, made), rawOf(before, old));
    }
  }
}

TEST(Rewrite, WithoutChangeGivesTheSameBytes) {
  for (const auto& [what, zip] : soundShapes()) {
    const std::string bytes = build(zip).bytes;
    EXPECT_EQ(rewritten(Archive::open(bytesOf(bytes)), {}), bytes) << what;
  }
}

TEST(Rewrite, ChangesOneMemberAndCopiesTheOthers) {
  const std::string contents = "new contents, " + std::string(1000, 'n');
  const std::vector<base::ByteSpan> pieces = {spanOf(contents).first(5), {}, spanOf(contents).subspan(5)};
  for (const auto& [what, zip] : soundShapes()) {
    const Archive before = Archive::open(bytesOf(build(zip).bytes));
    for (const Entry& entry : zip.entries) {
      SCOPED_TRACE(std::string(what) + ": " + entry.name);
      const std::string bytes = rewritten(before, {{entry.name, pieces}});
      const Archive after = Archive::open(bytesOf(bytes));
      expectOnlyChanged(before, after, entry.name, entry.zip64);
      const Member& made = *after.find(entry.name);
      EXPECT_EQ(textOf(after.read(made).view), contents);
      EXPECT_EQ(made.method, before.find(entry.name)->method);
      EXPECT_EQ(made.flags, entry.flags & ~0x000e);
      EXPECT_THAT(rawOf(after, made), testing::HasSubstr(entry.localExtra));
      EXPECT_TRUE(bytes.ends_with(zip.comment));
      // Changing it again to what it was, no trace of the first change is left in the others.
      const std::string again = rewritten(after, {{entry.name, {spanOf(entry.contents)}}});
      EXPECT_EQ(again, rewritten(before, {{entry.name, {spanOf(entry.contents)}}}));
    }
  }
}

TEST(Rewrite, ChangesAndRemovesSeveral) {
  for (const auto& [what, zip] : soundShapes()) {
    SCOPED_TRACE(what);
    const Archive before = Archive::open(bytesOf(build(zip).bytes));
    Change removed{zip.entries[0].name, {}, true};
    const std::string bytes =
        rewritten(before, {removed, {"WORD/document.xml", {}}, {"word/media/p.png", {spanOf("p")}}});
    const Archive after = Archive::open(bytesOf(bytes));
    EXPECT_EQ(after.members().size(), before.members().size() - 1);
    EXPECT_EQ(after.find(zip.entries[0].name), nullptr);
    EXPECT_EQ(textOf(after.read(*after.find("word/document.xml")).view), "");
    EXPECT_EQ(textOf(after.read(*after.find("word/media/p.png")).view), "p");
  }
}

/// Another reader's opinion: Python's zipfile reads every member and checks its CRC.
TEST(Rewrite, AnotherReaderFindsTheArchivesSound) {
  if (std::system("python3 -c 'import zipfile' 2>/dev/null") != 0) GTEST_SKIP() << "no python3";
  const files::Scratch folder;
  std::size_t number = 0;
  for (const auto& [what, zip] : soundShapes()) {
    if (zip.comment.starts_with("PK")) continue;  // that reader takes any end record for the end
    const Archive before = Archive::open(bytesOf(build(zip).bytes));
    for (const Entry& entry : zip.entries)
      folder.put(std::to_string(number++) + ".zip",
                 rewritten(before, {{entry.name, {spanOf("new contents")}}}));
  }
  const std::string command =
      "python3 -c \"import sys, zipfile; sys.exit(any(zipfile.ZipFile(f).testzip() for f in "
      "sys.argv[1:]))\" " +
      folder.path("*.zip");
  EXPECT_EQ(std::system(command.c_str()), 0);
}

/// Keeps the first bytes and the last, counts the rest.
class EndsOutput : public base::Output {
 public:
  void write(base::ByteSpan bytes) override {
    size += bytes.size();
    tail.append(textOf(bytes.last(std::min<std::size_t>(bytes.size(), 4096))));
    if (tail.size() > 8192) tail.erase(0, tail.size() - 8192);
  }
  std::uint64_t size = 0;
  std::string tail;
};

/// A written archive can be opened, however much alike its bytes are.
TEST(Rewrite, StaysWithinTheLimitsOfOpening) {
  const std::string packed = build({{{"first", "f"}, {"last", "l"}}}).bytes;
  const Archive before = Archive::open(bytesOf(packed));
  std::string contents((std::size_t{33} << 20U) + 1, 'x');
  contents.back() = 'y';
  const std::string made = rewritten(before, {{"first", {spanOf(contents)}}});
  EXPECT_LT(made.size(), contents.size() / 100);
  const Archive after = Archive::open(bytesOf(made));
  EXPECT_TRUE(textOf(after.read(*after.find("first")).view) == contents);
}

/// Text and bytes that do not shrink, in small pieces, large ones and empty ones; the larger by several
/// threads.
TEST(Rewrite, DeflatesALargeMemberPieceByPiece) {
  const Archive before = Archive::open(bytesOf(build({{{"first", "f"}, {"last", "l"}}}).bytes));
  for (const auto& [letters, kilobytes] :
       {std::pair(4U, 900U), std::pair(256U, 900U), std::pair(4U, 5'000U)}) {
    std::mt19937 random(letters);
    std::string contents;
    while (contents.size() < std::size_t{kilobytes} << 10U) contents += static_cast<char>(random() % letters);
    Change change{"first", {}};
    for (std::size_t at = 0; at < contents.size();) {
      const std::size_t longest = std::array<std::size_t, 3>{60, 5'000, 400'000}.at(random() % 3);
      const std::size_t size = std::min<std::size_t>(random() % longest, contents.size() - at);
      change.pieces.push_back(spanOf(std::string_view(contents).substr(at, size)));
      if (size % 7 == 0) change.pieces.emplace_back();
      at += size;
    }
    const std::string made = rewritten(before, {change});
    EXPECT_LT(made.size(), letters == 4 ? contents.size() / 3 : contents.size() * 17 / 16);
    const Archive after = Archive::open(bytesOf(made));
    EXPECT_TRUE(textOf(after.read(*after.find("first")).view) == contents);
    EXPECT_EQ(textOf(after.read(*after.find("last")).view), "l");
  }
}

/// A stored member of 4 GiB of nothing, in memory that is never touched. A member before it that grows pushes
/// it beyond what 32 bits hold.
TEST(Rewrite, TurnsToZip64WhereOffsetsOutgrowTheirFields) {
  constexpr std::uint64_t kHole = 0xffffff00U - 200;
  Built head = build({{{"first", "f", false}, {"hole", "", false}, {"last", "l", false}}});
  const std::uint64_t grown = head.bytes.size() + kHole;
  const std::size_t split = head.local[2];
  for (const std::size_t field : {head.local[1] + 18, head.local[1] + 22}) head.set32(field, kHole);
  for (const std::size_t field : {head.central[1] + 20, head.central[1] + 24}) head.set32(field, kHole);
  head.set32(head.central[2] + 42, static_cast<std::uint32_t>(head.local[2] + kHole));
  head.set32(head.end + 16, static_cast<std::uint32_t>(head.directory + kHole));
  constexpr int kUntouched = MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE;
  void* const mapped = mmap(nullptr, grown, PROT_READ | PROT_WRITE, kUntouched, -1, 0);
  ASSERT_NE(mapped, MAP_FAILED);
  auto* const bytes = static_cast<std::uint8_t*>(mapped);
  std::copy_n(head.bytes.begin(), split, bytes);
  std::copy(head.bytes.begin() + static_cast<std::ptrdiff_t>(split), head.bytes.end(), bytes + split + kHole);

  const Archive before = Archive::open({{bytes, grown}, nullptr, nullptr});
  const std::string contents(2000, 'F');
  EndsOutput out;
  const Change change{"first", {spanOf(contents)}};
  rewrite(before, {&change, 1}, out);
  const std::uint64_t directory = split + kHole + contents.size() - 1 + 30 + 4 + 1;
  ASSERT_GT(directory, 0xffffffffU);
  // The ends of the new archive, with the hole as small as it was, make an archive that differs by 64-bit
  // fields.
  const std::size_t end64 = out.tail.rfind("PK\6\6");
  ASSERT_NE(end64, std::string::npos);
  const auto at = [&](std::size_t offset) {
    std::uint64_t value = 0;
    for (std::size_t i = 8; i-- > 0;) value = value << 8U | static_cast<unsigned char>(out.tail[offset + i]);
    return value;
  };
  EXPECT_EQ(at(end64 + 32), 3U);
  EXPECT_EQ(at(end64 + 48), directory);
  EXPECT_EQ(at(end64 + 40), out.size - directory - 56 - 20 - 22);
  EXPECT_EQ(at(out.tail.rfind("PK\6\7") + 8), out.size - 22 - 20 - 56);
  const std::size_t last = out.tail.rfind("PK\1\2");
  EXPECT_EQ(out.tail.substr(last + 42, 4), "\xff\xff\xff\xff");
  EXPECT_EQ(at(last + 46 + 4 + 4), directory - 30 - 4 - 1);
  munmap(mapped, grown);
}

}  // namespace
}  // namespace pluvo::zip
