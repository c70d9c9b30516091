#include "base/ascii.h"
#include "base/json.h"
#include "base/json_value.h"
#include "base/secret_text.h"
#include "base/shown.h"
#include "base/suggest.h"
#include "base/text.h"

#include <gtest/gtest.h>

namespace pluvo::base {
namespace {

using namespace std::string_literals;

TEST(Text, IsShownAndQuotedWithoutWhatActs) {
  const struct {
    std::string bytes, shown, json;
  } cases[] = {
      {"a\u00E9 \"\\~", "a\u00E9 \"\\~", "a\u00E9 \\\"\\\\~"},
      {"\0\x1F\x7F\u0080\u009F"s, "?????", "\\u0000\\u001f\\u007f\\u0080\\u009f"},
      {"\u061C\u200E\u200F", "???", "\\u061c\\u200e\\u200f"},
      {"\u202A\u202E\u2066\u206F", "????", "\\u202a\\u202e\\u2066\\u206f"},
      {"\u00A0\u061B\u200D\u2010\u2029\u202F\u2065\u2070", "\u00A0\u061B\u200D\u2010\u2029\u202F\u2065\u2070",
       "\u00A0\u061B\u200D\u2010\u2029\u202F\u2065\u2070"},
      {"a\xFF\xE2\x82z", "a\uFFFD\uFFFD\uFFFDz", "a\\udcff\\udce2\\udc82z"},
      {"", "", ""}};
  for (const auto& [bytes, visible, json] : cases) {
    EXPECT_EQ(shown(bytes), visible);
    EXPECT_EQ(jsonQuoted(bytes), '"' + json + '"');
    const auto read = JsonValue::from(jsonQuoted(bytes));
    EXPECT_TRUE(read && read->text() == bytes) << json;
  }
}

TEST(Json, IsWrittenWithCommasAndReadBack) {
  JsonArray array;
  EXPECT_TRUE(array.empty());
  array.add("1");
  array.add("[]");
  JsonObject object;
  EXPECT_EQ(object.str(), "{}");
  object.text("a", "\n").number("b", -2).truth("c", true).truth("d", false).none("e").json("f", array.str());
  EXPECT_EQ(object.str(), R"({"a":"\u000a","b":-2,"c":true,"d":false,"e":null,"f":[1,[]]})");
  EXPECT_EQ("{" + object.members() + "}", object.str());
  EXPECT_FALSE(object.empty() || array.empty());

  const auto read = JsonValue::from(" " + object.str() + "\n");
  ASSERT_TRUE(read && read->isObject());
  EXPECT_EQ((*read)["a"].text(), "\n");
  EXPECT_EQ((*read)["b"].number(), -2);
  EXPECT_TRUE((*read)["c"].isTrue() && !(*read)["d"].isTrue() && read->has("e") && !read->has("g"));
  EXPECT_EQ((*read)["f"].items().size(), 2U);
  EXPECT_EQ(JsonValue::from(R"([ 1.5e3 , "a\ud83d\ude00\t" ])")->items().back().text(), "a\U0001F600\t");
  const std::string deepest = std::string(32, '[') + std::string(32, ']');
  EXPECT_TRUE(JsonValue::from(deepest));
  for (const std::string& wrong :
       {""s, "{"s, "[1"s, "[1,]"s, "{1:2}"s, "{\"a\" 1}"s, "tru"s, "x"s, "1 2"s, "\"a"s, "\"\\"s, "\"\\x\""s,
        R"("\u12")"s, R"("\u00g0")"s, R"("\ud83d")"s, "[" + deepest + "]"})
    EXPECT_FALSE(JsonValue::from(wrong)) << wrong;
}

TEST(Text, NumbersAndLineEnds) {
  EXPECT_EQ(decimal(-12), u"-12");
  EXPECT_EQ(counted(1, "block") + counted(0, "block") + counted(2, "file"), "1 block0 blocks2 files");
  EXPECT_EQ(withParagraphMarks(u"a\nb\r\nc\rd\n\n\r\n"), u"a\rb\rc\rd\r\r\r");
  EXPECT_EQ(withParagraphMarks(u"a\rb"), u"a\rb");
}

TEST(Ascii, KnowsNoOtherLetters) {
  EXPECT_EQ(asciiLower("@AZ[`az{\u00C9"), "@az[`az{\u00C9");
  EXPECT_EQ(asciiUpper("@AZ[`az{\u00E9"), "@AZ[`AZ{\u00E9");
  EXPECT_TRUE(equalsIgnoringAsciiCase("aZ", "Az"));
  EXPECT_FALSE(equalsIgnoringAsciiCase("aZ", "AzA"));
  EXPECT_TRUE(startsWithIgnoringAsciiCase("<HTML>", "<html"));
  EXPECT_FALSE(startsWithIgnoringAsciiCase("<ht", "<html"));
}

TEST(Suggest, WhatAMistypedWordStandsFor) {
  const std::vector<std::string_view> words = {"find", "file", "replace", "red", std::string_view("x")};
  const std::pair<std::string, std::string> cases[] = {{"fnd", " Did you mean find?"},
                                                       {"fi", " Did you mean find or file?"},
                                                       {"fild", " Did you mean find or file?"},
                                                       {"repalce", " Did you mean replace?"},
                                                       {"relpcae", " Did you mean replace?"},
                                                       {"replaceable", ""},
                                                       {"erlpcae", ""},
                                                       {"rd", " Did you mean red?"},
                                                       {"dr", ""},
                                                       {"erd", " Did you mean red?"},
                                                       {"", ""},
                                                       {std::string(41, 'x'), ""}};
  for (const auto& [typed, meant] : cases) EXPECT_EQ(didYouMean(typed, words), meant) << typed;
  EXPECT_EQ(joinedWithOr({"a", "b", "c"}), "a, b or c");
}

TEST(SecretText, LeavesNothingWhereItWas) {
  std::u16string typed = u"long enough for memory of its own";
  SecretText first(std::move(typed));
  EXPECT_TRUE(typed.empty());  // NOLINT(bugprone-use-after-move)
  SecretText second(std::move(first));
  EXPECT_TRUE(first.text().empty());  // NOLINT(bugprone-use-after-move)
  SecretText third(u"short");
  third = std::move(second);
  EXPECT_TRUE(second.text().empty());  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(third.text(), u"long enough for memory of its own");
  std::u16string brief = u"pass";
  const std::string_view left(reinterpret_cast<const char*>(&brief), sizeof(std::u16string));
  const SecretText fourth(std::move(brief));
  // A single letter could be a byte of the string's pointer.
  EXPECT_EQ(left.find("s\0s"s), std::string_view::npos) << "within the string itself";
  std::string row = "abc";
  wipe(row.data(), 2);
  EXPECT_EQ(row, "\0\0c"s);
  wipe(row);
  EXPECT_TRUE(row.empty());
}

}  // namespace
}  // namespace pluvo::base
