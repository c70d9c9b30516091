#pragma once

#include "base/bytes.h"
#include "encoding.h"
#include "formats/format.h"
#include "text/coded_text.h"
#include "text/utf8_text.h"

#include <string>

namespace pluvo::plain {

/// How a text is stored.
struct Storage {
  Coding coding;
  std::size_t markLength = 0;     ///< of the byte order mark
  text::Utf8Text::Survey utf8{};  ///< of the bytes after the mark, unless they are said to be something else
  text::CodedText::Survey coded{};  ///< of the same in another encoding, where it was looked at
  bool strayBytes = false;          ///< some bytes of this UTF-8 are no characters
  std::string name;                 ///< of the encoding
  /// Whether neither bytes nor user said so for certain.
  bool guessed = false;
};

/// Throws errors::DocumentError: encoding where nothing tells it, unsupported for UTF-32, too-large where
/// positions might not reach to the end.
Storage detect(const base::Bytes& file, const formats::Hint& hint);

}  // namespace pluvo::plain
