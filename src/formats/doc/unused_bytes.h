#pragma once

#include "word_file.h"

#include <cstdint>
#include <span>
#include <vector>

namespace pluvo::doc {

/// Makes zeros of the text that went, so far as no piece stands for its bytes any more, and of what is left
/// of it where text lay before: saving only what changed leaves such bytes. The stream begins with that of
/// the text; a template's glossary lies in it, too, and null stands for none.
void blankUnused(const Text& text, const Text* glossary, const std::vector<text::Span>& gone,
                 const std::vector<Piece>& pieces, std::span<std::uint8_t> stream);

}  // namespace pluvo::doc
