#pragma once

#include "base/bytes.h"
#include "encoding.h"

#include <cstddef>
#include <cstdint>

namespace pluvo::plain {

/// How a text reads: how many characters beyond ASCII stand as in words and sentences, and how many do not,
/// as in a wrong encoding.
struct Sense {
  std::size_t fits = 0;
  std::size_t jars = 0;
};

enum class Letters : std::uint8_t {
  all,
  western,  ///< those of Western Europe jar none; rarer Latin ones do
};

Sense senseOf(base::ByteSpan sample, const Coding& coding, Letters letters);

}  // namespace pluvo::plain
