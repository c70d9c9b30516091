#pragma once

#include "formats/appearance.h"
#include "text/run_map.h"
#include "walker.h"

namespace pluvo::formats::html {

/// How each character of main text looks.
text::RunMap<formats::Appearance> readAppearance(const Page& page, bool endsWithoutBytes);

}  // namespace pluvo::formats::html
