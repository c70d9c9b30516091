#include "steps.h"

namespace pluvo::view {

/// The first insertion point of a block in one direction; BlockLayout::kOutside where it has none.
Position Steps::firstIn(std::size_t block, bool forward) {
  const BlockLayout& layout = column_.layoutOf(block);
  if (layout.empty()) return BlockLayout::kOutside;
  return forward ? layout.firstPosition() : layout.lastPosition();
}

Position Steps::neighbour(Position position, bool forward, bool words) {
  const auto mode = words ? QTextLayout::SkipWords : QTextLayout::SkipCharacters;
  const Column::Place place = column_.placeOf(position);
  Position next = BlockLayout::kOutside;
  if (!place.layout.empty())
    next = forward ? place.layout.after(position, mode) : place.layout.before(position, mode);
  std::size_t block = place.block;
  while (next == BlockLayout::kOutside) {
    if (forward ? block + 1 >= column_.count() : block == 0) return position;
    block += forward ? 1 : std::size_t(-1);
    next = firstIn(block, forward);
  }
  return next;
}

Position Steps::beside(Position position, bool left) {
  const Column::Place place = column_.placeOf(position);
  const Position next = place.layout.empty() ? BlockLayout::kOutside : place.layout.beside(position, left);
  return next != BlockLayout::kOutside ? next : neighbour(position, !left, false);
}

Position Steps::vertical(Position position, qreal by) {
  constexpr int kMostTries = 64;
  constexpr qreal kStep = 6;
  const QRectF caret = column_.caretInBlock(position);
  const std::size_t start = column_.blockAt(position);
  if (preferredX_ < 0) preferredX_ = caret.left();
  const qreal direction = by < 0 ? -1 : 1;
  const qreal from = (by < 0 ? caret.top() : caret.bottom()) + by;
  // Gaps between paragraphs, borders and hidden paragraphs are passed over.
  for (int i = 0; i < kMostTries; ++i) {
    std::size_t block = start;
    qreal y = from + direction * kStep * i;
    while (y < 0 && block > 0) {
      --block;
      column_.layoutOf(block);
      y += column_.height(block);
    }
    while (y >= column_.height(block) && block + 1 < column_.count()) {
      y -= column_.height(block);
      ++block;
      column_.layoutOf(block);
    }
    const Position found = column_.positionAt(block, {preferredX_, y});
    const QRectF there = column_.caretInBlock(found);
    const bool beyond = block == start
                            ? direction * (there.center().y() - caret.center().y()) > there.height() / 2
                            : (block > start) == (by > 0);
    if (beyond && !column_.layoutOf(block).empty()) return found;
  }
  return position;
}

Position Steps::lineEnd(Position position, bool end) {
  const Column::Place place = column_.placeOf(position);
  if (place.layout.empty()) return position;
  return end ? place.layout.lineEnd(position) : place.layout.lineStart(position);
}

}  // namespace pluvo::view
