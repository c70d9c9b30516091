#include "block_index.h"
#include "block_layout.h"
#include "shown_text.h"
#include "view/document_view.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

/// What the user does in a document view: moving the insertion point and selecting, by key and by mouse.
namespace pluvo::view {

// Places.

DocumentView::Place DocumentView::placeOf(Position position) {
  for (;;) {
    const std::size_t block = index_->at(position);
    const BlockLayout& layout = layoutOf(block);
    // Laid out, a part of a paragraph may end before the position.
    if (index_->at(position) == block) return {block, layout};
  }
}

QRectF DocumentView::caretRect(Position position) {
  const Place place = placeOf(position);
  return place.layout.empty() ? QRectF(0, 0, 1, 1) : place.layout.caret(position);
}

Position DocumentView::positionAt(QPoint point) {
  settle();
  const std::int64_t y = anchorTop() + point.y() - kTopMargin;
  const std::size_t block = index_->atHeight(std::max<std::int64_t>(y, 0));
  return positionAt(block, {point.x() - columnLeft(), static_cast<qreal>(y - index_->top(block))});
}

Position DocumentView::positionAt(std::size_t block, QPointF inBlock) {
  const BlockLayout& layout = layoutOf(block);
  return layout.empty() ? index_->span(block).from : layout.positionAt(inBlock);
}

/// The first insertion point of a block in one direction; BlockLayout::kOutside where it has none.
Position DocumentView::firstIn(std::size_t block, bool forward) {
  const BlockLayout& layout = layoutOf(block);
  if (layout.empty()) return BlockLayout::kOutside;
  return forward ? layout.firstPosition() : layout.lastPosition();
}

/// The whole of it, however many blocks it is.
text::Span DocumentView::paragraphAt(Position position) {
  const Place place = placeOf(position);
  if (place.layout.empty()) return {position, position};
  if (index_->isRow(place.block)) return place.layout.paragraphAt(position);
  std::size_t first = place.block;
  while (index_->continues(first)) --first;
  std::size_t last = place.block;
  while (last + 1 < index_->count() && index_->continues(last + 1)) ++last;
  return {index_->span(first).from, index_->span(last).to};
}

Position DocumentView::neighbour(Position position, bool forward, bool words) {
  const auto mode = words ? QTextLayout::SkipWords : QTextLayout::SkipCharacters;
  Place place = placeOf(position);
  Position next = BlockLayout::kOutside;
  if (!place.layout.empty())
    next = forward ? place.layout.behind(position, mode) : place.layout.before(position, mode);
  std::size_t block = place.block;
  while (next == BlockLayout::kOutside) {
    if (forward ? block + 1 >= index_->count() : block == 0) return position;
    block += forward ? 1 : std::size_t(-1);
    next = firstIn(block, forward);
  }
  return next;
}

Position DocumentView::beside(Position position, bool left) {
  const Place place = placeOf(position);
  const Position next = place.layout.empty() ? BlockLayout::kOutside : place.layout.beside(position, left);
  return next != BlockLayout::kOutside ? next : neighbour(position, !left, false);
}

/// At least so many pixels up or down, to another line, in the column where the user began.
Position DocumentView::vertical(Position position, qreal by) {
  constexpr int kMostTries = 64;
  constexpr qreal kStep = 6;
  const QRectF caret = caretRect(position);
  const std::size_t start = index_->at(position);
  if (preferredX_ < 0) preferredX_ = caret.left();
  const qreal direction = by < 0 ? -1 : 1;
  const qreal from = (by < 0 ? caret.top() : caret.bottom()) + by;
  // Gaps between paragraphs, borders and hidden paragraphs are passed over.
  for (int i = 0; i < kMostTries; ++i) {
    std::size_t block = start;
    qreal y = from + direction * kStep * i;
    while (y < 0 && block > 0) {
      --block;
      layoutOf(block);
      y += index_->height(block);
    }
    while (y >= index_->height(block) && block + 1 < index_->count()) {
      y -= index_->height(block);
      ++block;
      layoutOf(block);
    }
    const Position found = positionAt(block, {preferredX_, y});
    const QRectF there = caretRect(found);
    const bool beyond = block == start
                            ? direction * (there.center().y() - caret.center().y()) > there.height() / 2
                            : (block > start) == (by > 0);
    if (beyond && !layoutOf(block).empty()) return found;
  }
  return position;
}

Position DocumentView::atLineEnd(Position position, bool end) {
  const Place place = placeOf(position);
  if (place.layout.empty()) return position;
  return end ? place.layout.lineEnd(position) : place.layout.lineStart(position);
}

// Selecting.

void DocumentView::select(Position anchor, Position caret) {
  selectionAnchor_ = anchor;
  caret_ = caret;
  selectingByUser_ = true;
  document_->select({std::min(anchor, caret), std::max(anchor, caret)});
  selectingByUser_ = false;
  tellSelection();
  caretOn_ = true;
  viewport()->update();
}

void DocumentView::moveCaret(Position position, bool keepsAnchor) {
  select(keepsAnchor ? selectionAnchor_ : position, position);
  ensureCaretSeen();
}

/// What is between the caret and what is seen is only guessed; the way there is laid out from the caret.
void DocumentView::ensureCaretSeen() {
  layOutAround();
  const QRectF caret = seenCaret(caret_);
  const std::size_t block = index_->at(caret_);
  const QRectF inBlock = caretRect(caret_);
  if (caret.top() < kTopMargin) {
    putAt(block, static_cast<int>(inBlock.top()), 0);
  } else if (caret.bottom() + kTopMargin > viewport()->height()) {
    const int below = viewport()->height() - 2 * kTopMargin;
    putAt(block, static_cast<int>(std::ceil(inBlock.bottom())), std::max(below, 0));
  }
  showTop();
}

bool DocumentView::hasSelection() const {
  return document_ && document_->isOpen() && !document_->selection().empty();
}

void DocumentView::selectAll() {
  if (index_) select(0, mainText().length());
}

void DocumentView::copy() const {
  if (!hasSelection()) return;
  QApplication::clipboard()->setText(copiedText(mainText(), document_->selection(), document_->view()));
}

// Keys.

void DocumentView::keyPressEvent(QKeyEvent* event) {
  if (index_) settle();
  if (!index_ || !moveByKey(*event)) QAbstractScrollArea::keyPressEvent(event);
}

bool DocumentView::moveByKey(QKeyEvent& event) {
  if (event.matches(QKeySequence::Copy)) return copy(), true;
  if (event.matches(QKeySequence::SelectAll)) return selectAll(), true;
  const bool shift = event.modifiers().testFlag(Qt::ShiftModifier);
  const bool control = event.modifiers().testFlag(Qt::ControlModifier);
  if (event.modifiers().testFlag(Qt::AltModifier)) return false;
  const int key = event.key();
  const bool upDown =
      key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown;
  if (!upDown) preferredX_ = -1;
  const qreal page = std::max(viewport()->height() - 3.0 * caretRect(caret_).height(), 1.0);
  const text::Span selection = document_->selection();
  Position to = 0;
  switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Right: {
      const bool left = key == Qt::Key_Left;
      if (!shift && !control && !selection.empty()) {
        to = left ? selection.from : selection.to;
      } else {
        to = control ? neighbour(caret_, !left, true) : beside(caret_, left);
      }
      break;
    }
    case Qt::Key_Up:
      to = vertical(caret_, -2);
      break;
    case Qt::Key_Down:
      to = vertical(caret_, 2);
      break;
    case Qt::Key_PageUp:
      to = vertical(caret_, -page);
      break;
    case Qt::Key_PageDown:
      to = vertical(caret_, page);
      break;
    case Qt::Key_Home:
      to = control ? 0 : atLineEnd(caret_, false);
      break;
    case Qt::Key_End:
      to = control ? std::max(mainText().length() - 1, 0) : atLineEnd(caret_, true);
      break;
    default:
      return false;
  }
  moveCaret(to, shift);
  return true;
}

