#pragma once

#include "block_tags.h"
#include "paragraphs.h"
#include "walk_state.h"

#include <cstddef>

namespace pluvo::formats::html {

/// Opens and closes tables, their cells and captions. Rows and their groups only divide.
class TableTags {
 public:
  TableTags(WalkState& walk, Paragraphs& paragraphs, BlockTags& blocks)
      : walk_(walk), paragraphs_(paragraphs), blocks_(blocks) {}

  void open(const Token& token, const Style& style, const Attributes& attributes);
  void part(const Token& token, const Style& style, const Attributes& attributes);
  void endPart(const Token& token);
  /// The page ends.
  void closeAll(std::size_t at);

 private:
  void closeCell(std::size_t at, Extent endTag);
  void closeTable(std::size_t at, Extent endTag);
  void closeWithin(std::size_t at);

  WalkState& walk_;
  Paragraphs& paragraphs_;
  BlockTags& blocks_;
};

}  // namespace pluvo::formats::html
