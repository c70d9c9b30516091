#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Between texts and Windows' wide characters, which are the same 16 bits under another name.
namespace pluvo::word_com {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

inline const wchar_t* wide(const char16_t* text) { return reinterpret_cast<const wchar_t*>(text); }

inline std::u16string_view utf16(std::wstring_view text) {
  return {reinterpret_cast<const char16_t*>(text.data()), text.size()};
}

/// With one character for the mark of a table's cell or row, as it takes one position; Word gives two, 13
/// and 7.
std::u16string withCellMarks(std::u16string_view text);

/// Whether they are the same, unit by unit; without case, units that differ in case only are the same.
bool sameText(std::u16string_view left, std::u16string_view right, bool matchCase);

}  // namespace pluvo::word_com
