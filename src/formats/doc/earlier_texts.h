#pragma once

#include "word_file.h"

#include <functional>
#include <string_view>

namespace pluvo::doc {

/// Text that no piece uses any more: deleted and replaced text, as a fast save leaves it.
void forEachEarlierText(const Text& text, const std::function<void(std::u16string_view)>& visit);

}  // namespace pluvo::doc
