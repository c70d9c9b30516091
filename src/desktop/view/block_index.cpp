#include "block_index.h"

#include "base/utf.h"

#include <algorithm>
#include <utility>

namespace pluvo::view {

namespace {

bool isOutermost(const document::Story& story, std::int32_t table) {
  return story.tables()[static_cast<std::size_t>(table)].parent == document::kNone;
}

}  // namespace

BlockIndex::BlockIndex(const document::Story& story, Estimate estimate)
    : story_(story), estimate_(std::move(estimate)), length_(story.length()) {
  scan(0, length_, blocks_);
}

void BlockIndex::edited(Span span, Position newLength) {
  const Position growth = newLength - span.length();
  Dirty edit{span.from, span.from + newLength, growth};
  const auto first = std::lower_bound(dirty_.begin(), dirty_.end(), span.from,
                                      [](const Dirty& dirty, Position at) { return dirty.to < at; });
  auto last = first;
  for (; last != dirty_.end() && last->from <= span.to; ++last) {
    edit.from = std::min(edit.from, last->from);
    edit.to = std::max(edit.to, last->to + growth);
    edit.growth += last->growth;
  }
  for (auto behind = last; behind != dirty_.end(); ++behind) {
    behind->from += growth;
    behind->to += growth;
  }
  if (first == last) {
    dirty_.insert(first, edit);
  } else {
    *first = edit;
    dirty_.erase(first + 1, last);
  }
}

/// Looks through the blocks that edits touch, and on to where a block ends as it did; the others move along.
void BlockIndex::settle() {
  if (dirty_.empty()) return;
  const std::vector<Dirty> edits = std::exchange(dirty_, {});
  const auto startsBefore = [](const Block& block, Position position) { return block.from < position; };
  const Position oldLength = std::exchange(length_, story_.length());
  std::vector<Block> settled;
  settled.reserve(blocks_.size() + edits.size());
  std::size_t done = 0;  // of the blocks as they were
  Position growth = 0;
  for (auto edit = edits.begin(); edit != edits.end();) {
    const std::size_t first = at(std::min(edit->from - growth, oldLength));
    // The line that ends there may hold more or less now.
    if (first > 0) blocks_[first - 1].exact = false;
    keep(done, first, growth, settled);
    const Position start = blocks_[first].from + growth;
    std::size_t last = first;
    const auto takeEdit = [&] {
      const Position from = edit->from - growth;
      const Position to = std::max(edit->to - edit->growth - growth, from + 1);
      growth += edit->growth;
      ++edit;
      const auto behind = std::lower_bound(blocks_.begin() + static_cast<std::ptrdiff_t>(first) + 1,
                                           blocks_.end(), to, startsBefore);
      last = std::max(last, static_cast<std::size_t>(behind - blocks_.begin()));
    };
    const auto end = [&] { return last < blocks_.size() ? blocks_[last].from + growth : length_; };
    takeEdit();
    for (;;) {
      if (edit != edits.end() && (last == blocks_.size() || edit->from - growth < blocks_[last].from)) {
        takeEdit();
      } else if (end() < length_ && (end() == 0 || !endsBlock(end() - 1))) {
        ++last;
      } else {
        break;
      }
    }
    const std::size_t found = settled.size();
    stale(found);
    scan(start, end(), settled);
    if (settled.size() - found == last - first) {
      for (std::size_t i = 0; i < last - first; ++i) settled[found + i].height = blocks_[first + i].height;
    }
    done = last;
  }
  keep(done, blocks_.size(), growth, settled);
  blocks_ = std::move(settled);
}

void BlockIndex::keep(std::size_t first, std::size_t last, Position growth, std::vector<Block>& in) const {
  for (std::size_t i = first; i < last; ++i) {
    in.push_back(blocks_[i]);
    in.back().from += growth;
  }
}

/// Takes in blocks that together are [from, to).
void BlockIndex::scan(Position from, Position to, std::vector<Block>& found) const {
  Position start = from;
  for (const auto& run : story_.structure().runs(from, to)) {
    const document::Structure& structure = run.value;
    if (structure.table != document::kNone) {
      if (!structure.rowMark || !isOutermost(story_, structure.table)) continue;
      for (Position mark = run.from; mark < run.to; ++mark) {
        add(start, mark + 1, true, found);
        start = mark + 1;
      }
      continue;
    }
    story_.text().forEachStretch(run.from, run.to, [&](Position at, const text::Stretch& stretch) {
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
    found.push_back({from, estimate_({from, end}, false), 0, false, false, 0});
    from = end;
  }
  found.push_back({from, estimate_({from, to}, isRow), 0, false, isRow, 0});
}

/// Where a block that begins at from ends: behind a blank, and not within a character.
Position BlockIndex::cut(Position from, Position to) const {
  constexpr Position kSearched = 512;
  Position end = std::min(from + kLongest, to);
  for (Position at = end; at > end - kSearched; --at) {
    if (story_.text().at(at - 1) == u' ') return at;
  }
  while (end > from + 1 && base::isLowSurrogate(story_.text().at(end))) --end;
  return end;
}

bool BlockIndex::endsBlock(Position position) const {
  const document::Structure structure = story_.structure().valueAt(position);
  if (structure.table != document::kNone) return structure.rowMark && isOutermost(story_, structure.table);
  return story_.endsParagraph(position);
}

Span BlockIndex::span(std::size_t i) const {
  return {blocks_[i].from, i + 1 < blocks_.size() ? blocks_[i + 1].from : length_};
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

void BlockIndex::startAt(std::size_t i, Position from) {
  Block& block = blocks_[i];
  block.moved += block.from - from;
  block.from = from;
  block.exact = false;
}

std::size_t BlockIndex::atHeight(std::int64_t y) {
  top(0);
  const auto behind =
      std::upper_bound(blocks_.begin(), blocks_.end(), y,
                       [](std::int64_t wanted, const Block& block) { return wanted < block.top; });
  return static_cast<std::size_t>(std::max<std::ptrdiff_t>(behind - blocks_.begin() - 1, 0));
}

void BlockIndex::forgetHeights() {
  for (Block& block : blocks_) block.from += std::exchange(block.moved, 0);
  for (std::size_t i = 0; i < blocks_.size(); ++i) {
    blocks_[i].height = estimate_(span(i), isRow(i));
    blocks_[i].exact = false;
  }
  stale_ = 0;
}

}  // namespace pluvo::view
