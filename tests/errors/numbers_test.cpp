#include "errors/numbers.h"

#include "base/utf.h"
#include "errors/fault.h"

#include <gtest/gtest.h>

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
    EXPECT_EQ(isNumeric(text), number != 100'000 + kTypeMismatch) << base::utf8(text);
    return number;
  };
  const std::pair<const char16_t*, int> numbers[] = {
      {u"0", 0},           {u" 12\t", 12},       {u"+7", 7},  {u"- 7", -7},  {u"007", 7},
      {u"32767", 32767},   {u"-32768", -32768},  {u"2.5", 2}, {u"3.5", 4},   {u"-2.5", -2},
      {u"0.51", 1},        {u".5", 0},           {u"5.", 5},  {u"1e2", 100}, {u"1e-400", 0},
      {u"32767.4", 32767}, {u"-32768.5", -32768}};
  for (const auto& [text, number] : numbers) EXPECT_EQ(numberOf(text), number) << base::utf8(text);
  for (const char16_t* text : {u"32768", u"32767.5", u"-32769", u"1e400", u"99999999999999999999"})
    EXPECT_EQ(numberOf(text), 100'000 + kOverflow) << base::utf8(text);
  for (const char16_t* text :
       {u"", u"  ", u"-", u".", u"1 2", u"1-", u"1,5", u"0x10", u"1e", u"same", u"\u0661"})
    EXPECT_EQ(numberOf(text), 100'000 + kTypeMismatch) << base::utf8(text);
}

TEST(Narrow, KeepsWhatFits) {
  EXPECT_EQ(narrow(32767), 32767);
  EXPECT_EQ(narrow(-32768), -32768);
  EXPECT_THROW(narrow(32768), Fault);
  EXPECT_THROW(narrow(-32769), Fault);
}

}  // namespace
}  // namespace pluvo::errors
