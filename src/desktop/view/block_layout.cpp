#include "block_layout.h"

#include <QFontMetricsF>
#include <QTextBoundaryFinder>
#include <QTextLine>
#include <QTextOption>
#include <algorithm>
#include <limits>

namespace pluvo::view {

namespace {

/// A dash before an item of a list, whatever its number or bullet is.
void paintItemMark(QPainter& painter, const QTextLayout& layout, const QRectF& rect, QPointF at,
                   const QPalette& palette) {
  if (layout.lineCount() == 0) return;
  const QFontMetricsF metrics(layout.font());
  const qreal step = metrics.averageCharWidth() * 2;
  const bool rightToLeft = layout.textOption().textDirection() == Qt::RightToLeft;
  const qreal x = rightToLeft ? rect.right() + step / 2 : rect.left() - step;
  const qreal y = rect.top() + layout.lineAt(0).ascent() - metrics.strikeOutPos();
  painter.fillRect(QRectF(x, y, step / 2, std::max(metrics.lineWidth(), 1.0)).translated(at),
                   palette.color(QPalette::PlaceholderText));
}

}  // namespace

void BlockLayout::moveBy(Position growth) {
  for (Fragment& fragment : fragments_) {
    fragment.span = {fragment.span.from + growth, fragment.span.to + growth};
    fragment.shown.moveBy(growth);
  }
  end_ += growth;
}

void BlockLayout::paint(QPainter& painter, QPointF at, const QRectF& clip, Span selection,
                        const QPalette& palette) const {
  painter.setPen(QPen(palette.color(QPalette::Mid), 1));
  for (const QRectF& cell : cells_) {
    const QRectF border = cell.translated(at);
    if (border.intersects(clip)) painter.drawRect(border);
  }
  painter.setPen(palette.color(QPalette::Text));
  for (const Fragment& fragment : fragments_) {
    if (!fragment.rect.translated(at).adjusted(0, 0, 0, 1).intersects(clip)) continue;
    if (fragment.isItem) paintItemMark(painter, *fragment.layout, fragment.rect, at, palette);
    paintText(painter, fragment, at, clip, selection, palette);
  }
}

void BlockLayout::paintText(QPainter& painter, const Fragment& fragment, QPointF at, const QRectF& clip,
                            Span selection, const QPalette& palette) const {
  const QBrush& chosen = palette.brush(QPalette::Active, QPalette::Highlight);
  QList<QTextLayout::FormatRange> ranges;
  const int from = fragment.shown.shown(selection.from);
  const int to = selection.to >= fragment.span.to ? static_cast<int>(fragment.shown.text().size())
                                                  : fragment.shown.shown(selection.to);
  const bool touches = selection.from < fragment.span.to && selection.to > fragment.span.from;
  if (touches && from < to) {
    QTextCharFormat format;
    format.setBackground(chosen);
    format.setForeground(palette.brush(QPalette::Active, QPalette::HighlightedText));
    ranges.push_back({from, to - from, format});
  }
  fragment.layout->draw(&painter, at + fragment.at, ranges, clip);
  const Position mark = fragment.span.to - 1;
  if (!touches || selection.to <= mark || selection.from > mark || !fragment.hasMark) return;
  const QRectF there = caret(mark).translated(at);
  painter.fillRect(QRectF(there.left(), there.top(), there.height() * 0.3, there.height()), chosen);
}

int BlockLayout::lastPlace(const Fragment& fragment) {
  const auto end = static_cast<int>(fragment.shown.text().size());
  return fragment.goesOn ? fragment.layout->previousCursorPosition(end) : end;
}

Position BlockLayout::lastOf(const Fragment& fragment) {
  return fragment.shown.position(lastPlace(fragment));
}

std::size_t BlockLayout::indexOf(Position position) const {
  std::size_t found = 0;
  for (std::size_t i = 0; i < fragments_.size(); ++i) {
    if (fragments_[i].span.from <= position) found = i;
  }
  return found;
}

const BlockLayout::Fragment& BlockLayout::fragmentNear(QPointF point) const {
  const Fragment* nearest = &fragments_.front();
  qreal least = std::numeric_limits<qreal>::max();
  for (const Fragment& fragment : fragments_) {
    const QRectF& r = fragment.rect;
    const qreal dx = std::max({r.left() - point.x(), qreal{0}, point.x() - r.right()});
    const qreal dy = std::max({r.top() - point.y(), qreal{0}, point.y() - r.bottom()});
    const qreal distance = dx * dx + dy * dy;
    if (distance >= least) continue;
    least = distance;
    nearest = &fragment;
  }
  return *nearest;
}

Position BlockLayout::positionAt(QPointF point) const {
  const Fragment& fragment = fragmentNear(point);
  const QPointF local = point - fragment.at;
  for (int i = 0; i < fragment.layout->lineCount(); ++i) {
    const QTextLine line = fragment.layout->lineAt(i);
    const bool last = i + 1 == fragment.layout->lineCount();
    if (!last && local.y() >= fragment.layout->lineAt(i + 1).y()) continue;
    return fragment.shown.position(std::min(line.xToCursor(local.x()), lastPlace(fragment)));
  }
  return fragment.span.from;
}

QRectF BlockLayout::caret(Position position) const {
  const Fragment& fragment = fragmentOf(position);
  const int place = fragment.shown.shown(position);
  const QTextLine line = fragment.layout->lineForTextPosition(place);
  if (!line.isValid()) return {fragment.at, QSizeF(1, QFontMetricsF(fragment.layout->font()).height())};
  return {fragment.at.x() + line.cursorToX(place), fragment.at.y() + line.y(), 1, line.height()};
}

Span BlockLayout::wordAt(Position position) const {
  const Fragment& fragment = fragmentOf(position);
  const QString text = fragment.shown.text();
  QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text);
  const int place = fragment.shown.shown(position);
  finder.setPosition(std::min(place + 1, static_cast<int>(text.size())));
  auto from = static_cast<int>(finder.toPreviousBoundary());
  finder.setPosition(place);
  auto to = static_cast<int>(finder.toNextBoundary());
  if (from < 0) from = 0;
  if (to < 0) to = static_cast<int>(text.size());
  while (to < text.size() && text[to] == u' ') ++to;
  return {fragment.shown.position(from), fragment.shown.position(to)};
}

