#pragma once

#include "document/story.h"
#include "view/changes.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace pluvo::view {

/// Finds the blocks of a story, and after edits those that are others, at the cost of the text of the blocks
/// that were touched. A paragraph of more than kLongest characters is several blocks, cut somewhere until a
/// layout tells where its lines begin.
class BlockFinder {
 public:
  static constexpr Position kLongest = 8192;

  /// The story outlives the finder.
  explicit BlockFinder(const document::Story& story);

  const std::vector<Block>& blocks() const { return blocks_; }
  /// Takes in what became of the text since the last time.
  std::vector<Patch> takeIn(const std::vector<Exchange>& edits);

 private:
  void scan(Span text, bool continues, std::vector<Block>& found) const;
  void add(Span text, bool isRow, bool continues, std::vector<Block>& found) const;
  Position cut(Span text) const;
  bool endsBlock(Position position) const;

  const document::Story& story_;
  std::vector<Block> blocks_;
  Position length_;
};

/// The number of the block that holds a position; the last one for the end of the text.
template <class AnyBlock>
std::size_t blockAt(const std::vector<AnyBlock>& blocks, Position position) {
  const auto after = std::upper_bound(blocks.begin(), blocks.end(), position,
                                      [](Position p, const AnyBlock& block) { return p < block.from; });
  return static_cast<std::size_t>(std::max<std::ptrdiff_t>(after - blocks.begin() - 1, 0));
}

}  // namespace pluvo::view
