#pragma once

#include "base/bytes.h"

#include <string>
#include <string_view>
#include <vector>

namespace pluvo::plain {

/// The encodings that a user may name: UTF-8, UTF-16LE, UTF-16BE, and those of the system's iconv without
/// shift states.

/// The name by which an encoding is told, for any name it goes by. Throws errors::DocumentError (encoding)
/// for one that is unknown or has shift states (ISO-2022, HZ, UTF-7 and the like): the sentence says so.
std::string encodingNamed(std::string_view name);

struct LikelyEncoding {
  std::string name;
  std::string texts;  ///< that are in it
};
/// Those that texts are likely to be in, for a list.
const std::vector<LikelyEncoding>& likelyEncodings();

/// Some lines of a text that hold bytes over 127, as they read in an encoding. A byte without a meaning there
/// is U+FFFD. Throws as encodingNamed.
std::u16string sampleOf(base::ByteSpan bytes, std::string_view encoding);

}  // namespace pluvo::plain
