#pragma once

#include <string>
#include <string_view>

namespace pluvo::text {

/// What a unit folds to when case does not matter (Unicode's simple case folding), the same whatever the
/// user's locale.
char16_t foldCase(char16_t unit);
/// The same for ASCII alone, which is asked most, without a call.
constexpr char16_t foldAscii(char16_t unit) {
  return u'A' <= unit && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
}

/// Every unit by itself, so that the length stays.
std::u16string foldCase(std::u16string_view text);

}  // namespace pluvo::text
