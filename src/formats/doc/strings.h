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

/// The string at a place, with its length in front; the place moves behind it. What is cut off is empty, and
/// the end of the bytes.
inline std::u16string nextString(base::ByteSpan bytes, std::size_t& at) {
  const std::size_t from = std::min(at + 2, bytes.size());
  const std::size_t size = at + 2 <= bytes.size() ? base::get16(bytes, at) * std::size_t{2} : 0;
  at = size <= bytes.size() - from ? from + size : bytes.size();
  return size <= bytes.size() - from ? unitsOf(bytes.subspan(from, size)) : std::u16string();
}

/// The strings of a table of strings, and where it ends.
inline std::vector<std::u16string> stringsIn(base::ByteSpan bytes, std::size_t* end = nullptr) {
  constexpr std::uint16_t kWide = 0xFFFF;
  std::vector<std::u16string> strings;
  if (bytes.size() < 6 || base::get16(bytes, 0) != kWide) return strings;
  const std::size_t count = base::get16(bytes, 2);
  const std::size_t extra = base::get16(bytes, 4);
  std::size_t at = 6;
  while (strings.size() < count && at < bytes.size()) {
    strings.push_back(nextString(bytes, at));
    at = std::min(at + extra, bytes.size());
  }
  if (end != nullptr) *end = at;
  return strings;
}

}  // namespace pluvo::doc
