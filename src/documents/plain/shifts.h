#pragma once

#include "files/bytes.h"

namespace pluvo::plain {

/// Throws files::DocumentError (encoding) where bytes below 80 are a text in ISO-2022 or HZ: there an edit of
/// letters could cut a character of another script. Looks at the first mebibyte, so that it costs a large
/// file nothing.
void requireNoShifts(files::ByteSpan bytes);

}  // namespace pluvo::plain
