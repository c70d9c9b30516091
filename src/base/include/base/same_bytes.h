#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace pluvo::base {

/// As memcmp tells, without its call for a few bytes.
inline bool sameBytes(const void* a, const void* b, std::size_t size) {
  constexpr std::size_t kWord = sizeof(std::uint64_t);
  if (size == 0) return true;
  if (size < kWord || size > 4 * kWord) return std::memcmp(a, b, size) == 0;
  std::uint64_t different = 0;
  const auto compare = [&](std::size_t at) {
    std::uint64_t left = 0;
    std::uint64_t right = 0;
    std::memcpy(&left, static_cast<const char*>(a) + at, kWord);
    std::memcpy(&right, static_cast<const char*>(b) + at, kWord);
    different |= left ^ right;
  };
  for (std::size_t at = 0; at + kWord < size; at += kWord) compare(at);
  compare(size - kWord);
  return different == 0;
}

/// As ==, which goes unit by unit.
inline bool sameUnits(std::u16string_view a, std::u16string_view b) {
  return a.size() == b.size() && sameBytes(a.data(), b.data(), a.size() * sizeof(char16_t));
}

}  // namespace pluvo::base
