#pragma once

#include "base/bytes.h"

#include <cstdint>

namespace pluvo::formats::html {

/// How a file begins: as a page does whatever its name, or as one could under the name of one.
enum class Likeness : std::uint8_t { none, byName, certain, webArchive };
/// Named so, it is looked through to its first tag.
Likeness likenessOf(base::ByteSpan file, bool isNamedSo);

}  // namespace pluvo::formats::html
