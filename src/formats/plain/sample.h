#pragma once

#include "base/bytes.h"
#include "token.h"

#include <cstdint>
#include <vector>

namespace pluvo::plain {

/// The lines that hold bytes over 127, from the front of the text, so many bytes at the most. Of a long line
/// the front is left out as far as bytes below 128 go.
std::vector<std::uint8_t> telling(base::ByteSpan bytes, std::size_t most);

/// Calls take(token) for each token of the bytes.
template <class Take>
void forEachToken(base::ByteSpan bytes, const Coding& coding, Take take) {
  withEncoding(coding.encoding, [&]<Encoding kEncoding>() {
    while (bytes.size() >= unitSize(kEncoding)) {
      const Token token = firstToken<kEncoding>(bytes, coding.page);
      take(token);
      bytes = bytes.subspan(token.bytes);
    }
  });
}

}  // namespace pluvo::plain
