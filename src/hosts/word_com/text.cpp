#include "text.h"

#include <windows.h>

namespace pluvo::word_com {

std::u16string withCellMarks(std::u16string_view text) {
  std::u16string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text.substr(i, 2) != u"\r\a") result += text[i];
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
