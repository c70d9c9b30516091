#include "code_pages/coding.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace pluvo::code_pages {

namespace {

constexpr std::uint8_t kFirstSpecial = 0x80;  // of Windows-1252: what differs from Latin-1

/// Bytes 80 to 9F; the unassigned ones stand for themselves.
constexpr std::array<char16_t, 32> kSpecials = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

}  // namespace

char16_t unitOfWindows1252(std::uint8_t byte) {
  const std::size_t special = static_cast<std::size_t>(byte) - kFirstSpecial;
  return special < kSpecials.size() ? kSpecials[special] : byte;
}

std::optional<std::uint8_t> windows1252Of(char16_t unit) {
  if (unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF)) return static_cast<std::uint8_t>(unit);
  const auto* const special = std::ranges::find(kSpecials, unit);
  if (special == kSpecials.end()) return std::nullopt;
  return static_cast<std::uint8_t>(kFirstSpecial + (special - kSpecials.begin()));
}

bool isAssignedInWindows1252(base::ByteSpan bytes) {
  constexpr std::array<std::uint8_t, 5> kUnassigned = {0x81, 0x8D, 0x8F, 0x90, 0x9D};
  constexpr std::size_t kAtOnce = std::size_t{16} * 1024;  // stays near the processor for five looks
  for (base::ByteSpan rest = bytes; !rest.empty();) {
    const base::ByteSpan part = rest.first(std::min(rest.size(), kAtOnce));
    for (const std::uint8_t byte : kUnassigned)
      if (std::memchr(part.data(), byte, part.size()) != nullptr) return false;
    rest = rest.subspan(part.size());
  }
  return true;
}

}  // namespace pluvo::code_pages
