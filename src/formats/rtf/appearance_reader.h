#pragma once

#include "formats/appearance.h"
#include "reader.h"
#include "text/run_map.h"

#include <string_view>

namespace pluvo::rtf {

/// How each character of main text looks.
text::RunMap<formats::Appearance> readAppearance(std::string_view file, const TextMap& map);

}  // namespace pluvo::rtf
