#pragma once

#include "base/utf.h"

#include <cstdint>

namespace pluvo::plain {

/// The smallest piece of a text that has bytes of its own, but for line ends: a character, or half of a
/// surrogate pair in UTF-16.
struct Character {
  char32_t codePoint = 0;
  std::uint8_t bytes = 0;
  bool valid = true;  ///< false: one byte that means nothing in the encoding, as strayByte
};

/// A byte that is no character stands in the text as the lone surrogate DC80 to DCFF. No text that is
/// inserted may hold one, so that such a unit is always that byte of the file.
constexpr bool isStray(char32_t point) {
  return point >= base::standInOf(0) && point <= base::standInOf(0xFF);
}
constexpr Character strayByte(std::uint8_t byte) { return {base::standInOf(byte), 1, false}; }

}  // namespace pluvo::plain