Position BlockLayout::before(Position position, QTextLayout::CursorMode mode) const {
  const std::size_t i = indexOf(position);
  const Fragment& fragment = fragments_[i];
  const int place = fragment.shown.shown(position);
  if (place > 0) return fragment.shown.position(fragment.layout->previousCursorPosition(place, mode));
  return i > 0 ? lastOf(fragments_[i - 1]) : kOutside;
}

Position BlockLayout::after(Position position, QTextLayout::CursorMode mode) const {
  const std::size_t i = indexOf(position);
  const Fragment& fragment = fragments_[i];
  const int place = fragment.shown.shown(position);
  if (place < fragment.shown.text().size())
    return fragment.shown.position(fragment.layout->nextCursorPosition(place, mode));
  return i + 1 < fragments_.size() ? fragments_[i + 1].span.from : kOutside;
}

Position BlockLayout::beside(Position position, bool left) const {
  const Fragment& fragment = fragmentOf(position);
  const int place = fragment.shown.shown(position);
  const int next =
      left ? fragment.layout->leftCursorPosition(place) : fragment.layout->rightCursorPosition(place);
  if (next != place) return fragment.shown.position(next);
  const bool backward = left == (fragment.layout->textOption().textDirection() != Qt::RightToLeft);
  return backward ? before(position, QTextLayout::SkipCharacters)
                  : after(position, QTextLayout::SkipCharacters);
}

Position BlockLayout::lineStart(Position position) const {
  const Fragment& fragment = fragmentOf(position);
  const QTextLine line = fragment.layout->lineForTextPosition(fragment.shown.shown(position));
  return line.isValid() ? fragment.shown.position(line.textStart()) : fragment.span.from;
}

Position BlockLayout::lineEnd(Position position) const {
  const Fragment& fragment = fragmentOf(position);
  const QTextLine line = fragment.layout->lineForTextPosition(fragment.shown.shown(position));
  if (!line.isValid()) return lastOf(fragment);
  const int end = line.textStart() + line.textLength();
  const bool last = end >= fragment.shown.text().size();
  return fragment.shown.position(last ? lastPlace(fragment) : end - 1);
}

}  // namespace pluvo::view
