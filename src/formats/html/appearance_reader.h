#pragma once

#include "formats/appearance.h"
#include "reader.h"
#include "text/run_map.h"

namespace pluvo::formats::html {

/// How each character of main text looks.
text::RunMap<formats::Appearance> readAppearance(const Page& page, const TextMap& map);

}  // namespace pluvo::formats::html
