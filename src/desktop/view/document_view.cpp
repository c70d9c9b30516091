#include "view/document_view.h"

#include "accessible_document.h"
#include "block_finder.h"
#include "column.h"
#include "shown_text.h"
#include "steps.h"
#include "story_bar.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <cmath>
#include <utility>

namespace pluvo::view {

using text::Position;
using text::Span;

DocumentView::Prepared DocumentView::prepare(std::shared_ptr<memory::MemoryDocument> document,
                                             const ChangeLog& log, Appearances appearances) {
  text::RunMap<formats::Appearance> mainText;
  if (!appearances.empty()) mainText = std::exchange(appearances.front(), {});
  return {std::make_shared<Column>(std::move(document), 0, log.blocks(), std::move(mainText)),
          std::move(appearances)};
}

DocumentView::DocumentView(Prepared prepared)
    : column_(std::move(prepared.mainText)),
      appearances_(std::move(prepared.others)),
      steps_(std::make_unique<Steps>(*column_)),
      storyBar_(new StoryBar(this)) {
  installAccessibleDocuments();
  setFrameShape(NoFrame);
  setFocusPolicy(Qt::StrongFocus);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  viewport()->setCursor(Qt::IBeamCursor);
  viewport()->setMouseTracking(false);
  setAccessibleName(tr("Document"));
  setAccessibleDescription(tr("The document's text. Shift and the arrow keys select, Ctrl+C copies."));
  storyBar_->asked = [this](std::size_t story) { storyAsked(story); };
  followSelection();
  layOutAnew();
}

DocumentView::~DocumentView() = default;

void DocumentView::detach() {
  column_->detach();
  if (mainText_) mainText_->detach();
  viewport()->update();
}

void DocumentView::measure() { column_->measure(zoom_, palette().color(QPalette::Base), viewport()->size()); }

/// Shows the story that the selection stands in. Main text, which may be long, is kept as it was laid out.
void DocumentView::followSelection() {
  const Span selection = column_->document()->selection();
  selectionAnchor_ = selection.from;
  caret_ = selection.to;
  const std::size_t story = column_->document()->selectedStory();
  if (story == column_->number()) return;
  const auto laidOut = [&] {
    text::RunMap<formats::Appearance> looks;
    if (story < appearances_.size()) looks = appearances_[story];
    const BlockFinder found(column_->document()->stories().story(story));
    return std::make_shared<Column>(column_->document(), story, found.blocks(), std::move(looks));
  };
  std::shared_ptr<Column> next = story == 0 ? std::move(mainText_) : laidOut();
  if (column_->number() == 0) mainText_ = std::move(column_);
  column_ = std::move(next);
  steps_ = std::make_unique<Steps>(*column_);
  storyBar_->tell(column_->document()->stories(), story);
  setAccessibleName(story == 0 ? tr("Document") : storyBar_->text());
  setViewportMargins(0, story == 0 ? 0 : storyBar_->sizeHint().height(), 0, 0);
  layOutAnew();
}

// Changes.

void DocumentView::take(const std::shared_ptr<memory::MemoryDocument>& now,
                        const std::vector<Changes>& changes) {
  for (Column* const column : {column_.get(), mainText_.get()}) {
    if (column == nullptr || !column->isThere()) continue;
    column->take(now);
    for (const Changes& those : changes) {
      const auto change = std::ranges::find(those, column->number(), &StoryChange::story);
      if (change == those.end()) continue;
      column->take(*change);
      if (column != column_.get()) continue;
      selectionAnchor_ = positionAfter(change->touched, selectionAnchor_);
      caret_ = positionAfter(change->touched, caret_);
    }
  }
  viewport()->update();
}

void DocumentView::selectionChanged(Span selection) {
  if (selectingByUser_ || !column_->isThere()) return;
  followSelection();
  steps_->forgetColumn();
  tellSelection();
  if (!selection.empty()) reveal(selection);
  viewport()->update();
}

void DocumentView::viewChanged() { layOutAnew(); }

/// In another size, or another view of the text.
void DocumentView::layOutAnew() {
  if (!column_->isThere()) return;
  measure();
  column_->forget();
  updateBar();
  viewport()->update();
}

// Painting.

void DocumentView::paintEvent(QPaintEvent* event) {
  QPainter painter(viewport());
  const QPalette& colours = palette();
  painter.fillRect(event->rect(), colours.color(QPalette::Window));
  constexpr int kMargin = Column::kSideMargin;
  const QRectF paper(column_->left() - kMargin, 0, column_->width() + 2 * kMargin, viewport()->height());
  painter.fillRect(paper, colours.color(QPalette::Base));
  if (!column_->isOpen()) return;
  updateBar();
  const Span selection = column_->document()->selection();
  const bool showsCaret = selection.empty() && hasFocus() && caretOn_;
  const std::size_t caretBlock = column_->blockAt(caret_);
  const QRectF clip(event->rect());
  column_->forEachInSight([&](std::size_t block, const BlockLayout& layout, QPointF at) {
    layout.paint(painter, at, clip, selection, colours);
    if (showsCaret && block == caretBlock) paintCaret(painter, layout, at);
  });
}

void DocumentView::paintCaret(QPainter& painter, const BlockLayout& layout, QPointF at) {
  if (layout.empty()) return;
  QRectF caret = layout.caret(caret_).translated(at);
  caret.setWidth(std::max(1.5, zoom_ * 1.5));
  painter.fillRect(caret, palette().color(QPalette::Text));
}

void DocumentView::changeEvent(QEvent* event) {
  QAbstractScrollArea::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) return layOutAnew();
  if (event->type() != QEvent::FontChange && event->type() != QEvent::StyleChange) return;
  setZoom(zoom_);
}

