#include "text.h"

#include <windows.h>

namespace pluvo::word_com {

std::u16string withParagraphMarks(std::u16string_view text) {
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

bool sameText(std::u16string_view left, std::u16string_view right, bool matchCase) {
  if (matchCase) return left == right;
  if (left.size() != right.size()) return false;
  const int length = static_cast<int>(left.size());
  return CompareStringOrdinal(wide(left.data()), length, wide(right.data()), length, TRUE) == CSTR_EQUAL;
}

}  // namespace pluvo::word_com
