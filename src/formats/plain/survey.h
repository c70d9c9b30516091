#pragma once

#include "base/bytes.h"

namespace pluvo::plain {

/// How many bytes at the front are below 80 and no line end.
std::size_t plainRun(base::ByteSpan bytes);

}  // namespace pluvo::plain
