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

}  // namespace pluvo::plain
