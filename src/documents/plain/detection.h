#pragma once

#include "encoding.h"
#include "files/bytes.h"
#include "survey.h"

namespace pluvo::plain {

/// How a text is stored.
struct Storage {
  Encoding encoding = Encoding::utf8;
  std::size_t markLength = 0;  ///< of the byte order mark
  Survey survey;               ///< of the bytes behind the mark
};

/// Throws files::DocumentError: unsupported for UTF-32, too-large where positions might not reach to the end.
Storage detect(files::ByteSpan bytes);

}  // namespace pluvo::plain
