#pragma once

#include "encoding.h"
#include "files/bytes.h"

#include <array>

namespace pluvo::plain {

/// The smallest piece of a text that has bytes of its own: a character, half of a surrogate pair in UTF-16,
/// or a whole line end.
struct Token {
  char32_t codePoint = 0;  ///< 13 for every line end
  std::uint8_t bytes = 0;
  bool valid = true;  ///< false: one byte that means nothing in the encoding, as U+FFFD
  std::optional<LineEnd> lineEnd{};

  int units() const { return codePoint > 0xFFFF ? 2 : 1; }
};

/// The 16-bit unit at an offset.
template <Encoding kEncoding>
char16_t utf16UnitAt(files::ByteSpan bytes, std::size_t at) {
  constexpr bool kLittle = kEncoding == Encoding::utf16Little;
  return static_cast<char16_t>(bytes[at + (kLittle ? 1 : 0)] << 8 | bytes[at + (kLittle ? 0 : 1)]);
}

/// Length of the sequence that a lead byte above 7F announces; 0 where it is none.
inline std::uint8_t utf8LengthFrom(std::uint8_t lead) {
  if (lead < 0xC2) return 0;
  if (lead < 0xE0) return 2;
  if (lead < 0xF0) return 3;
  return lead < 0xF5 ? 4 : 0;
}

inline Token firstOfUtf8(files::ByteSpan bytes) {
  constexpr Token kInvalid = {0xFFFD, 1, false};
  constexpr std::array<char32_t, 5> kSmallest = {0, 0, 0x80, 0x800, 0x10000};
  const std::uint8_t lead = bytes[0];
  if (lead < 0x80) return {lead, 1};
  const std::uint8_t length = utf8LengthFrom(lead);
  if (length == 0 || length > bytes.size()) return kInvalid;
  char32_t point = lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((bytes[i] & 0xC0) != 0x80) return kInvalid;
    point = point << 6 | (bytes[i] & 0x3F);
  }
  const bool surrogate = point >= 0xD800 && point < 0xE000;
  if (point < kSmallest[length] || point > 0x10FFFF || surrogate) return kInvalid;
  return {point, length};
}

template <Encoding kEncoding>
Token firstCharacter(files::ByteSpan bytes) {
  if constexpr (kEncoding == Encoding::utf8) return firstOfUtf8(bytes);
  if constexpr (kEncoding == Encoding::windows1252) return {unitOfWindows1252(bytes[0]), 1};
  return {utf16UnitAt<kEncoding>(bytes, 0), 2};
}

/// The token at the front of bytes, which hold at least one unit. Whatever the bytes are, it lies within
/// them.
template <Encoding kEncoding>
Token firstToken(files::ByteSpan bytes) {
  Token token = firstCharacter<kEncoding>(bytes);
  if (token.codePoint == U'\n') {
    token.lineEnd = LineEnd::lineFeed;
    token.codePoint = U'\r';
  } else if (token.codePoint == U'\r') {
    const files::ByteSpan rest = bytes.subspan(token.bytes);
    const bool pair = rest.size() >= token.bytes && firstCharacter<kEncoding>(rest).codePoint == U'\n';
    token.lineEnd = pair ? LineEnd::carriageReturnLineFeed : LineEnd::carriageReturn;
    if (pair) token.bytes = static_cast<std::uint8_t>(2 * token.bytes);
  }
  return token;
}

/// Calls work with the encoding as a constant: work.template operator()<Encoding::utf8>().
template <class Work>
auto withEncoding(Encoding encoding, Work work) {
  switch (encoding) {
    case Encoding::utf16Little:
      return work.template operator()<Encoding::utf16Little>();
    case Encoding::utf16Big:
      return work.template operator()<Encoding::utf16Big>();
    case Encoding::windows1252:
      return work.template operator()<Encoding::windows1252>();
    case Encoding::utf8:
      break;
  }
  return work.template operator()<Encoding::utf8>();
}

}  // namespace pluvo::plain
