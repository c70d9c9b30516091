#include "errors/text.h"

#include "errors/fault.h"

#include <gtest/gtest.h>

#include <random>

namespace pluvo::errors {
namespace {

TEST(ToInteger, TakesNumbersAndRefusesTheRest) {
  const auto numberOf = [](const std::u16string& text) {
    std::int32_t number = 0;
    try {
      number = toInteger(text);
    } catch (const Fault& fault) {
      number = 100'000 + fault.number;
    }
    EXPECT_EQ(isNumeric(text), number != 100'000 + kTypeMismatch) << utf8(text);
    return number;
  };
  const std::pair<const char16_t*, int> numbers[] = {
      {u"0", 0},           {u" 12\t", 12},       {u"+7", 7},  {u"- 7", -7},  {u"007", 7},
      {u"32767", 32767},   {u"-32768", -32768},  {u"2.5", 2}, {u"3.5", 4},   {u"-2.5", -2},
      {u"0.51", 1},        {u".5", 0},           {u"5.", 5},  {u"1e2", 100}, {u"1e-400", 0},
      {u"32767.4", 32767}, {u"-32768.5", -32768}};
  for (const auto& [text, number] : numbers) EXPECT_EQ(numberOf(text), number) << utf8(text);
  for (const char16_t* text : {u"32768", u"32767.5", u"-32769", u"1e400", u"99999999999999999999"})
    EXPECT_EQ(numberOf(text), 100'000 + kOverflow) << utf8(text);
  for (const char16_t* text :
       {u"", u"  ", u"-", u".", u"1 2", u"1-", u"1,5", u"0x10", u"1e", u"same", u"\u0661"})
    EXPECT_EQ(numberOf(text), 100'000 + kTypeMismatch) << utf8(text);
}

TEST(Narrow, KeepsWhatFits) {
  EXPECT_EQ(narrow(32767), 32767);
  EXPECT_EQ(narrow(-32768), -32768);
  EXPECT_THROW(narrow(32768), Fault);
  EXPECT_THROW(narrow(-32769), Fault);
}

TEST(Utf, GoesBothWaysAndReplacesWhatIsUnsound) {
  EXPECT_EQ(utf8(u"a\u00E4\u20AC\U0001F600"), "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
  EXPECT_EQ(utf16("a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"), u"a\u00E4\u20AC\U0001F600");
  const std::u16string lone{u'x', 0xDC00, 0xD800};
  EXPECT_EQ(utf8(lone), "x\xEF\xBF\xBD\xEF\xBF\xBD");
  for (const char* unsound : {"\x80", "\xC0", "\xE2\x28", "\xF5", "\xC3"}) {
    EXPECT_EQ(utf16(unsound).front(), u'\uFFFD') << unsound;
  }
  EXPECT_EQ(utf16("\xED\xA0\x80").find(u'\xD800'), std::u16string::npos) << "no surrogates from UTF-8";
}

TEST(Text, NamesOfAnyBytesComeBack) {
  EXPECT_EQ(nameText("a\xC3\xA9\xFF\xF0\x9F\x99\x82"), u"a\u00E9\xDCFF\xD83D\xDE42");
  for (const char* odd :
       {"\xC3", "\xE2\x82", "\xED\xA0\x80", "\xED\xB3\xBF", "\xC0\xAF", "\xF8\x88\x80\x80\x80",
        "\xF4\x90\x80\x80", "\x80\xBF\xFE", "\xED\xA0\xBD\xED\xB9\x82"})
    EXPECT_EQ(nameBytes(nameText(odd)), odd);
  std::mt19937 random(1);
  for (int round = 0; round < 2000; ++round) {
    std::string bytes(8, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    EXPECT_EQ(nameBytes(nameText(bytes)), bytes);
  }
}

}  // namespace
}  // namespace pluvo::errors
