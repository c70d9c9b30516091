#include "cfb/compound_file.h"

#include "containers/cfb/compound_builder.h"
#include "storage/files/as_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace pluvo::cfb {
namespace {

using files::bytesOf;
using files::textOf;
using testing::HasSubstr;

std::string repeated(std::size_t length, char first) {
  std::string text(length, first);
  for (std::size_t i = 0; i < length; ++i) text[i] = static_cast<char>(first + static_cast<int>(i % 23));
  return text;
}

const Streams kStreams = {{"WordDocument", repeated(9000, 'A')},
                          {"1Table", repeated(4095, 'a')},
                          {"Macros", ""},
                          {"Macros/VBA", ""},
                          {"Macros/VBA/dir", "macro"},
                          {"Empty", ""}};

std::string contents(const std::string& file, std::string_view path) {
  const CompoundFile opened = CompoundFile::open(bytesOf(file));
  return textOf(opened.read(opened.stream(path).value()).view);
}

std::string changed(const std::string& file, std::string_view path, const std::string& to) {
  const CompoundFile opened = CompoundFile::open(bytesOf(file));
  const base::Bytes bytes = bytesOf(to);
  const Change change = {opened.stream(path).value(),
                         {bytes.view.first(to.size() / 2), bytes.view.subspan(to.size() / 2)}};
  base::MemoryOutput out;
  rewrite(opened, {&change, 1}, out);
  return textOf(out.bytes());
}

TEST(CompoundFile, KeepsEveryStreamAndEntryWhereOneChanges) {
  // Grown and shrunk across the limit of small streams; beyond 109 sectors of the table.
  for (const unsigned shift : {9U, 12U}) {
    const std::string file = compoundFile(kStreams, shift);
    for (const std::size_t size : {0U, 1U, 64U, 4095U, 4096U, 60'000U, 20'000'000U}) {
      for (const char* const path : {"worddocument", "1TABLE", "macros/vba/DIR"}) {
        SCOPED_TRACE(std::to_string(size) + path);
        const std::string made = changed(file, path, repeated(size, 'z'));
        const CompoundFile opened = CompoundFile::open(bytesOf(made));
        ASSERT_EQ(contents(made, path), repeated(size, 'z'));
        for (const auto& [name, was] : kStreams) {
          const auto id = opened.stream(name);
          if (!id || id == opened.find(path)) continue;
          EXPECT_EQ(textOf(opened.read(*id).view), was) << name;
        }
        EXPECT_EQ(opened.entries()[4].name, u"VBA");
        EXPECT_EQ(opened.find("Macros/VBA/dir"), 5U);
        EXPECT_FALSE(opened.stream("Macros/VBA") || opened.find("VBA") || opened.find("Macros/"));
        // The last sector needs no bytes after those in use.
        EXPECT_EQ(contents(changed(made, path, "x"), path), "x");
      }
    }
  }
}

TEST(CompoundFile, LeavesNothingOfWhatItDoesNotUse) {
  std::string file =
      compoundFile({{"A", "kept"}, {"B", "SECRET in a small stream"}, {"C", repeated(5000, 'S')}});
  const std::size_t root = file.find(std::string("R\0o", 3));
  file.replace(root + 128 + 20, 6, "SECRET");     // after a name
  file.replace(root + 128 + 0x48, 4, 4, '\xFF');  // B and C are out of the tree
  file.replace(root + 0x78 + 4, 4, 4, '\x11');    // the upper half of a size, which version 3 does not use
  file += std::string(512, 'S');                  // a sector that nobody names
  EXPECT_EQ(contents(file, "a"), "kept");
  const std::string made = changed(file, "A", "changed");
  EXPECT_EQ(contents(made, "A"), "changed");
  EXPECT_THAT(made, testing::Not(HasSubstr("SECRET")));
  EXPECT_THAT(made, testing::Not(HasSubstr("STUV")));
  EXPECT_FALSE(CompoundFile::open(bytesOf(made)).find("B"));
}

TEST(CompoundFile, IsRefusedWhereItContradictsItself) {
  const std::string file = compoundFile(kStreams);
  const std::size_t root = file.find(std::string("R\0o", 3));
  const auto number = [](std::size_t at, std::uint32_t value) {
    return [=](std::string& bytes) {
      base::put(std::span(reinterpret_cast<std::uint8_t*>(bytes.data()), bytes.size()), at, value);
    };
  };
  const auto tables = 512 * (1 + base::get32(bytesOf(file).view, 0x4C));
  const std::pair<std::function<void(std::string&)>, const char*> cases[] = {
      {[](std::string& bytes) { bytes.resize(511); }, "no header"},
      {number(0x1C, 0x000AFFFE), "sizes that no such file has"},
      {number(0x2C, 0x7FFFFFFF), "larger than it"},
      {number(0x4C, 0x1000), "cut off"},
      {number(0x30, 0x7FFFFFFF), "directory is broken off"},
      {number(0x30, 0), "no root"},
      {number(root + 0x4C, 0x1000), "contradicts itself"},
      {number(root + 128 + 0x44, 2), "contradicts itself"},
      {number(root + 128 + 0x44, 7), "not in use"},
      {number(root + 128 + 0x78, 0x7FFFFFFF), "streams are larger than it"},
      {number(root + 128 + 0x78, 10'000), "WordDocument.* is broken off"},
      {number(root + 128 + 0x74, 0x1000), "WordDocument.* is broken off"},
      {number(tables + 4, 0), "WordDocument.* runs in circles"},
      {number(0x40, 0), "1Table.* is broken off"}};
  for (const auto& [spoil, said] : cases) {
    std::string bytes = file;
    spoil(bytes);
    const std::string refusal = files::refusalOf([&] { changed(bytes, "Macros/VBA/dir", "x"); });
    EXPECT_THAT(refusal, testing::ContainsRegex("^damaged: .*" + std::string(said))) << said;
  }
  for (std::size_t size = 0; size < file.size(); ++size) {
    const auto cut = files::refusalOf([&] { contents(file.substr(0, size), "1Table"); });
    EXPECT_THAT(cut, testing::AnyOf("", HasSubstr("damaged"))) << size;
  }
}

}  // namespace
}  // namespace pluvo::cfb
