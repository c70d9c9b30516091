#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace pluvo::formats::html {

/// ASCII that stands for itself wherever it is.
constexpr std::array<bool, 256> makeSimple() {
  std::array<bool, 256> simple{};
  for (std::size_t c = 0x21; c < 0x7F; ++c) simple[c] = c != '&' && c != '<';
  return simple;
}
inline constexpr std::array<bool, 256> kSimple = makeSimple();

constexpr std::uint64_t inEach(std::uint64_t byte) { return byte * 0x0101010101010101U; }
inline constexpr std::uint64_t kTop = inEach(0x80);

/// The top bit of each of eight bytes that is a certain one, and perhaps of some after the first such.
constexpr std::uint64_t where(std::uint64_t eight, char byte) {
  const std::uint64_t differs = eight ^ inEach(static_cast<unsigned char>(byte));
  return (differs - inEach(1)) & ~differs & kTop;
}

/// As many eights of bytes as are letters with single blanks between them. IsBlank says whether a blank
/// stands in front, and then whether one ends them.
inline std::size_t lettersIn(std::string_view bytes, bool& isBlank) {
  constexpr std::size_t kEight = sizeof(std::uint64_t);
  std::size_t taken = 0;
  if constexpr (std::endian::native != std::endian::little) return taken;
  for (std::uint64_t eight = 0; bytes.size() - taken >= kEight; taken += kEight) {
    std::memcpy(&eight, bytes.data() + taken, kEight);
    const std::uint64_t isControl = (eight - inEach(' ')) & ~eight & kTop;
    const std::uint64_t isForeign = eight & kTop;
    if ((isControl | isForeign | where(eight, '&') | where(eight, '<') | where(eight, '\x7F')) != 0) break;
    // No byte's sum reaches into the next, since all are ASCII.
    const std::uint64_t blanks = ~((eight ^ inEach(' ')) + inEach(0x7F)) & kTop;
    if ((blanks & (blanks << 8U | (isBlank ? 0x80U : 0U))) != 0) break;
    isBlank = (blanks >> 63U) != 0;
  }
  return taken;
}

inline bool isSimple(char c) { return kSimple[static_cast<unsigned char>(c)]; }

/// How many bytes at the front are characters of ASCII that stand for themselves wherever they are, with
/// single blanks between them. IsBlank says whether a blank stands in front, and then whether one ends them.
inline std::size_t simpleTextIn(std::string_view bytes, bool& isBlank) {
  std::size_t end = lettersIn(bytes, isBlank);
  for (;;) {
    const std::size_t from = end;
    while (end < bytes.size() && isSimple(bytes[end])) ++end;
    isBlank = isBlank && end == from;
    if (end == bytes.size() || bytes[end] != ' ' || isBlank) return end;
    isBlank = true;
    ++end;
  }
}

/// The same where every blank and tab counts.
inline std::size_t keptTextIn(std::string_view bytes) {
  std::size_t end = 0;
  while (end < bytes.size() && (isSimple(bytes[end]) || bytes[end] == ' ' || bytes[end] == '\t')) ++end;
  return end;
}

}  // namespace pluvo::formats::html
