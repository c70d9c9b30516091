#pragma once

#include "base/utf.h"
#include "text/positions.h"

#include <cstddef>
#include <cstdint>
#include <span>

/// Single characters of valid UTF-8, in which CR LF is one.
namespace pluvo::text {

struct Utf8Character {
  char32_t point = 0;  ///< 13 for every line end
  std::size_t bytes = 1;
};

/// The character at an offset, which lies in the bytes; whatever they are, it does too.
inline Utf8Character utf8At(std::span<const std::uint8_t> bytes, std::size_t offset) {
  const std::uint8_t* const at = bytes.data() + offset;
  const std::size_t left = bytes.size() - offset;
  const char32_t lead = *at;
  if (lead < 0x80) {
    if (lead == U'\n') return {kParagraphMark, 1};
    if (lead == U'\r' && left > 1 && at[1] == '\n') return {kParagraphMark, 2};
    return {lead, 1};
  }
  if (lead < 0xE0 && left >= 2) return {base::pointOfUtf8<2>(at), 2};
  if (lead < 0xF0 && left >= 3) return {base::pointOfUtf8<3>(at), 3};
  if (left >= 4) return {base::pointOfUtf8<4>(at), 4};
  return {base::kReplacement, 1};  // another program wrote into the file
}

/// Whether a unit begins at an offset: not in the middle of a character or a CR LF.
inline bool beginsUtf8Unit(std::span<const std::uint8_t> bytes, std::size_t offset) {
  if (offset == 0 || offset >= bytes.size()) return true;
  const bool joined = bytes[offset] == '\n' && bytes[offset - 1] == '\r';
  return !joined && !base::isUtf8Follower(bytes[offset]);
}

/// Line feeds that belong to the carriage return in front of them, the first byte left out.
inline Position utf8PairsIn(std::span<const std::uint8_t> bytes) {
  const std::uint8_t* const at = bytes.data();  // plain, which compilers turn into vectors
  Position pairs = 0;
  for (std::size_t i = 1; i < bytes.size(); ++i)
    pairs += static_cast<Position>((at[i] == '\n') & (at[i - 1] == '\r'));
  return pairs;
}

/// Where the character in front of an offset begins, none in front of from. from < offset.
inline std::size_t utf8Before(std::span<const std::uint8_t> bytes, std::size_t from, std::size_t offset) {
  std::size_t at = offset - 1;
  if (bytes[at] == '\n' && at > from && bytes[at - 1] == '\r') return at - 1;
  while (at > from && offset - at < 4 && base::isUtf8Follower(bytes[at])) --at;
  return at;
}

}  // namespace pluvo::text
