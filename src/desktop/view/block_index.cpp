#include "block_index.h"

#include <algorithm>
#include <utility>

namespace pluvo::view {

namespace {

bool isOutermost(const model::Model& model, std::int32_t table) {
  return model.tables()[static_cast<std::size_t>(table)].parent == model::kNone;
}

bool isLowSurrogate(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

}  // namespace

BlockIndex::BlockIndex(const model::Model& model, Estimate estimate)
    : model_(model), estimate_(std::move(estimate)), length_(model.length()) {
  scan(0, length_, blocks_);
}

void BlockIndex::edited(Span span, Position newLength) {
  const Position growth = newLength - span.length();
  if (!dirty_) {
    dirty_ = Dirty{span.from, span.from + newLength, growth};
    return;
  }
  dirty_->from = std::min(dirty_->from, span.from);
  dirty_->to = std::max(dirty_->to, span.to) + growth;
  dirty_->growth += growth;
}

void BlockIndex::settle() {
  if (!dirty_) return;
  const Dirty dirty = *std::exchange(dirty_, std::nullopt);
  const Position oldTo = std::max(dirty.to - dirty.growth, dirty.from + 1);
  const auto startsBefore = [](const Block& block, Position position) { return block.from < position; };
  const std::size_t first = at(std::min(dirty.from, length_));
  auto last =
      static_cast<std::size_t>(std::lower_bound(blocks_.begin() + static_cast<std::ptrdiff_t>(first) + 1,
                                                blocks_.end(), oldTo, startsBefore) -
                               blocks_.begin());
  length_ = model_.length();
  Position end = last < blocks_.size() ? blocks_[last].from + dirty.growth : length_;
  while (end < length_ && (end == 0 || !endsBlock(end - 1))) {
    ++last;
    end = last < blocks_.size() ? blocks_[last].from + dirty.growth : length_;
  }

  std::vector<Block> found;
  scan(blocks_[first].from, end, found);
  const auto begin = blocks_.begin() + static_cast<std::ptrdiff_t>(first);
  if (found.size() == last - first) {
    for (std::size_t i = 0; i < found.size(); ++i) found[i].height = blocks_[first + i].height;
    std::copy(found.begin(), found.end(), begin);
  } else {
    const auto at = blocks_.erase(begin, blocks_.begin() + static_cast<std::ptrdiff_t>(last));
    blocks_.insert(at, found.begin(), found.end());
  }
  for (std::size_t i = first + found.size(); i < blocks_.size(); ++i) blocks_[i].from += dirty.growth;
  stale(first);
}

/// Takes in blocks that together are [from, to).
void BlockIndex::scan(Position from, Position to, std::vector<Block>& found) const {
  Position start = from;
  for (const auto& run : model_.structure().runs(from, to)) {
    const model::Structure& structure = run.value;
    if (structure.table != model::kNone) {
      if (!structure.rowMark || !isOutermost(model_, structure.table)) continue;
      for (Position mark = run.from; mark < run.to; ++mark) {
        add(start, mark + 1, true, found);
        start = mark + 1;
      }
      continue;
    }
    model_.text().forEachStretch(run.from, run.to, [&](Position at, const text::Stretch& stretch) {
      for (Position i = 0; i < stretch.length; ++i) {
        if (stretch[i] != text::kParagraphMark && !structure.sectionMark) continue;
        add(start, at + i + 1, false, found);
        start = at + i + 1;
      }
      return true;
    });
  }
  if (start < to) add(start, to, false, found);
}

void BlockIndex::add(Position from, Position to, bool isRow, std::vector<Block>& found) const {
  while (!isRow && to - from > kLongest) {
    const Position end = cut(from, to);
    found.push_back({from, estimate_({from, end}, false), 0, false});
    from = end;
  }
  found.push_back({from, estimate_({from, to}, isRow), 0, false});
}

/// Where a block that begins at from ends: behind a blank, and not within a character.
Position BlockIndex::cut(Position from, Position to) const {
  constexpr Position kSearched = 512;
  Position end = std::min(from + kLongest, to);
  for (Position at = end; at > end - kSearched; --at) {
    if (model_.text().at(at - 1) == u' ') return at;
  }
  while (end > from + 1 && isLowSurrogate(model_.text().at(end))) --end;
  return end;
}

bool BlockIndex::endsBlock(Position position) const {
  const model::Structure structure = model_.structure().valueAt(position);
  if (structure.table != model::kNone) return structure.rowMark && isOutermost(model_, structure.table);
  return model_.endsParagraph(position);
}

Span BlockIndex::span(std::size_t i) const {
  return {blocks_[i].from, i + 1 < blocks_.size() ? blocks_[i + 1].from : length_};
}

bool BlockIndex::isRow(std::size_t i) const {
  return model_.structure().valueAt(blocks_[i].from).table != model::kNone;
}

std::size_t BlockIndex::at(Position position) const {
  const auto behind = std::upper_bound(blocks_.begin(), blocks_.end(), position,
                                       [](Position p, const Block& block) { return p < block.from; });
  return static_cast<std::size_t>(std::max<std::ptrdiff_t>(behind - blocks_.begin() - 1, 0));
}

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
  Block& block = blocks_[i];
  block.exact = true;
  if (block.height == height) return;
  block.height = height;
  stale(i);
}

std::size_t BlockIndex::atHeight(std::int64_t y) {
  top(0);
  const auto behind =
      std::upper_bound(blocks_.begin(), blocks_.end(), y,
                       [](std::int64_t wanted, const Block& block) { return wanted < block.top; });
  return static_cast<std::size_t>(std::max<std::ptrdiff_t>(behind - blocks_.begin() - 1, 0));
}

void BlockIndex::forgetHeights() {
  for (std::size_t i = 0; i < blocks_.size(); ++i) {
    blocks_[i].height = estimate_(span(i), isRow(i));
    blocks_[i].exact = false;
  }
  stale_ = 0;
}

}  // namespace pluvo::view
