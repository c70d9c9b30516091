#pragma once

#include "formats/appearance.h"
#include "text/run_map.h"
#include "word_file.h"

namespace pluvo::doc {

/// How each character of [from, to) looks, in a text of so many characters.
text::RunMap<formats::Appearance> readAppearance(const Text& text, text::Position from, text::Position to,
                                                 text::Position length);

}  // namespace pluvo::doc
