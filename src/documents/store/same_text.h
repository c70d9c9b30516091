#pragma once

#include "text/original.h"
#include "text/pieces.h"

namespace pluvo::store {

bool sameText(const text::PieceText& edited, const text::OriginalText& readBack);

}  // namespace pluvo::store
