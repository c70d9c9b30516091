#include "characters.h"

#include "unicode_tables.h"

#include <algorithm>
#include <iterator>

namespace pluvo::text {
namespace {

constexpr UnitSet wordUnits() {
  UnitSet set{};
  for (const WordRange& range : kWordRanges) {
    for (char32_t unit = range.first; unit <= range.last && unit < 0x10000;) {
      if (unit % 64 == 0 && unit + 63 <= range.last) {
        set[unit / 64] = ~std::uint64_t{0};
        unit += 64;
      } else {
        set[unit / 64] |= std::uint64_t{1} << unit % 64;
        ++unit;
      }
    }
  }
  return set;
}

}  // namespace

constinit const UnitSet kWordUnits = wordUnits();

bool isWordCharacter(char32_t character) {
  if (character < 0x10000) return isWordUnit(static_cast<char16_t>(character));
  const auto* range = std::lower_bound(std::begin(kWordRanges), std::end(kWordRanges), character,
                                       [](const WordRange& r, char32_t c) { return r.last < c; });
  return range != std::end(kWordRanges) && range->first <= character;
}

}  // namespace pluvo::text
