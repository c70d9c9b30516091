#include "block_index.h"

#include "block_finder.h"

#include <utility>

namespace pluvo::view {

BlockIndex::BlockIndex(const std::vector<Block>& blocks, Position length, Estimate estimate)
    : estimate_(std::move(estimate)), length_(length) {
  blocks_.reserve(blocks.size());
  for (const Block& block : blocks) blocks_.push_back({block});
  for (std::size_t i = 0; i < count(); ++i) blocks_[i].height = guess(i);
}

/// A height that was known is still the better guess where as many blocks stand as before.
void BlockIndex::take(const std::vector<Patch>& patches) {
  std::vector<Entry> now;
  now.reserve(blocks_.size() + patches.size());
  std::vector<std::size_t> unknown;
  std::size_t done = 0;
  Position growth = 0;
  const auto keepTo = [&](std::size_t end) {
    for (; done < end; ++done) {
      now.push_back(blocks_[done]);
      now.back().from += growth;
    }
  };
  for (const Patch& patch : patches) {
    const std::size_t first = cutAt(patch.text.gone.from);
    const std::size_t last = cutAt(patch.text.gone.to);
    keepTo(first);
    // The line that ends there may hold more or less now.
    if (!now.empty()) now.back().exact = false;
    stale(now.size());
    const bool areAsMany = last - first == patch.blocks.size();
    for (std::size_t i = 0; i < patch.blocks.size(); ++i) {
      if (!areAsMany) unknown.push_back(now.size());
      now.push_back({patch.blocks[i], false, areAsMany ? blocks_[first + i].height : 0});
    }
    done = last;
    growth = patch.text.come.to - patch.text.gone.to;
  }
  keepTo(blocks_.size());
  blocks_ = std::move(now);
  length_ += growth;
  for (const std::size_t i : unknown) blocks_[i].height = guess(i);
}

/// The block that was cut there, wherever it begins now.
std::size_t BlockIndex::cutAt(Position from) const {
  const auto found =
      std::lower_bound(blocks_.begin(), blocks_.end(), from,
                       [](const Entry& block, Position at) { return block.from + block.moved < at; });
  return static_cast<std::size_t>(found - blocks_.begin());
}

Span BlockIndex::span(std::size_t i) const {
  return {blocks_[i].from, i + 1 < blocks_.size() ? blocks_[i + 1].from : length_};
}

std::size_t BlockIndex::at(Position position) const { return blockAt(blocks_, position); }

std::int64_t BlockIndex::top(std::size_t i) {
  if (stale_ < blocks_.size()) {
    std::int64_t y = stale_ == 0 ? 0 : blocks_[stale_ - 1].top + blocks_[stale_ - 1].height;
    for (; stale_ < blocks_.size(); ++stale_) {
      blocks_[stale_].top = y;
      y += blocks_[stale_].height;
    }
    all_ = y;
  }
  return i < blocks_.size() ? blocks_[i].top : all_;
}

void BlockIndex::setHeight(std::size_t i, int height) {
  Entry& block = blocks_[i];
  block.exact = true;
  if (block.height == height) return;
  block.height = height;
  stale(i);
}

void BlockIndex::startAt(std::size_t i, Position from) {
  Entry& block = blocks_[i];
  block.moved += block.from - from;
  block.from = from;
  block.exact = false;
}

std::size_t BlockIndex::atHeight(std::int64_t y) {
  top(0);
  const auto after =
      std::upper_bound(blocks_.begin(), blocks_.end(), y,
                       [](std::int64_t wanted, const Entry& block) { return wanted < block.top; });
  return static_cast<std::size_t>(std::max<std::ptrdiff_t>(after - blocks_.begin() - 1, 0));
}

void BlockIndex::forgetHeights() {
  for (Entry& block : blocks_) block.from += std::exchange(block.moved, 0);
  for (std::size_t i = 0; i < blocks_.size(); ++i) {
    blocks_[i].height = guess(i);
    blocks_[i].exact = false;
  }
  stale_ = 0;
}

}  // namespace pluvo::view
