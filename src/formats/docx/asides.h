#pragma once

#include "reader.h"

#include <vector>

namespace pluvo::docx {

/// Those of a main part's asides that may hold text. A picture without words holds none; looking at its bytes
/// costs less than a walk to it.
std::vector<Offset> placesWithText(base::ByteSpan mainPart, const BodyMap& map);

}  // namespace pluvo::docx
