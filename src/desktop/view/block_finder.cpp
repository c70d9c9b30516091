#include "block_finder.h"

#include "base/utf.h"

#include <utility>

namespace pluvo::view {

namespace {

bool isOutermost(const document::Story& story, std::int32_t table) {
  return story.tables()[static_cast<std::size_t>(table)].parent == document::kNone;
}

}  // namespace

BlockFinder::BlockFinder(const document::Story& story) : story_(story), length_(story.length()) {
  scan({0, length_}, false, blocks_);
}

/// Looks through the blocks that edits touch, and on to where a block ends as it did; the others move along.
std::vector<Patch> BlockFinder::takeIn(const std::vector<Exchange>& edits) {
  std::vector<Patch> patches;
  const Position lengthBefore = std::exchange(length_, story_.length());
  std::vector<Block> now;
  now.reserve(blocks_.size() + edits.size());
  std::size_t done = 0;
  Position growth = 0;
  const auto keepTo = [&](std::size_t end) {
    for (; done < end; ++done) {
      now.push_back(blocks_[done]);
      now.back().from += growth;
    }
  };
  for (auto edit = edits.begin(); edit != edits.end();) {
    const std::size_t first = blockAt(blocks_, edit->gone.from);
    keepTo(first);
    Patch patch;
    patch.text.gone.from = blocks_[first].from;
    patch.text.come.from = blocks_[first].from + growth;
    std::size_t last = first;
    const auto endBefore = [&] { return last < blocks_.size() ? blocks_[last].from : lengthBefore; };
    const auto takeEdit = [&] {
      const Position to = std::max(edit->gone.to, edit->gone.from + 1);
      growth = edit->come.to - edit->gone.to;
      ++edit;
      while (endBefore() < to && last < blocks_.size()) ++last;
    };
    takeEdit();
    for (;;) {
      const Position end = endBefore() + growth;
      if (edit != edits.end() && (last == blocks_.size() || edit->gone.from < endBefore())) {
        takeEdit();
      } else if (end < length_ && (end == 0 || !endsBlock(end - 1))) {
        ++last;
      } else {
        break;
      }
    }
    patch.text.gone.to = endBefore();
    patch.text.come.to = endBefore() + growth;
    scan(patch.text.come, blocks_[first].continues, patch.blocks);
    now.insert(now.end(), patch.blocks.begin(), patch.blocks.end());
    patches.push_back(std::move(patch));
    done = last;
  }
  keepTo(blocks_.size());
  blocks_ = std::move(now);
  return patches;
}

/// Takes in blocks that together are the text.
void BlockFinder::scan(Span text, bool continues, std::vector<Block>& found) const {
  Position start = text.from;
  const auto end = [&](Position to, bool isRow) {
    add({start, to}, isRow, continues, found);
    start = to;
    continues = false;
  };
  for (const auto& run : story_.structure().runs(text.from, text.to)) {
    const document::Structure& structure = run.value;
    if (structure.table != document::kNone) {
      if (!structure.rowMark || !isOutermost(story_, structure.table)) continue;
      for (Position mark = run.from; mark < run.to; ++mark) end(mark + 1, true);
      continue;
    }
    story_.text().forEachStretch(run.from, run.to, [&](Position at, const text::Stretch& stretch) {
      for (Position i = 0; i < stretch.length; ++i) {
        if (stretch[i] == text::kParagraphMark || structure.sectionMark) end(at + i + 1, false);
      }
      return true;
    });
  }
  if (start < text.to) end(text.to, false);
}

void BlockFinder::add(Span text, bool isRow, bool continues, std::vector<Block>& found) const {
  while (!isRow && text.length() > kLongest) {
    found.push_back({text.from, false, std::exchange(continues, true)});
    text.from = cut(text);
  }
  found.push_back({text.from, isRow, continues});
}

/// Where a block that begins as the text does ends: after a blank, and not within a character.
Position BlockFinder::cut(Span text) const {
  constexpr Position kSearched = 512;
  Position end = text.from + kLongest;
  for (Position at = end; at > end - kSearched; --at) {
    if (story_.text().at(at - 1) == u' ') return at;
  }
  while (end > text.from + 1 && base::isLowSurrogate(story_.text().at(end))) --end;
  return end;
}

bool BlockFinder::endsBlock(Position position) const {
  const document::Structure structure = story_.structure().valueAt(position);
  if (structure.table != document::kNone) return structure.rowMark && isOutermost(story_, structure.table);
  return story_.endsParagraph(position);
}

}  // namespace pluvo::view