void DocumentView::setZoom(double zoom) {
  constexpr double kSmallest = 0.4;
  constexpr double kLargest = 5;
  zoom_ = std::clamp(zoom, kSmallest, kLargest);
  layOutAnew();
  zoomed();
}

void DocumentView::zoomBy(int steps) {
  constexpr double kStep = 1.1;
  const double zoom = zoom_ * std::pow(kStep, steps);
  setZoom(std::abs(zoom - 1) < 0.04 ? 1 : zoom);
}

// Scrolling.

/// Brings the scroll bar up to date with the lines in sight.
void DocumentView::updateBar() {
  if (!column_->isThere() || std::exchange(updatingBar_, true)) return;
  const Column::Bar now = column_->bar();
  QScrollBar& bar = *verticalScrollBar();
  bar.setPageStep(now.page);
  bar.setSingleStep(now.step);
  bar.setRange(0, now.last);
  bar.setValue(now.value);
  updatingBar_ = false;
}

void DocumentView::resizeEvent(QResizeEvent* event) {
  const QRect text = viewport()->geometry();
  storyBar_->setGeometry(text.left(), 0, text.width(), text.top());
  column_->resized(viewport()->size());
  if (event->oldSize().width() != event->size().width()) return layOutAnew();
  updateBar();
}

void DocumentView::scrollContentsBy(int, int) {
  if (!column_->isThere() || updatingBar_) return;
  const QScrollBar& bar = *verticalScrollBar();
  if (bar.value() == bar.maximum()) {
    column_->scrollToEnd();
  } else {
    column_->scrollTo(bar.value());
  }
  viewport()->update();
}

void DocumentView::reveal(Span span) {
  if (!column_->isThere() || !column_->reveal(span.from)) return;
  updateBar();
  viewport()->update();
}

QRect DocumentView::selectionRect() {
  return column_->isThere() && hasSelection() ? column_->selectionRect() : QRect();
}

// Selecting.

bool DocumentView::hasSelection() const { return column_->hasSelection(); }

void DocumentView::select(Position anchor, Position caret) {
  selectionAnchor_ = anchor;
  caret_ = caret;
  selectingByUser_ = true;
  const Span selection{std::min(anchor, caret), std::max(anchor, caret)};
  column_->document()->select(selection);
  selectingByUser_ = false;
  userSelected(selection);
  tellSelection();
  caretOn_ = true;
  viewport()->update();
}

void DocumentView::moveCaret(Position position, bool keepsAnchor) {
  select(keepsAnchor ? selectionAnchor_ : position, position);
  column_->bringIntoSight(caret_);
  updateBar();
}

void DocumentView::selectAll() {
  if (column_->isThere()) select(0, column_->story().length());
}

