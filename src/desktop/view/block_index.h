#pragma once

#include "document/story.h"
#include "text/positions.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace pluvo::view {

using text::Position;
using text::Span;

/// A document as a column of blocks, each laid out for itself: a paragraph outside tables, or a row of an
/// outermost table with whatever is in it. A paragraph of more than kLongest characters is several blocks,
/// cut somewhere until a layout tells where its lines begin (startAt).
///
/// A block's height is estimated until somebody lays it out. Edits are noted, and taken in at the next
/// settle(), at the cost of the text of the blocks they touch.
class BlockIndex {
 public:
  static constexpr Position kLongest = 8192;

  /// Guesses a block's height in pixels.
  using Estimate = std::function<int(Span block, bool isRow)>;

  /// The story outlives the index.
  BlockIndex(const document::Story& story, Estimate estimate);

  /// A span of the story's text was replaced.
  void edited(Span span, Position newLength);
  void settle();

  // All of these ask for a settled index.
  std::size_t count() const { return blocks_.size(); }
  Span span(std::size_t i) const;
  bool isRow(std::size_t i) const { return blocks_[i].isRow; }
  /// Whether it is not the first block of its paragraph.
  bool continues(std::size_t i) const { return i > 0 && !isRow(i) && !endsBlock(blocks_[i].from - 1); }
  /// The block begins earlier than it was cut, where a line does; within the block before it.
  void startAt(std::size_t i, Position from);
  /// The block that holds a position; the last one for the end of the text.
  std::size_t at(Position position) const;

  /// From the top of the document to that of the block; of count(): the height of all.
  std::int64_t top(std::size_t i);
  int height(std::size_t i) const { return blocks_[i].height; }
  bool exact(std::size_t i) const { return blocks_[i].exact; }
  void setHeight(std::size_t i, int height);
  /// The block at so many pixels from the top; the last one for what lies below.
  std::size_t atHeight(std::int64_t y);
  /// All heights are guesses again, and blocks are cut as they were at first.
  void forgetHeights();

 private:
  struct Block {
    Position from = 0;
    int height = 0;
    std::int64_t top = 0;
    bool exact = false;
    bool isRow = false;
    Position moved = 0;  ///< so far before its cut it begins
  };
  /// A span of the text as it is that was edited since the last settling.
  struct Dirty {
    Position from = 0;
    Position to = 0;
    Position growth = 0;  ///< against the text it stands for
  };

  void scan(Position from, Position to, std::vector<Block>& found) const;
  void add(Position from, Position to, bool isRow, std::vector<Block>& found) const;
  Position cut(Position from, Position to) const;
  bool endsBlock(Position position) const;
  void keep(std::size_t first, std::size_t last, Position growth, std::vector<Block>& in) const;
  void stale(std::size_t i) { stale_ = stale_ < i ? stale_ : i; }

  const document::Story& story_;
  Estimate estimate_;
  std::vector<Block> blocks_;
  Position length_ = 0;
  /// In order, and not touching one another.
  std::vector<Dirty> dirty_;
  /// From this block on tops are out of date.
  std::size_t stale_ = 0;
  std::int64_t all_ = 0;
};

}  // namespace pluvo::view
