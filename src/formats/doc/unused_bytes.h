#pragma once

#include "word_file.h"

#include <cstdint>
#include <span>
#include <vector>

namespace pluvo::doc {

/// Makes zeros of the text that went, so far as no piece stands for its bytes any more. The stream begins
/// with that of the text.
void blankUnused(const Text& text, const std::vector<text::Span>& gone, const std::vector<Piece>& pieces,
                 std::span<std::uint8_t> stream);

}  // namespace pluvo::doc
