#include "base/text.h"

namespace pluvo::base {

std::u16string decimal(std::int64_t number) {
  const std::string digits = std::to_string(number);
  return {digits.begin(), digits.end()};
}

std::u16string withParagraphMarks(std::u16string_view text) {
  if (text.find(u'\n') == std::u16string_view::npos) return std::u16string(text);
  std::u16string result;
  result.reserve(text.size());
  char16_t previous = 0;
  for (const char16_t unit : text) {
    if (unit != u'\n') {
      result += unit;
    } else if (previous != u'\r') {
      result += u'\r';
    }
    previous = unit;
  }
  return result;
}

}  // namespace pluvo::base
