#pragma once

#include "view/changes.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace pluvo::view {

/// The blocks of a text in a column, each of a height, which is a guess until somebody lays the block out.
class BlockIndex {
 public:
  /// Guesses a block's height in pixels.
  using Estimate = std::function<int(Span block, bool isRow)>;

  BlockIndex(const std::vector<Block>& blocks, Position length, Estimate estimate);

  /// The text is another one, and so are these of its blocks.
  void take(const std::vector<Patch>& patches);

  std::size_t count() const { return blocks_.size(); }
  Position length() const { return length_; }
  Span span(std::size_t i) const;
  bool isRow(std::size_t i) const { return blocks_[i].isRow; }
  /// Whether it is not the first block of its paragraph.
  bool continues(std::size_t i) const { return blocks_[i].continues; }
  /// The block begins earlier than it was cut, where a line does; within the block before it.
  void startAt(std::size_t i, Position from);
  /// The block that holds a position; the last one for the end of the text.
  std::size_t at(Position position) const;

  /// From the top of the document to that of the block; of count(): the height of all.
  std::int64_t top(std::size_t i);
  int height(std::size_t i) const { return blocks_[i].height; }
  bool exact(std::size_t i) const { return blocks_[i].exact; }
  void setHeight(std::size_t i, int height);
  /// The block at so many pixels from the top; the last one for places below it.
  std::size_t atHeight(std::int64_t y);
  /// All heights are guesses again, and blocks are cut as they were at first.
  void forgetHeights();

 private:
  struct Entry : Block {
    bool exact = false;
    int height = 0;
    Position moved = 0;  ///< so far before its cut it begins
    std::int64_t top = 0;
  };

  std::size_t cutAt(Position from) const;
  int guess(std::size_t i) const { return estimate_(span(i), isRow(i)); }
  void stale(std::size_t i) { stale_ = stale_ < i ? stale_ : i; }

  Estimate estimate_;
  std::vector<Entry> blocks_;
  Position length_;
  /// From this block on tops are out of date.
  std::size_t stale_ = 0;
  std::int64_t all_ = 0;
};

}  // namespace pluvo::view
