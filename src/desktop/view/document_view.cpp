#include "view/document_view.h"

#include "accessible_document.h"
#include "block_index.h"
#include "block_layout.h"
#include "looks.h"

#include <QApplication>
#include <QFontDatabase>
#include <QPaintEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

namespace pluvo::view {

namespace {

constexpr int kSideMargin = 28;
/// A line longer than this many average characters is hard to read.
constexpr qreal kColumnCharacters = 92;
constexpr double kSmallestZoom = 0.4;
constexpr double kLargestZoom = 5;
constexpr qreal kFontSize = 11.5;

}  // namespace

DocumentView::DocumentView(std::shared_ptr<memory::MemoryDocument> document,
                           text::RunMap<formats::Appearance> appearance, const Running& running)
    : document_(std::move(document)),
      looks_(std::make_unique<Looks>(Looks{{}, std::move(appearance), {}, {}})) {
  installAccessibleDocuments();
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
    index = std::make_unique<BlockIndex>(mainText(), [this](text::Span block, bool isRow) {
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
  colourChanges(*looks_, palette().color(QPalette::Base));
  const QFontMetricsF metrics(font);
  charactersInLine_ = std::max<qreal>(columnWidth() / metrics.averageCharWidth(), 8);
  lineHeight_ = metrics.height();
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
  tellSelection();
  if (!selection.empty()) reveal(selection);
  viewport()->update();
}

void DocumentView::viewChanged() { forgetLayouts(); }

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
  if (event->type() == QEvent::PaletteChange) return forgetLayouts();
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

void DocumentView::tellSelection() {
  if (!QAccessible::isActive()) return;
  QAccessibleTextSelectionEvent event(this, std::min(selectionAnchor_, caret_),
                                      std::max(selectionAnchor_, caret_));
  event.setCursorPosition(caret_);
  QAccessible::updateAccessibility(&event);
}

}  // namespace pluvo::view
