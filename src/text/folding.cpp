#include "text/folding.h"

#include "characters.h"
#include "unicode_tables.h"

#include <algorithm>
#include <iterator>

namespace pluvo::text {
namespace {

/// Which pages of 256 units hold one that folds; most scripts have no case.
constexpr std::array<bool, 256> foldingPages() {
  std::array<bool, 256> pages{};
  for (const FoldRange& range : kFoldRanges) {
    for (unsigned page = range.first / 256U; page <= range.last / 256U; ++page) pages[page] = true;
  }
  return pages;
}

constexpr std::array<bool, 256> kFoldingPages = foldingPages();

constexpr bool folds(const FoldRange& range, std::int32_t unit) {
  return range.first <= unit && unit <= range.last && (unit - range.first) % range.stride == 0;
}

constexpr FoldVariants variantsOf(char16_t folded) {
  FoldVariants variants{{folded}, 1};
  for (const FoldRange& range : kFoldRanges) {
    const std::int32_t source = folded - range.distance;
    if (folds(range, source))
      variants.units[static_cast<std::size_t>(variants.count++)] = static_cast<char16_t>(source);
  }
  return variants;
}

constexpr std::array<FoldVariants, 0x80> asciiVariants() {
  std::array<FoldVariants, 0x80> variants{};
  for (std::size_t i = 0; i < variants.size(); ++i) variants[i] = variantsOf(static_cast<char16_t>(i));
  return variants;
}

constexpr std::array<FoldVariants, 0x80> kAsciiVariants = asciiVariants();

}  // namespace

char16_t foldCase(char16_t unit) {
  if (unit < 0x80) return foldAscii(unit);
  if (!kFoldingPages[unit / 256U]) return unit;
  const auto* range = std::lower_bound(std::begin(kFoldRanges), std::end(kFoldRanges), unit,
                                       [](const FoldRange& r, char16_t u) { return r.last < u; });
  if (range == std::end(kFoldRanges) || !folds(*range, unit)) return unit;
  return static_cast<char16_t>(unit + range->distance);
}

std::u16string foldCase(std::u16string_view text) {
  std::u16string folded(text);
  for (char16_t& unit : folded) unit = foldCase(unit);
  return folded;
}

FoldVariants foldVariants(char16_t unit) {
  const char16_t folded = foldCase(unit);
  return folded < kAsciiVariants.size() ? kAsciiVariants[folded] : variantsOf(folded);
}

}  // namespace pluvo::text
