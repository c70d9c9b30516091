#include "block_layout.h"

#include <QFontMetricsF>
#include <QTextBoundaryFinder>
#include <QTextLine>
#include <algorithm>
#include <limits>

/// Which place of a block stands where, and which come next to it.
namespace pluvo::view {

int BlockLayout::lastPlace(const Fragment& fragment) const {
  const auto end = static_cast<int>(fragment.shown.text().size());
  return goesOn(fragment.span) ? fragment.layout->previousCursorPosition(end) : end;
}

Position BlockLayout::lastOf(const Fragment& fragment) const {
  return fragment.shown.position(lastPlace(fragment));
}

Position BlockLayout::lastPosition() const { return lastOf(fragments_.back()); }

std::size_t BlockLayout::indexOf(Position position) const {
  std::size_t found = 0;
  for (std::size_t i = 0; i < fragments_.size(); ++i) {
    if (fragments_[i].span.from <= position) found = i;
  }
  return found;
}

const BlockLayout::Fragment& BlockLayout::fragmentOf(Position position) const {
  return fragments_[indexOf(position)];
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

Span BlockLayout::paragraphAt(Position position) const { return fragmentOf(position).span; }

Position BlockLayout::before(Position position, QTextLayout::CursorMode mode) const {
  const std::size_t i = indexOf(position);
  const Fragment& fragment = fragments_[i];
  const int place = fragment.shown.shown(position);
  if (place > 0) return fragment.shown.position(fragment.layout->previousCursorPosition(place, mode));
  return i > 0 ? lastOf(fragments_[i - 1]) : kOutside;
}

Position BlockLayout::behind(Position position, QTextLayout::CursorMode mode) const {
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
                  : behind(position, QTextLayout::SkipCharacters);
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
