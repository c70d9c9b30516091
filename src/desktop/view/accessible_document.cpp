#include "accessible_document.h"

#include "column.h"
#include "shown_text.h"

#include <algorithm>

namespace pluvo::view {

void* AccessibleDocument::interface_cast(QAccessible::InterfaceType type) {
  if (type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface*>(this);
  return QAccessibleWidget::interface_cast(type);
}

QAccessible::State AccessibleDocument::state() const {
  QAccessible::State state = QAccessibleWidget::state();
  state.readOnly = true;
  state.multiLine = true;
  state.selectableText = true;
  return state;
}

bool AccessibleDocument::isThere() const { return view_.column_->isOpen(); }

int AccessibleDocument::inText(int offset) const {
  return std::clamp(offset, 0, view_.column_->story().length());
}

int AccessibleDocument::characterCount() const { return isThere() ? view_.column_->story().length() : 0; }

QString AccessibleDocument::text(int from, int to) const {
  if (!isThere()) return {};
  const Span span{inText(from), inText(to)};
  return span.from < span.to ? spokenText(view_.column_->story(), span, view_.column_->document()->view())
                             : QString();
}

/// The character, word, line or paragraph at an offset; sentences are not told apart from paragraphs.
text::Span AccessibleDocument::unitAt(int offset, QAccessible::TextBoundaryType type) const {
  const Position length = view_.column_->story().length();
  const Position at = std::clamp(offset, 0, length - 1);
  if (type == QAccessible::NoBoundary) return {0, length};
  const auto place = view_.column_->placeOf(at);
  if (type == QAccessible::CharBoundary || place.layout.empty()) return {at, at + 1};
  const Span paragraph = view_.column_->paragraphAt(at);
  Span unit = paragraph;
  if (type == QAccessible::WordBoundary) unit = place.layout.wordAt(at);
  if (type == QAccessible::LineBoundary)
    unit = {place.layout.lineStart(at), std::min(place.layout.lineEnd(at) + 1, paragraph.to)};
  return unit.from <= at && at < unit.to ? unit : Span{at, at + 1};
}

QString AccessibleDocument::textOf(text::Span span, int* from, int* to) const {
  *from = span.from;
  *to = span.to;
  return text(span.from, span.to);
}

QString AccessibleDocument::textAtOffset(int offset, QAccessible::TextBoundaryType type, int* from,
                                         int* to) const {
  *from = *to = -1;
  return isThere() ? textOf(unitAt(offset, type), from, to) : QString();
}

QString AccessibleDocument::textBeforeOffset(int offset, QAccessible::TextBoundaryType type, int* from,
                                             int* to) const {
  *from = *to = -1;
  if (!isThere()) return {};
  const Span here = unitAt(offset, type);
  return here.from == 0 ? QString() : textOf(unitAt(here.from - 1, type), from, to);
}

QString AccessibleDocument::textAfterOffset(int offset, QAccessible::TextBoundaryType type, int* from,
                                            int* to) const {
  *from = *to = -1;
  if (!isThere()) return {};
  const Span here = unitAt(offset, type);
  return here.to >= view_.column_->story().length() ? QString() : textOf(unitAt(here.to, type), from, to);
}

QString AccessibleDocument::attributes(int offset, int* from, int* to) const {
  textAtOffset(offset, QAccessible::ParagraphBoundary, from, to);
  return {};
}

int AccessibleDocument::cursorPosition() const { return view_.caret_; }

void AccessibleDocument::setCursorPosition(int position) {
  if (isThere()) view_.moveCaret(inText(position), false);
}

int AccessibleDocument::selectionCount() const { return view_.hasSelection() ? 1 : 0; }

void AccessibleDocument::selection(int index, int* from, int* to) const {
  const bool is = index == 0 && view_.hasSelection();
  const Span selected = is ? view_.column_->document()->selection() : Span{};
  *from = selected.from;
  *to = selected.to;
}

void AccessibleDocument::removeSelection(int index) {
  if (index == 0 && isThere()) view_.select(view_.caret_, view_.caret_);
}

void AccessibleDocument::setSelection(int index, int from, int to) {
  if (index == 0 && isThere()) view_.select(inText(from), inText(to));
}

QRect AccessibleDocument::characterRect(int offset) const {
  if (!isThere()) return {};
  const Position at = inText(offset);
  const QRectF here = view_.column_->caretInSight(at);
  const QRectF next = view_.column_->caretInSight(inText(at + 1));
  const bool sameLine = at + 1 < view_.column_->story().length() && next.top() == here.top();
  const qreal width = sameLine ? std::abs(next.left() - here.left()) : here.height() / 2;
  const qreal left = sameLine ? std::min(here.left(), next.left()) : here.left();
  const QRect rect = QRectF(left, here.top(), width, here.height()).toAlignedRect();
  return rect.translated(view_.viewport()->mapToGlobal(QPoint(0, 0)));
}

int AccessibleDocument::offsetAtPoint(const QPoint& point) const {
  return isThere() ? view_.column_->positionAt(view_.viewport()->mapFromGlobal(point)) : -1;
}

void AccessibleDocument::scrollToSubstring(int from, int to) {
  if (isThere()) view_.reveal({inText(from), inText(to)});
}

void installAccessibleDocuments() {
  static const bool installed = [] {
    QAccessible::installFactory([](const QString&, QObject* object) -> QAccessibleInterface* {
      auto* const view = dynamic_cast<DocumentView*>(object);
      return view != nullptr ? new AccessibleDocument(*view) : nullptr;
    });
    return true;
  }();
  static_cast<void>(installed);
}

}  // namespace pluvo::view
