#pragma once

#include "base/bytes.h"

namespace pluvo::plain {

/// Throws errors::DocumentError (encoding) where bytes below 80 are a text in ISO-2022 or HZ. There an edit
/// of letters could cut a character of another script. Looks at the first mebibyte, so that it costs a large
/// file nothing.
void requireNoShifts(base::ByteSpan bytes);

}  // namespace pluvo::plain
