#pragma once

#include "base/bytes.h"
#include "encoding.h"

namespace pluvo::plain {

/// A character or a whole line end.
struct Token {
  char32_t codePoint = 0;  ///< 13 for every line end
  std::uint8_t bytes = 0;
  std::optional<LineEnd> lineEnd{};

  int units() const { return codePoint > 0xFFFF ? 2 : 1; }
};

/// The 16-bit unit at an offset.
template <Encoding kEncoding>
char16_t utf16UnitAt(base::ByteSpan bytes, std::size_t at) {
  constexpr bool kLittle = kEncoding == Encoding::utf16Little;
  return static_cast<char16_t>(bytes[at + (kLittle ? 1 : 0)] << 8 | bytes[at + (kLittle ? 0 : 1)]);
}

inline Character firstOfUtf8(base::ByteSpan bytes) {
  const base::Utf8Character first = base::firstOfUtf8(bytes.data(), bytes.size());
  return first.bytes == 0 ? strayByte(bytes[0]) : Character{first.point, first.bytes};
}

template <Encoding kEncoding>
Character firstCharacter(base::ByteSpan bytes, const CodePage* page) {
  if constexpr (kEncoding == Encoding::utf8) return firstOfUtf8(bytes);
  if constexpr (kEncoding == Encoding::windows1252) return {unitOfWindows1252(bytes[0]), 1};
  if constexpr (kEncoding == Encoding::codePage) return page->first(bytes);
  return {utf16UnitAt<kEncoding>(bytes, 0), 2};
}

/// The token at the front of bytes, which hold at least one unit. Whatever the bytes are, it lies within
/// them.
template <Encoding kEncoding>
Token firstToken(base::ByteSpan bytes, const CodePage* page) {
  const Character character = firstCharacter<kEncoding>(bytes, page);
  Token token = {character.codePoint, character.bytes};
  if (token.codePoint > U'\r') return token;
  if (token.codePoint == U'\n') {
    token.lineEnd = LineEnd::lineFeed;
    token.codePoint = U'\r';
  } else if (token.codePoint == U'\r') {
    const base::ByteSpan rest = bytes.subspan(character.bytes);
    const bool pair =
        rest.size() >= character.bytes && firstCharacter<kEncoding>(rest, page).codePoint == U'\n';
    token.lineEnd = pair ? LineEnd::carriageReturnLineFeed : LineEnd::carriageReturn;
    if (pair) token.bytes = static_cast<std::uint8_t>(2 * character.bytes);
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
    case Encoding::codePage:
      return work.template operator()<Encoding::codePage>();
    case Encoding::utf8:
      break;
  }
  return work.template operator()<Encoding::utf8>();
}

}  // namespace pluvo::plain
