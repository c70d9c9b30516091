#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// The one coder between code points, UTF-8 and UTF-16.
namespace pluvo::base {

constexpr char32_t kReplacement = 0xFFFD;  ///< stands for bytes or units that are no character

constexpr bool isHighSurrogate(char32_t unit) { return (unit & 0xFFFFFC00U) == 0xD800; }
constexpr bool isLowSurrogate(char32_t unit) { return (unit & 0xFFFFFC00U) == 0xDC00; }
constexpr bool isSurrogate(char32_t unit) { return (unit & 0xFFFFF800U) == 0xD800; }

constexpr char32_t joinSurrogates(char16_t high, char16_t low) {
  return 0x10000U + ((high & 0x3FFU) << 10U) + (low & 0x3FFU);
}
/// Of a code point beyond U+FFFF.
constexpr char16_t highSurrogateOf(char32_t point) { return static_cast<char16_t>(0xD7C0 + (point >> 10U)); }
constexpr char16_t lowSurrogateOf(char32_t point) { return static_cast<char16_t>(0xDC00 + (point & 0x3FFU)); }

/// One or two units; a surrogate is a unit as it is.
inline void appendUtf16(std::u16string& units, char32_t point) {
  if (point > 0xFFFF) units.push_back(highSurrogateOf(point));
  units.push_back(point > 0xFFFF ? lowSurrogateOf(point) : static_cast<char16_t>(point));
}

/// A code point at the front of a text and how many units it takes.
struct Utf16Character {
  char32_t point = 0;
  std::uint8_t units = 1;
};

/// Of text that is not empty. A lone surrogate is a code point of its own.
constexpr Utf16Character firstOfUtf16(std::u16string_view text) {
  const bool pair = text.size() > 1 && isHighSurrogate(text[0]) && isLowSurrogate(text[1]);
  if (pair) return {joinSurrogates(text[0], text[1]), 2};
  return {text[0], 1};
}

/// Whether a byte goes on with a character that began in front of it.
template <class Byte>
constexpr bool isUtf8Follower(Byte byte) {
  return (static_cast<std::uint8_t>(byte) & 0xC0U) == 0x80;
}

/// The code point that so many bytes, 1 to 4, make; they are a character.
template <std::size_t kBytes, class Byte>
constexpr char32_t pointOfUtf8(const Byte* bytes) {
  constexpr char32_t kOfLead = kBytes == 1 ? 0x7F : 0x7FU >> kBytes;
  char32_t point = static_cast<std::uint8_t>(bytes[0]) & kOfLead;
  for (std::size_t i = 1; i < kBytes; ++i)
    point = point << 6U | (static_cast<std::uint8_t>(bytes[i]) & 0x3FU);
  return point;
}

/// A code point at the front of a text and how many bytes it takes; no bytes where there is none.
struct Utf8Character {
  char32_t point = 0;
  std::uint8_t bytes = 0;
};

/// Of bytes that are not empty. Overlong forms, surrogates and values beyond U+10FFFF are no characters.
template <class Byte>
constexpr Utf8Character firstOfUtf8(const Byte* bytes, std::size_t size) {
  const auto isFollower = [&](std::size_t i) { return isUtf8Follower(bytes[i]); };
  const auto lead = static_cast<std::uint8_t>(bytes[0]);
  if (lead < 0x80) return {lead, 1};
  if (lead < 0xE0) {
    if (lead < 0xC2 || size < 2 || !isFollower(1)) return {};
    return {pointOfUtf8<2>(bytes), 2};
  }
  if (lead < 0xF0) {
    if (size < 3 || !isFollower(1) || !isFollower(2)) return {};
    const char32_t point = pointOfUtf8<3>(bytes);
    return point < 0x800 || isSurrogate(point) ? Utf8Character{} : Utf8Character{point, 3};
  }
  if (lead > 0xF4 || size < 4 || !isFollower(1) || !isFollower(2) || !isFollower(3)) return {};
  const char32_t point = pointOfUtf8<4>(bytes);
  return point < 0x10000 || point > 0x10FFFF ? Utf8Character{} : Utf8Character{point, 4};
}

inline Utf8Character firstOfUtf8(std::string_view bytes) { return firstOfUtf8(bytes.data(), bytes.size()); }

/// Calls put with each byte of the code point's UTF-8; a surrogate is written as if it were a character.
template <class Put>
constexpr void encodeUtf8(char32_t point, Put put) {
  const auto follower = [&](unsigned shift) {
    put(static_cast<std::uint8_t>(0x80U | (point >> shift & 0x3FU)));
  };
  if (point < 0x80) return put(static_cast<std::uint8_t>(point));
  if (point < 0x800) {
    put(static_cast<std::uint8_t>(0xC0U | point >> 6U));
  } else if (point < 0x10000) {
    put(static_cast<std::uint8_t>(0xE0U | point >> 12U));
    follower(6);
  } else {
    put(static_cast<std::uint8_t>(0xF0U | point >> 18U));
    follower(12);
    follower(6);
  }
  follower(0);
}

inline void appendUtf8(std::string& bytes, char32_t point) {
  encodeUtf8(point, [&](std::uint8_t byte) { bytes.push_back(static_cast<char>(byte)); });
}

/// How many of the first bytes are well-formed UTF-8 (overlong forms, surrogates and values beyond U+10FFFF
/// are not).
std::size_t wellFormedLength(std::string_view bytes);

/// The lone surrogate that stands for a byte which is no part of a character, U+DC00 plus the byte.
constexpr char32_t standInOf(std::uint8_t byte) { return 0xDC00U + byte; }

/// UTF-8; lone surrogates become U+FFFD.
std::string utf8(std::u16string_view text);
/// From UTF-8; bytes that are none become U+FFFD.
std::u16string utf16(std::string_view text);

}  // namespace pluvo::base
