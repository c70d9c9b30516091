#pragma once

#include "word_file.h"

#include <cstdint>
#include <span>
#include <vector>

namespace pluvo::doc {

/// Makes zeros of deleted text whose bytes no piece uses, and of its remains from earlier saves: a fast save
/// leaves such bytes. The stream begins with that of
/// the text; a template's glossary lies in it, too, and null stands for none.
void blankUnused(const Text& text, const Text* glossary, const std::vector<text::Span>& gone,
                 const std::vector<Piece>& pieces, std::span<std::uint8_t> stream);

}  // namespace pluvo::doc
