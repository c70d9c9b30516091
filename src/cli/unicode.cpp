#include "unicode.h"

#include <cstdint>

namespace pluvo::cli {
namespace {

/// The length of the sequence at the front, 0 where it is not well-formed.
std::size_t firstLength(std::string_view bytes) {
  const auto lead = static_cast<unsigned char>(bytes[0]);
  if (lead < 0x80) return 1;
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || bytes.size() < length) return 0;
  std::uint32_t codePoint = lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const auto next = static_cast<unsigned char>(bytes[i]);
    if ((next & 0xC0U) != 0x80) return 0;
    codePoint = codePoint << 6U | (next & 0x3FU);
  }
  const bool overlong = (length == 3 && codePoint < 0x800) || (length == 4 && codePoint < 0x10000);
  const bool surrogate = codePoint >= 0xD800 && codePoint < 0xE000;
  return overlong || surrogate || codePoint > 0x10FFFF ? 0 : length;
}

}  // namespace

std::size_t wellFormedLength(std::string_view bytes) {
  std::size_t length = 0;
  while (length < bytes.size()) {
    const std::size_t next = firstLength(bytes.substr(length));
    if (next == 0) break;
    length += next;
  }
  return length;
}

}  // namespace pluvo::cli
