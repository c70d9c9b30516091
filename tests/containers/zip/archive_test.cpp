#include "zip/archive.h"

#include "containers/cfb/compound_builder.h"
#include "containers/zip/zip_builder.h"
#include "storage/files/as_text.h"
#include "zip/looks_like.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace pluvo::zip {
namespace {

using namespace std::string_literals;
using files::bytesOf;
using files::textOf;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

const Zip kTwo{{{"a.xml", std::string(300, 'a')}, {"b.xml", "b", false}}};

/// Opens and reads everything.
std::string refusal(const std::string& bytes, const Limits& limits = {}) {
  return files::refusalOf([&] {
    const Archive archive = Archive::open(bytesOf(bytes), limits);
    for (const Member& member : archive.members()) archive.read(member);
  });
}

TEST(Archive, ReadsEverySoundShape) {
  for (const auto& [what, zip] : soundShapes()) {
    SCOPED_TRACE(what);
    const Archive archive = Archive::open(bytesOf(build(zip).bytes));
    ASSERT_EQ(archive.members().size(), zip.entries.size());
    for (const Entry& entry : zip.entries) {
      const Member* member = archive.find(entry.name);
      ASSERT_NE(member, nullptr);
      EXPECT_EQ(textOf(archive.read(*member).view), entry.contents);
    }
  }
}

TEST(Archive, FindsNamesAsPackagesCompareThem) {
  const Archive archive = Archive::open(bytesOf(build({{{"Word\\Document.xml", ""}, {"/x", ""}}}).bytes));
  for (const char* name : {"word/document.xml", "/Word/document.XML", "Word\\Document.xml", "x", "/X"})
    EXPECT_NE(archive.find(name), nullptr) << name;
  for (const char* name : {"word/document.xm", "word/document.xmll", "", "/", "word"})
    EXPECT_EQ(archive.find(name), nullptr) << name;
}

struct Lie {
  const char* said;  ///< what the archive is refused with
  std::function<void(Built&)> tell;
};

void expectRefused(const std::string& code, const Zip& zip, const std::vector<Lie>& lies) {
  for (const Lie& lie : lies) {
    Built built = build(zip);
    lie.tell(built);
    EXPECT_THAT(refusal(built.bytes), AllOf(StartsWith(code + ": "), HasSubstr(lie.said)))
        << "lie " << &lie - lies.data();
  }
}

TEST(Archive, SaysWhatIsWrong) {
  expectRefused(
      "damaged", kTwo,
      {{"\"a.xml\" lies over another", [](Built& b) { b.set32(b.central[1] + 42, 0); }},
       {"before its first one", [](Built& b) { b.set32(b.central[0] + 42, 7); }},
       {"lies over another", [](Built& b) { b.set32(b.central[1] + 42, 0x7fffffff); }},
       {"not where its directory says",
        [](Built& b) { b.set32(b.central[1] + 42, static_cast<std::uint32_t>(b.local[1]) + 1); }},
       {"reaches into another", [](Built& b) { b.set32(b.central[0] + 20, 2000); }},
       {"reaches into another", [](Built& b) { b.set32(b.central[1] + 20, 0xfffffff0); }},
       {"reaches into another", [](Built& b) { b.set16(b.local[1] + 28, 60000); }},
       {"contradict", [](Built& b) { b.bytes[b.local[0] + 30] = 'c'; }},
       {"contradict", [](Built& b) { b.set16(b.local[0] + 8, 0); }},
       {"contradict", [](Built& b) { b.set32(b.local[0] + 14, 1); }},
       {"contradict", [](Built& b) { b.set32(b.local[0] + 18, 1); }},
       {"contradict", [](Built& b) { b.set32(b.local[0] + 22, 301); }},
       {"is incomplete", [](Built& b) { b.set32(b.central[0] + 24, 0xffffffff); }},
       {"is incomplete", [](Built& b) { b.set16(b.central[0] + 34, 1); }},
       {"directory cannot be read", [](Built& b) { b.set16(b.central[1] + 28, 0); }},
       {"directory cannot be read", [](Built& b) { b.set16(b.central[1] + 30, 9); }},
       {"directory cannot be read", [](Built& b) { b.setCount(3); }},
       {"holds more", [](Built& b) { b.setCount(1); }},
       {"not where its end says", [](Built& b) { b.set32(b.end + 16, 3); }},
       {"not where its end says", [](Built& b) { b.set32(b.end + 12, 0xfffffff0); }},
       {"split over several", [](Built& b) { b.set16(b.end + 4, 1); }},
       {"split over several", [](Built& b) { b.set16(b.end + 8, 1); }},
       {"end is missing", [](Built& b) { b.bytes += "tail"; }},
       {"end is missing", [](Built& b) { b.set16(b.end + 20, 1); }},
       {"looks like", [](Built& b) { b.bytes.insert(0, "#!/bin/sh\n"); }},
       {"two members \"a.xml\"",
        [](Built& b) { b.bytes[b.local[1] + 30] = b.bytes[b.central[1] + 46] = 'a'; }},
       {"two members", [](Built& b) { b.bytes[b.local[1] + 30] = b.bytes[b.central[1] + 46] = 'A'; }},
       {"\"a.xml\" are not what they were", [](Built& b) { b.setBoth(0, 14, 1); }},
       {"are not what they were", [](Built& b) { b.bytes[b.local[0] + 35] = '\xff'; }},
       {"are not what they were", [](Built& b) { b.setBoth(1, 22, 2); }},
       {"are not what they were", [](Built& b) { b.setBoth(0, 22, 299); }},
       {"are not what they were", [](Built& b) { b.setBoth(0, 22, 301); }},
       {"cannot be as large", [](Built& b) { b.setBoth(0, 22, 1U << 24U); }}});
  expectRefused("password", kTwo,
                {{"is encrypted", [](Built& b) { b.set16(b.central[0] + 8, 1); }},
                 {"is encrypted", [](Built& b) { b.set16(b.local[0] + 6, 0x40); }}});
  expectRefused("unsupported", kTwo, {{"method", [](Built& b) { b.setBoth(0, 8, 12, 2); }}});
}

TEST(Archive, SaysWhatIsWrongWithZip64) {
  Zip zip = kTwo;
  zip.zip64End = true;
  expectRefused(
      "damaged", zip,
      {{"not where it should be", [](Built& b) { b.set(b.end - 12, b.end64 + 1, 8); }},
       {"not where it should be", [](Built& b) { b.set(b.end - 12, ~std::uint64_t{0}, 8); }},
       {"not where it should be", [](Built& b) { b.set(b.end64 + 4, ~std::uint64_t{0}, 8); }},
       {"split over several", [](Built& b) { b.set(b.end64 + 16, 1, 4); }},
       {"contradict", [](Built& b) { b.set16(b.end + 10, 1); }},
       {"contradict", [](Built& b) { b.set32(b.end + 16, 1); }},
       {"not where its end says", [](Built& b) { b.set(b.end64 + 48, ~std::uint64_t{0}, 8); }},
       {"not where its end says", [](Built& b) { b.set(b.end64 + 40, ~std::uint64_t{0} - 40, 8); }}});
}

TEST(Archive, MayHaveTwoEndsThatSayTheSame) {
  Zip zip = kTwo;
  zip.zip64End = true;
  Built built = build(zip);
  built.setCount(2);
  built.set32(built.end + 12, static_cast<std::uint32_t>(built.end64 - built.directory));
  built.set32(built.end + 16, static_cast<std::uint32_t>(built.directory));
  EXPECT_EQ(refusal(built.bytes), "");
}

TEST(Archive, KeepsItsLimits) {
  Zip many;
  for (int i = 0; i < 20; ++i) many.entries.push_back({"m" + std::to_string(i), std::string(10'000, 'x')});
  const std::string bytes = build(many).bytes;
  EXPECT_EQ(refusal(bytes), "");
  const struct {
    const char* said;
    Limits limits;
  } cases[] = {{"20 members", {.members = 19}},
               {"\"m0\" is too large", {.memberSize = 9'999}},
               {"unpacks to", {.totalSize = 199'999}},
               {"-fold", {.ratio = 50, .freeSize = 9'999}}};
  for (const auto& [said, limits] : cases)
    EXPECT_THAT(refusal(bytes, limits), AllOf(StartsWith("too-large: "), HasSubstr(said)));
  EXPECT_EQ(refusal(bytes, {.ratio = 50, .freeSize = 10'000}), "");
  EXPECT_EQ(refusal(bytes, {.ratio = 1000, .freeSize = 9'999}), "");
}

TEST(Archive, RefusesEveryTruncatedOne) {
  for (const auto& [what, zip] : soundShapes()) {
    const std::string whole = build(zip).bytes;
    for (std::size_t size = 0; size < whole.size(); ++size)
      EXPECT_THAT(refusal(whole.substr(0, size)), StartsWith("damaged: ")) << what << " cut at " << size;
  }
}

TEST(Archive, AnyOneByteChangedIsRefusedOrHarmless) {
  for (const auto& [what, zip] : soundShapes()) {
    const std::string whole = build(zip).bytes;
    for (std::size_t at = 0; at < whole.size(); ++at) {
      std::string changed = whole;
      changed[at] = static_cast<char>(changed[at] ^ 0xff);
      try {
        const Archive archive = Archive::open(bytesOf(changed));
        for (const Entry& entry : zip.entries) {
          const Member* member = archive.find(entry.name);
          if (member == nullptr) continue;
          EXPECT_EQ(textOf(archive.read(*member).view), entry.contents) << what << " " << at;
        }
      } catch (const errors::DocumentError& error) {
        EXPECT_NE(error.problem(), errors::Problem::io);
      }
    }
  }
}

TEST(LooksLike, SaysWhatTheBytesAre) {
  const auto wide = [](const std::string& ascii) {
    std::string out;
    for (const char c : ascii) out += {c, '\0'};
    return out;
  };
  const auto compound = [](const std::vector<std::string>& names) {
    cfb::Streams streams;
    for (const std::string& name : names) streams.emplace_back(name, "");
    return cfb::compoundFile(streams);
  };
  const std::pair<std::string, const char*> cases[] = {
      {compound({"EncryptionInfo", "encryptedpackage"}), "password: .*encrypted with a password"},
      {compound({"a", "b", "c", "d", "e", "EncryptedPackage", "EncryptionInfo"}), "password: "},
      {compound({"a", "b", "c", "WordDocument"}), "older Word document"},
      {compound({"Storage", "Storage/WordDocument", "Workbook"}), "spreadsheet"},
      // A name elsewhere in the file says nothing.
      {compound({"EncryptedPackage1"}) + wide("EncryptedPackage") + wide("EncryptionInfo"), "older Office"},
      {compound({"WordDocument"}).substr(0, 600), "older Office document"},
      {"", "empty file"},
      {"{\\rtf1 a}", "RTF"},
      {"%PDF-1.7", "PDF"},
      {"\xEF\xBB\xBF \n<!DOCTYPE HTML><p>", "web page"},
      {"<?xml version='1.0'?><w:wordDocument/>", "XML"},
      {"Caf\xC3\xA9, in plain words\r\n", "plain text"},
      {"\xFF\xFE" + wide("words"), "plain text"},
      {std::string(5000, '\0'), "nothing but zeros"},
      {"\x7F"
       "ELF\2\1\1\0"s,
       "no document"},
      {"PK\5\6"s + std::string(18, '\0'), "empty ZIP"},
      {"PK", "plain text"}};
  for (const auto& [bytes, said] : cases)
    EXPECT_THAT(refusal(bytes), testing::ContainsRegex("^(damaged: .*)?" + std::string(said)));
}

}  // namespace
}  // namespace pluvo::zip
