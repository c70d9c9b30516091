#pragma once

#include "base/bytes.h"

#include <string>
#include <string_view>
#include <vector>

namespace pluvo::plain {

/// The encodings that a plain text may be said to be in: UTF-8, UTF-16LE, UTF-16BE, and those of the system's
/// iconv that have no shift states.

/// The name by which an encoding is told, for any name it goes by. Throws errors::DocumentError (encoding)
/// for one that is unknown, or changes what bytes mean on the way (ISO-2022, HZ, UTF-7 and the like): the
/// sentence says so.
std::string encodingNamed(std::string_view name);

struct LikelyEncoding {
  std::string name;
  std::string texts;  ///< that are in it
};
/// Those that texts are likely to be in, for a list.
const std::vector<LikelyEncoding>& likelyEncodings();

/// How the lines of a text that hold bytes over 127 read in an encoding, some at the most; a byte that means
/// nothing there is U+FFFD. Throws as encodingNamed.
std::u16string sampleOf(base::ByteSpan bytes, std::string_view encoding);

}  // namespace pluvo::plain