// Mouse.

void DocumentView::mousePressEvent(QMouseEvent* event) {
  if (!index_ || event->button() != Qt::LeftButton) return QAbstractScrollArea::mousePressEvent(event);
  preferredX_ = -1;
  const Position position = positionAt(event->pos());
  if (tripleClick_.isActive()) {
    tripleClick_.stop();
    const text::Span paragraph = paragraphAt(position);
    return select(paragraph.from, paragraph.to);
  }
  const bool extends = event->modifiers().testFlag(Qt::ShiftModifier);
  select(extends ? selectionAnchor_ : position, position);
}

void DocumentView::mouseMoveEvent(QMouseEvent* event) {
  if (!index_ || !event->buttons().testFlag(Qt::LeftButton)) return;
  dragged_ = event->pos();
  select(selectionAnchor_, positionAt(dragged_));
  constexpr int kMilliseconds = 40;
  if (viewport()->rect().contains(dragged_)) {
    dragTimer_.stop();
  } else if (!dragTimer_.isActive()) {
    dragTimer_.start(kMilliseconds, this);
  }
}

void DocumentView::mouseReleaseEvent(QMouseEvent* event) {
  dragTimer_.stop();
  QAbstractScrollArea::mouseReleaseEvent(event);
}

void DocumentView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (!index_ || event->button() != Qt::LeftButton) return;
  const Position position = positionAt(event->pos());
  const Place place = placeOf(position);
  if (!place.layout.empty()) {
    const text::Span word = place.layout.wordAt(position);
    select(word.from, word.to);
  }
  tripleClick_.start(QApplication::doubleClickInterval(), this);
}

void DocumentView::wheelEvent(QWheelEvent* event) {
  if (!event->modifiers().testFlag(Qt::ControlModifier)) return QAbstractScrollArea::wheelEvent(event);
  constexpr int kNotch = 120;
  const int steps = event->angleDelta().y() / kNotch;
  if (steps != 0) zoomBy(steps);
  event->accept();
}

void DocumentView::contextMenuEvent(QContextMenuEvent* event) {
  if (!index_) return;
  QMenu menu(this);
  QAction* const copyAction = menu.addAction(tr("&Copy"), this, &DocumentView::copy);
  copyAction->setEnabled(hasSelection());
  menu.addAction(tr("Select &All"), this, &DocumentView::selectAll);
  menu.exec(event->globalPos());
}

// Focus and time.

void DocumentView::focusInEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusInEvent(event);
  caretOn_ = true;
  if (QApplication::cursorFlashTime() > 0) caretTimer_.start(QApplication::cursorFlashTime() / 2, this);
  viewport()->update();
}

void DocumentView::focusOutEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusOutEvent(event);
  caretTimer_.stop();
  viewport()->update();
}

void DocumentView::timerEvent(QTimerEvent* event) {
  if (event->timerId() == tripleClick_.timerId()) return tripleClick_.stop();
  if (event->timerId() == caretTimer_.timerId()) {
    caretOn_ = !caretOn_;
    return viewport()->update();
  }
  if (event->timerId() != dragTimer_.timerId() || !index_) return QAbstractScrollArea::timerEvent(event);
  const int beyond = dragged_.y() < 0 ? dragged_.y() : std::max(dragged_.y() - viewport()->height(), 0);
  verticalScrollBar()->setValue(verticalScrollBar()->value() + beyond);
  select(selectionAnchor_, positionAt(dragged_));
}

}  // namespace pluvo::view