void DocumentView::copy() const {
  if (!hasSelection()) return;
  memory::MemoryDocument& document = *column_->document();
  QApplication::clipboard()->setText(copiedText(column_->story(), document.selection(), document.view()));
}

void DocumentView::tellSelection() {
  if (!QAccessible::isActive()) return;
  QAccessibleTextSelectionEvent event(this, std::min(selectionAnchor_, caret_),
                                      std::max(selectionAnchor_, caret_));
  event.setCursorPosition(caret_);
  QAccessible::updateAccessibility(&event);
}

// Keys.

void DocumentView::keyPressEvent(QKeyEvent* event) {
  if (!column_->isThere() || !moveByKey(*event)) QAbstractScrollArea::keyPressEvent(event);
}

bool DocumentView::moveByKey(QKeyEvent& event) {
  if (event.matches(QKeySequence::Copy)) return copy(), true;
  if (event.matches(QKeySequence::SelectAll)) return selectAll(), true;
  if (event.modifiers().testFlag(Qt::AltModifier)) return false;
  const auto to = stepByKey(event);
  if (to) moveCaret(*to, event.modifiers().testFlag(Qt::ShiftModifier));
  return to.has_value();
}

std::optional<Position> DocumentView::stepByKey(const QKeyEvent& event) {
  const bool shift = event.modifiers().testFlag(Qt::ShiftModifier);
  const bool control = event.modifiers().testFlag(Qt::ControlModifier);
  const int key = event.key();
  const bool upDown =
      key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown;
  if (!upDown) steps_->forgetColumn();
  const qreal page = std::max(viewport()->height() - 3.0 * column_->caretInBlock(caret_).height(), 1.0);
  const Span selection = column_->document()->selection();
  switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Right: {
      const bool left = key == Qt::Key_Left;
      if (!shift && !control && !selection.empty()) return left ? selection.from : selection.to;
      return control ? steps_->neighbour(caret_, !left, true) : steps_->beside(caret_, left);
    }
    case Qt::Key_Up:
      return steps_->vertical(caret_, -2);
    case Qt::Key_Down:
      return steps_->vertical(caret_, 2);
    case Qt::Key_PageUp:
      return steps_->vertical(caret_, -page);
    case Qt::Key_PageDown:
      return steps_->vertical(caret_, page);
    case Qt::Key_Home:
      return control ? 0 : steps_->lineEnd(caret_, false);
    case Qt::Key_End:
      return control ? std::max(column_->story().length() - 1, 0) : steps_->lineEnd(caret_, true);
    default:
      return std::nullopt;
  }
}

// Mouse.

void DocumentView::mousePressEvent(QMouseEvent* event) {
  if (!column_->isThere() || event->button() != Qt::LeftButton)
    return QAbstractScrollArea::mousePressEvent(event);
  steps_->forgetColumn();
  const Position position = column_->positionAt(event->pos());
  if (tripleClick_.isActive()) {
    tripleClick_.stop();
    const Span paragraph = column_->paragraphAt(position);
    return select(paragraph.from, paragraph.to);
  }
  const bool extends = event->modifiers().testFlag(Qt::ShiftModifier);
  select(extends ? selectionAnchor_ : position, position);
}

void DocumentView::mouseMoveEvent(QMouseEvent* event) {
  if (!column_->isThere() || !event->buttons().testFlag(Qt::LeftButton)) return;
  dragged_ = event->pos();
  select(selectionAnchor_, column_->positionAt(dragged_));
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
  if (!column_->isThere() || event->button() != Qt::LeftButton) return;
  const Position position = column_->positionAt(event->pos());
  const Column::Place place = column_->placeOf(position);
  if (!place.layout.empty()) {
    const Span word = place.layout.wordAt(position);
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
  if (!column_->isThere()) return;
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
  if (event->timerId() != dragTimer_.timerId() || !column_->isThere())
    return QAbstractScrollArea::timerEvent(event);
  const int beyond = dragged_.y() < 0 ? dragged_.y() : std::max(dragged_.y() - viewport()->height(), 0);
  verticalScrollBar()->setValue(verticalScrollBar()->value() + beyond);
  select(selectionAnchor_, column_->positionAt(dragged_));
}

}  // namespace pluvo::view
