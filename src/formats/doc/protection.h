#pragma once

#include "formats/format.h"
#include "word_file.h"

#include <optional>

namespace pluvo::doc {

/// What a document says of who may change it. That it recommends to be read alone keeps nobody out.
std::optional<formats::Protection> protectionOf(const Text& text);

}  // namespace pluvo::doc
