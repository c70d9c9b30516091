#include "view/document_view.h"

#include "block_index.h"
#include "block_layout.h"
#include "looks.h"

#include <QApplication>
#include <QFontDatabase>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <cmath>
#include <utility>

namespace pluvo::view {

namespace {

constexpr int kTopMargin = 24;
constexpr int kSideMargin = 28;
/// A line longer than this many average characters is hard to read.
constexpr qreal kColumnCharacters = 92;
constexpr double kSmallestZoom = 0.4;
constexpr double kLargestZoom = 5;
constexpr qreal kFontSize = 11.5;

}  // namespace

DocumentView::DocumentView(std::shared_ptr<memory::MemoryDocument> document,
                           text::RunMap<formats::Appearance> appearance, const Running& running)
    : document_(std::move(document)), looks_(std::make_unique<Looks>(Looks{{}, std::move(appearance)})) {
  setFrameShape(NoFrame);
  setFocusPolicy(Qt::StrongFocus);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  viewport()->setCursor(Qt::IBeamCursor);
  viewport()->setMouseTracking(false);
  setAccessibleName(tr("Document"));
  setAccessibleDescription(tr("The document's text. Shift and the arrow keys select, Ctrl+C copies."));
  const text::Span selection = document_->selection();
  selectionAnchor_ = selection.from;
  caret_ = selection.to;
  measure();
  std::unique_ptr<BlockIndex> index;
  running([&] {
    index = std::make_unique<BlockIndex>(model(), [this](text::Span block, bool isRow) {
      const double lines = isRow ? 1 : std::max(std::ceil(block.length() / charactersInLine_), 1.0);
      return static_cast<int>(lineHeight_ * (lines * 1.12 + 0.4));
    });
  });
  index_ = std::move(index);
  measure();
  showTop();
}

DocumentView::~DocumentView() = default;

void DocumentView::detach() {
  layouts_.clear();
  index_.reset();
  document_.reset();
  viewport()->update();
}

void DocumentView::measure() {
  QFont font = QApplication::font();
  font.setPointSizeF(kFontSize * zoom_);
  looks_->font = font;
  const QFontMetricsF metrics(font);
  charactersInLine_ = std::max<qreal>(columnWidth() / metrics.averageCharWidth(), 8);
  lineHeight_ = metrics.height();
}

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

qreal DocumentView::columnWidth() const {
  const qreal room = viewport()->width() - 2 * kSideMargin;
  const qreal widest = QFontMetricsF(looks_->font).averageCharWidth() * kColumnCharacters;
  return std::max<qreal>(std::min(room, widest), 120);
}

qreal DocumentView::columnLeft() const {
  return std::max<qreal>(std::floor((viewport()->width() - columnWidth()) / 2), kSideMargin / 2.0);
}

// Changes.

void DocumentView::textReplaced(text::Span span, text::Position newLength) {
  if (!index_) return;
  index_->edited(span, newLength);
  dropLayouts(span.from, text::kMaxLength);
  if (topBlock_ >= span.to) {
    topBlock_ += newLength - span.length();
  } else if (topBlock_ > span.from) {
    topBlock_ = span.from;
  }
  viewport()->update();
}

void DocumentView::highlightChanged(text::Span span) {
  if (!index_) return;
  dropLayouts(span.from, span.to);
  viewport()->update();
}

void DocumentView::selectionChanged(text::Span selection) {
  if (selectingByUser_ || !index_) return;
  selectionAnchor_ = selection.from;
  caret_ = selection.to;
  preferredX_ = -1;
  if (!selection.empty()) reveal(selection);
  viewport()->update();
}

void DocumentView::viewChanged() { forgetLayouts(); }

// Layout.

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

// Painting.

void DocumentView::paintEvent(QPaintEvent* event) {
  QPainter painter(viewport());
  const QPalette& colours = palette();
  painter.fillRect(event->rect(), colours.color(QPalette::Window));
  const qreal left = columnLeft();
  const QRectF paper(left - kSideMargin, 0, columnWidth() + 2 * kSideMargin, viewport()->height());
  painter.fillRect(paper, colours.color(QPalette::Base));
  if (!index_ || !document_->isOpen()) return;
  showTop();
  const text::Span selection = document_->selection();
  const QRectF clip(event->rect());
  std::size_t block = index_->at(topBlock_);
  qreal y = kTopMargin - topOffset_;
  // The margin above the first block scrolls away with it.
  while (block > 0 && y > 0) {
    --block;
    layoutOf(block);
    y -= index_->height(block);
  }
  for (; block < index_->count() && y < viewport()->height(); ++block) {
    const BlockLayout& layout = layoutOf(block);
    layout.paint(painter, {left, y}, clip, selection, colours);
    const text::Span span = index_->span(block);
    const bool here = caret_ >= span.from && (caret_ < span.to || block + 1 == index_->count());
    if (here && selection.empty() && hasFocus() && caretOn_ && !layout.empty()) {
      QRectF caret = layout.caret(caret_).translated(left, y);
      caret.setWidth(std::max(1.5, zoom_ * 1.5));
      painter.fillRect(caret, colours.color(QPalette::Text));
    }
    y += index_->height(block);
  }
}

void DocumentView::resizeEvent(QResizeEvent* event) {
  if (event->oldSize().width() != event->size().width()) return forgetLayouts();
  showTop();
}

void DocumentView::changeEvent(QEvent* event) {
  QAbstractScrollArea::changeEvent(event);
  if (event->type() != QEvent::FontChange && event->type() != QEvent::StyleChange) return;
  setZoom(zoom_);
}

void DocumentView::setZoom(double zoom) {
  zoom_ = std::clamp(zoom, kSmallestZoom, kLargestZoom);
  forgetLayouts();
  zoomed();
}

void DocumentView::zoomBy(int steps) {
  constexpr double kStep = 1.1;
  const double zoom = zoom_ * std::pow(kStep, steps);
  setZoom(std::abs(zoom - 1) < 0.04 ? 1 : zoom);
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
