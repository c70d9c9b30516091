#pragma once

#include "base/bytes.h"
#include "formats/appearance.h"
#include "style_looks.h"
#include "text/run_map.h"

#include <string>

namespace pluvo::docx {

/// Reads the looks of a main part that readBody has read; the map is as long as its text.
text::RunMap<formats::Appearance> readAppearance(base::ByteSpan part, const std::string& partName,
                                                 const StyleLooks& styles);

}  // namespace pluvo::docx
