#pragma once

#include "base/little_endian.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace pluvo::doc {

inline std::u16string unitsOf(base::ByteSpan bytes) {
  std::u16string units;
  for (std::size_t i = 0; i + 2 <= bytes.size(); i += 2) units.push_back(base::get16(bytes, i));
  return units;
}

/// The bytes of the string at a place, with its length in front; the place moves after it. A string that is
/// cut off is empty, and the end of the bytes.
inline base::ByteSpan nextUnits(base::ByteSpan bytes, std::size_t& at) {
  const std::size_t from = std::min(at + 2, bytes.size());
  const std::size_t size = at + 2 <= bytes.size() ? base::get16(bytes, at) * std::size_t{2} : 0;
  at = size <= bytes.size() - from ? from + size : bytes.size();
  return size <= bytes.size() - from ? bytes.subspan(from, size) : base::ByteSpan();
}

inline std::u16string nextString(base::ByteSpan bytes, std::size_t& at) {
  return unitsOf(nextUnits(bytes, at));
}

/// Visits the strings of a table of strings: visit(where, bytes). Returns where the table ends.
template <class Visit>
std::size_t forEachString(base::ByteSpan bytes, Visit visit) {
  constexpr std::uint16_t kWide = 0xFFFF;
  if (bytes.size() < 6 || base::get16(bytes, 0) != kWide) return 0;
  const std::size_t count = base::get16(bytes, 2);
  const std::size_t extra = base::get16(bytes, 4);
  std::size_t at = 6;
  for (std::size_t i = 0; i < count && at < bytes.size(); ++i) {
    const std::size_t from = at + 2;
    const base::ByteSpan units = nextUnits(bytes, at);
    visit(from, units);
    at = std::min(at + extra, bytes.size());
  }
  return at;
}

/// The strings of a table of strings, and where it ends.
inline std::vector<std::u16string> stringsIn(base::ByteSpan bytes, std::size_t* end = nullptr) {
  std::vector<std::u16string> strings;
  const std::size_t at =
      forEachString(bytes, [&](std::size_t, base::ByteSpan units) { strings.push_back(unitsOf(units)); });
  if (end != nullptr && at > 0) *end = at;
  return strings;
}

}  // namespace pluvo::doc
