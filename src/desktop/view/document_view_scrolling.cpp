#include "block_index.h"
#include "block_layout.h"
#include "looks.h"
#include "view/document_view.h"

#include <QScrollBar>
#include <algorithm>

/// What of a document is laid out, and which part of it is seen.
namespace pluvo::view {

/// Everything is laid out anew: in another size, or another view of the text.
void DocumentView::forgetLayouts() {
  // At first another thread makes the index, with the measures that are there.
  if (!index_) return;
  measure();
  layouts_.clear();
  index_->settle();
  index_->forgetHeights();
  showTop();
  viewport()->update();
}

void DocumentView::dropLayouts(Position from, Position to) {
  auto first = layouts_.upper_bound(from);
  if (first != layouts_.begin()) --first;
  layouts_.erase(first, layouts_.lower_bound(std::max(to, from + 1)));
}

const BlockLayout& DocumentView::layoutOf(std::size_t block) {
  const text::Span span = index_->span(block);
  auto& layout = layouts_[span.from];
  if (!layout) {
    layout = std::make_unique<BlockLayout>(model(), span, index_->isRow(block), document_->view(), *looks_,
                                           columnWidth());
    index_->setHeight(block, layout->height());
  }
  return *layout;
}

void DocumentView::settle() {
  index_->settle();
  topBlock_ = index_->span(index_->at(std::min(topBlock_, model().length()))).from;
}

std::int64_t DocumentView::anchorTop() {
  const std::size_t block = index_->at(topBlock_);
  return index_->top(block) + std::min(topOffset_, index_->height(block));
}

/// Makes the heights of what is seen exact, and of half a page above and below, so that scrolling is smooth.
void DocumentView::layOutAround() {
  const int page = viewport()->height();
  const std::size_t first = index_->at(topBlock_);
  int room = page + page / 2 + topOffset_;
  for (std::size_t i = first; i < index_->count() && room > 0; ++i) {
    layoutOf(i);
    room -= index_->height(i);
  }
  room = page / 2;
  for (std::size_t i = first; i > 0 && room > 0; --i) {
    layoutOf(i - 1);
    room -= index_->height(i - 1);
  }
}

void DocumentView::keepFewLayouts() {
  constexpr std::size_t kMost = 600;
  if (layouts_.size() <= kMost) return;
  const std::size_t top = index_->at(topBlock_);
  const std::size_t from = top > kMost / 4 ? top - kMost / 4 : 0;
  const std::size_t to = std::min(top + kMost / 2, index_->count() - 1);
  layouts_.erase(layouts_.begin(), layouts_.lower_bound(index_->span(from).from));
  layouts_.erase(layouts_.upper_bound(index_->span(to).from), layouts_.end());
}

/// Brings the scroll bar up to date with the anchor.
void DocumentView::showTop() {
  if (!index_ || showingTop_) return;
  showingTop_ = true;
  settle();
  layOutAround();
  const std::int64_t all = index_->top(index_->count()) + std::int64_t{2} * kTopMargin;
  const int page = viewport()->height();
  QScrollBar& bar = *verticalScrollBar();
  bar.setPageStep(page);
  bar.setSingleStep(static_cast<int>(QFontMetricsF(looks_->font).height() * 1.5));
  bar.setRange(0, static_cast<int>(std::clamp<std::int64_t>(all - page, 0, INT_MAX)));
  const std::int64_t wanted = anchorTop();
  bar.setValue(static_cast<int>(std::min<std::int64_t>(wanted, INT_MAX)));
  if (bar.value() < wanted) anchorAt(bar.value());
  keepFewLayouts();
  showingTop_ = false;
}

void DocumentView::anchorAt(std::int64_t y) {
  const std::size_t block = index_->atHeight(y);
  topBlock_ = index_->span(block).from;
  topOffset_ = static_cast<int>(y - index_->top(block));
}

void DocumentView::scrollContentsBy(int, int) {
  if (!index_ || showingTop_) return;
  settle();
  anchorAt(verticalScrollBar()->value());
  viewport()->update();
}

void DocumentView::reveal(text::Span span) {
  if (!index_) return;
  settle();
  layOutAround();
  const int page = viewport()->height();
  const std::size_t block = index_->at(span.from);
  const QRectF line = caretRect(span.from);
  const std::int64_t top = index_->top(block) + static_cast<std::int64_t>(line.top()) + kTopMargin;
  const std::int64_t seenFrom = anchorTop();
  const bool seen =
      top >= seenFrom + 8 && top + static_cast<std::int64_t>(line.height()) + 8 <= seenFrom + page / 2;
  if (seen) return;
  // Exact heights above it, so that it comes to stand where it is meant to.
  int above = page / 4;
  std::size_t first = block;
  int y = static_cast<int>(line.top());
  while (y < above && first > 0) {
    --first;
    layoutOf(first);
    y += index_->height(first);
  }
  topBlock_ = index_->span(first).from;
  topOffset_ = std::max(y - above, 0);
  showTop();
  viewport()->update();
}

QRect DocumentView::selectionRect() {
  if (!index_ || !hasSelection()) return {};
  settle();
  const text::Span selection = document_->selection();
  const auto yOf = [&](Position position) {
    return static_cast<qreal>(index_->top(index_->at(position)) - anchorTop() + kTopMargin);
  };
  const QRectF first = caretRect(selection.from).translated(columnLeft(), yOf(selection.from));
  const QRectF last = caretRect(selection.to).translated(columnLeft(), yOf(selection.to));
  QRectF around = first.united(last);
  if (last.top() > first.top()) {
    around.setLeft(columnLeft());
    around.setWidth(columnWidth());
  }
  return around.toAlignedRect().intersected(viewport()->rect());
}

}  // namespace pluvo::view
