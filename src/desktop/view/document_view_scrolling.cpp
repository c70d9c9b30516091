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
  settle();
  const std::size_t top = index_->at(topBlock_);
  index_->forgetHeights();
  topBlock_ = index_->span(top).from;
  showTop();
  viewport()->update();
}

void DocumentView::dropLayouts(Position from, Position to) {
  auto first = layouts_.upper_bound(from);
  if (first != layouts_.begin()) --first;
  layouts_.erase(first, layouts_.lower_bound(std::max(to, from + 1)));
}

/// The block may begin earlier after it: a part of a paragraph begins where a line of the part before it
/// ends, which is laid out first. How that part began itself matters to few lines only.
const BlockLayout& DocumentView::layoutOf(std::size_t block) {
  const auto known = layouts_.find(index_->span(block).from);
  if (known != layouts_.end()) return *known->second;
  if (index_->continues(block) && !index_->exact(block - 1)) layOut(block - 1);
  return layOut(block);
}

const BlockLayout& DocumentView::layOut(std::size_t block) {
  const text::Span span = index_->span(block);
  auto layout = std::make_unique<BlockLayout>(mainText(), span, index_->isRow(block), document_->view(),
                                              *looks_, columnWidth());
  index_->setHeight(block, layout->height());
  if (layout->end() != span.to) {
    layouts_.erase(span.to);
    if (topBlock_ == span.to) topBlock_ = layout->end();
    index_->startAt(block + 1, layout->end());
  }
  return *(layouts_[span.from] = std::move(layout));
}

void DocumentView::settle() {
  index_->settle();
  topBlock_ = index_->span(index_->at(std::min(topBlock_, mainText().length()))).from;
}

std::int64_t DocumentView::anchorTop() {
  const std::size_t block = index_->at(topBlock_);
  return index_->top(block) + std::min(topOffset_, index_->height(block));
}

/// Makes the heights of what is seen exact, and of half a page above and below, so that scrolling is smooth.
void DocumentView::layOutAround() {
  const int page = viewport()->height();
  const std::size_t first = index_->at(topBlock_);
  layoutOf(first);
  topOffset_ = std::min(topOffset_, index_->height(first));
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
  const std::size_t last = index_->count() - 1;
  const std::int64_t end = index_->top(last) + index_->height(last) + 2 * kTopMargin;
  if (anchorTop() + viewport()->height() > end)
    putAt(last, index_->height(last), viewport()->height() - 2 * kTopMargin);
  const std::int64_t all = index_->top(index_->count()) + std::int64_t{2} * kTopMargin;
  const int page = viewport()->height();
  QScrollBar& bar = *verticalScrollBar();
  bar.setPageStep(page);
  bar.setSingleStep(static_cast<int>(QFontMetricsF(looks_->font).height() * 1.5));
  bar.setRange(0, static_cast<int>(std::clamp<std::int64_t>(all - page, 0, INT_MAX)));
  const std::int64_t wanted = anchorTop();
  bar.setValue(static_cast<int>(std::min<std::int64_t>(wanted, INT_MAX)));
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
  const QScrollBar& bar = *verticalScrollBar();
  if (bar.value() == bar.maximum()) {
    // The blocks before the end may be higher than guessed.
    const std::size_t last = index_->count() - 1;
    putAt(last, layoutOf(last).height(), viewport()->height() - 2 * kTopMargin);
  } else {
    anchorAt(bar.value());
  }
  viewport()->update();
}

/// Scrolls so that a place in a block stands so far below the top of what is seen, or less at the beginning.
/// The blocks above it are laid out, so that it does stand there.
void DocumentView::putAt(std::size_t block, int inBlock, int below) {
  int y = inBlock;
  while (y < below && block > 0) {
    --block;
    layoutOf(block);
    y += index_->height(block);
  }
  topBlock_ = index_->span(block).from;
  topOffset_ = std::max(y - below, 0);
}

void DocumentView::reveal(text::Span span) {
  if (!index_) return;
  settle();
  layOutAround();
  const int page = viewport()->height();
  const QRectF line = caretRect(span.from);
  const std::size_t block = index_->at(span.from);
  const std::int64_t top = index_->top(block) + static_cast<std::int64_t>(line.top()) + kTopMargin;
  const std::int64_t seenFrom = anchorTop();
  const bool seen =
      top >= seenFrom + 8 && top + static_cast<std::int64_t>(line.height()) + 8 <= seenFrom + page / 2;
  if (seen) return;
  putAt(block, static_cast<int>(line.top()), page / 4);
  showTop();
  viewport()->update();
}

/// Where an insertion point is in the viewport, seen or not.
QRectF DocumentView::seenCaret(Position position) {
  const QRectF caret = caretRect(position);
  const std::int64_t top = index_->top(index_->at(position)) - anchorTop() + kTopMargin;
  return caret.translated(columnLeft(), static_cast<qreal>(top));
}

QRect DocumentView::selectionRect() {
  if (!index_ || !hasSelection()) return {};
  settle();
  const text::Span selection = document_->selection();
  const QRectF first = seenCaret(selection.from);
  const QRectF last = seenCaret(selection.to);
  QRectF around = first.united(last);
  if (last.top() > first.top()) {
    around.setLeft(columnLeft());
    around.setWidth(columnWidth());
  }
  return around.toAlignedRect().intersected(viewport()->rect());
}

}  // namespace pluvo::view
