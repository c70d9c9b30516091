#pragma once

#include "base/utf.h"
#include "text/folding.h"
#include "text/positions.h"

#include <array>
#include <cstdint>

namespace pluvo::text {

/// The units that fold to the same unit as a given one, that one among them.
struct FoldVariants {
  std::array<char16_t, 8> units{};
  int count = 0;
};
FoldVariants foldVariants(char16_t unit);

/// A manual line break is found as a paragraph mark is.
constexpr char16_t asLineEnd(char16_t unit) { return unit == kLineBreak ? kParagraphMark : unit; }

/// Letters, combining marks and digits.
bool isWordCharacter(char32_t character);
/// One bit a unit: whether it is a word character.
using UnitSet = std::array<std::uint64_t, 0x10000 / 64>;
extern const UnitSet kWordUnits;
inline bool isWordUnit(char16_t unit) { return (kWordUnits[unit / 64U] >> unit % 64U & 1) != 0; }

/// Spaces of any width, breaking or not; no tab and no line end.
constexpr bool isSpace(char16_t unit) {
  return unit == 0x20 || unit == 0xA0 || unit == 0x1680 || (0x2000 <= unit && unit <= 0x200A) ||
         unit == 0x202F || unit == 0x205F || unit == 0x3000;
}

using base::isHighSurrogate;
using base::isLowSurrogate;
using base::joinSurrogates;

}  // namespace pluvo::text
