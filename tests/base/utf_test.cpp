#include "base/utf.h"

#include "base/names.h"

#include <gtest/gtest.h>

#include <random>

namespace pluvo::base {
namespace {

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
}  // namespace pluvo::base
