#pragma once

#include "defects.h"
#include "word_file.h"

#include <cstdint>
#include <vector>

namespace pluvo::doc {

/// The facts in pages of formatting that the text must agree with, by bytes of the WordDocument stream.
struct PageFacts {
  struct Stretch {
    std::uint32_t from = 0;
    std::uint32_t to = 0;
  };
  std::vector<Stretch> special;
  std::vector<Stretch> pictures;          ///< whose characters name a place in the Data stream
  std::vector<std::uint32_t> boundaries;  ///< of paragraphs
  std::uint32_t charactersTo = 0;         ///< the first byte of which no page of characters tells

  bool isSpecial(std::uint32_t byte) const;
};

/// Whether properties fill their bytes, but for a byte that makes them even.
bool areWhole(base::ByteSpan properties);

/// Checks both tables of pages and all pages.
PageFacts checkPages(const Text& text, Defects& defects);

}  // namespace pluvo::doc
