#pragma once

#include "word_file.h"

#include <functional>
#include <string_view>

namespace pluvo::doc {

/// Text that no piece uses any more, as a fast save leaves it: what was deleted, and what
/// was replaced.
void forEachEarlierText(const Text& text, const std::function<void(std::u16string_view)>& visit);

}  // namespace pluvo::doc
