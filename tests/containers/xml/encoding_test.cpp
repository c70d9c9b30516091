#include "xml/encoding.h"

#include "storage/files/as_text.h"
#include "xml/escape.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pluvo::xml {
namespace {

using namespace std::string_literals;
using files::bytesOf;
using files::textOf;

std::string utf16(const std::string& ascii, bool littleEndian) {
  std::string wide;
  for (const char c : ascii) wide += littleEndian ? std::string{c, '\0'} : std::string{'\0', c};
  return wide;
}

TEST(Encoding, ReadsAndWritesBackEveryKind) {
  const std::string latin = "<?xml version='1.0' encoding=\"ISO-8859-1\"?><a>\xE9</a>";
  const std::string ascii = "<?xml version='1.0' encoding='us-ascii'?><a/>";
  const struct {
    std::string part, name, utf8;
  } cases[] = {
      {"<a>\xC3\xA9</a>", "UTF-8", "<a>\xC3\xA9</a>"},
      {"\xEF\xBB\xBF<a/>", "UTF-8", "<a/>"},
      {"", "UTF-8", ""},
      {"<?xml version='1.0' encoding='utf-8'?><a/>", "UTF-8", "<?xml version='1.0' encoding='utf-8'?><a/>"},
      {ascii, "UTF-8", ascii},
      {latin, "ISO-8859-1", "<?xml version='1.0' encoding=\"ISO-8859-1\"?><a>\xC3\xA9</a>"},
      {"<?xml version='1.0' encoding='windows-1252'?>\x80", "windows-1252",
       "<?xml version='1.0' encoding='windows-1252'?>\xE2\x82\xAC"},
      {"<?xml version='1.0' encoding='Shift_JIS'?>\x83\x65", "Shift_JIS",
       "<?xml version='1.0' encoding='Shift_JIS'?>\xE3\x83\x86"},
      {"\xFF\xFE" + utf16("<a/>", true), "UTF-16LE", "<a/>"},
      {"\xFE\xFF" + utf16("<a/>", false), "UTF-16BE", "<a/>"},
      {utf16("<a/>", true), "UTF-16LE", "<a/>"},
      {utf16("<a/>", false), "UTF-16BE", "<a/>"},
      {"\xFF\xFE\0\0<\0\0\0"s, "UTF-32LE", "<"},
      {"\xFF\xFE<\0\x3D\xD8\x00\xDE"s, "UTF-16LE", "<\xF0\x9F\x98\x80"}};
  for (const auto& [part, name, utf8] : cases) {
    const Utf8Part read = toUtf8(bytesOf(part), "part.xml");
    EXPECT_EQ(read.encoding.name, name);
    EXPECT_EQ(textOf(read.utf8.view), utf8);
    EXPECT_EQ(textOf(fromUtf8(read.utf8.view, read.encoding)), part) << utf8;
  }
}

TEST(Encoding, WritesWhatItLacksAsAReference) {
  const Encoding latin{"ISO-8859-1", ""};
  const std::string text = "<a>\xE2\x82\xAC\xC3\xA9\xF0\x9F\x98\x80</a>";
  EXPECT_EQ(textOf(fromUtf8(bytesOf(text).view, latin)), "<a>&#8364;\xE9&#128512;</a>");
}

TEST(Encoding, RefusesWhatItCannotKeep) {
  const std::pair<std::string, const char*> cases[] = {
      {"<?xml version='1.0' encoding='x-klingon'?><a/>", "unsupported"},
      {"<?xml version='1.0' encoding='UTF-16//IGNORE'?><a/>", "unsupported"},
      {"<?xml version='1.0' encoding='../../x'?><a/>", "unsupported"},
      {"<?xml version='1.0' encoding='EUC-JP'?><a>\xFF</a>", "damaged"},
      {"\xFF\xFE<\0a"s, "damaged"},                                                     // half a unit
      {"\xFF\xFE<\0\x3D\xD8"s, "damaged"},                                              // half a pair
      {"<?xml version='1.0' encoding='ISO-2022-JP'?><a>\x1B(B\x1B(B</a>", "damaged"}};  // said twice
  for (const auto& [part, code] : cases)
    EXPECT_THAT(files::refusalOf([&, &it = part] { toUtf8(bytesOf(it), "part.xml"); }),
                testing::ContainsRegex(std::string(code) + ": .*part.xml"));
}

TEST(Escape, LeavesNothingThatAReaderTakesForMarkup) {
  for (const auto& [units, wanted] :
       {std::pair{u"a<b>&\"\t\r\n\u00E9\u20AC\U0001F600",
                  "a&lt;b&gt;&amp;\"\t&#13;\n\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"},
        {u"a b~", "a b~"},
        {u"a>", "a&gt;"},
        {u"<", "&lt;"},
        {u"\u00E9", "\xC3\xA9"},
        {u"\r", "&#13;"}}) {
    std::string text = "!";
    appendEscapedText(text, units);
    EXPECT_EQ(text, std::string("!") + wanted);
  }
  for (const char32_t c : {0x0U, 0x1FU, 0xD800U, 0xDFFFU, 0xFFFEU, 0xFFFFU, 0x110000U})
    EXPECT_FALSE(isCharacter(c));
  for (const char32_t c : {0x9U, 0x20U, 0xD7FFU, 0xE000U, 0xFFFDU, 0x10FFFFU}) EXPECT_TRUE(isCharacter(c));
}

}  // namespace
}  // namespace pluvo::xml
