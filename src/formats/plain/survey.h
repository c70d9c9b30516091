#pragma once

#include "base/bytes.h"

namespace pluvo::plain {

/// The result of one fast look over all bytes; it decides how they are read.
struct Survey {
  std::uint8_t lowest = 0xFF;
  std::uint8_t highest = 0;
  bool specials = false;  ///< a byte from 80 to 9F
  bool carriageReturns = false;
};

Survey surveyOf(base::ByteSpan bytes);

/// How many bytes at the front are below 80 and no line end.
std::size_t plainRun(base::ByteSpan bytes);

}  // namespace pluvo::plain
