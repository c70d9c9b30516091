#pragma once

#include "formats/appearance.h"
#include "stories.h"
#include "style_looks.h"
#include "text/run_map.h"

namespace pluvo::docx {

/// Reads the looks of the story at a site of a part; the map is as long as its text.
text::RunMap<formats::Appearance> readAppearance(const StoryPart& part, const Site& site,
                                                 const StyleLooks& styles);

}  // namespace pluvo::docx
