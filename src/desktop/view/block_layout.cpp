#include "block_layout.h"

#include <QFontMetricsF>
#include <QTextBoundaryFinder>
#include <QTextLine>
#include <QTextOption>
#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace pluvo::view {

namespace {

/// Tables nested deeper than this are shown as plain paragraphs.
constexpr int kDeepest = 16;
constexpr qreal kCellPadding = 6;
constexpr qreal kNarrowest = 24;

QTextOption optionOf(const formats::Appearance& look, bool rightToLeft, const QFont& font) {
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  option.setTextDirection(rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
  option.setTabStopDistance(QFontMetricsF(font).averageCharWidth() * 8);
  using Alignment = formats::Appearance::Alignment;
  const bool atLeft = (look.alignment == Alignment::start) != rightToLeft;
  option.setAlignment(look.alignment == Alignment::centre ? Qt::AlignHCenter
                      : atLeft                            ? Qt::AlignLeft
                                                          : Qt::AlignRight);
  return option;
}

}  // namespace

BlockLayout::BlockLayout(const model::Model& model, Span block, bool isRow, text::View view,
                         const Looks& looks, qreal width)
    : model_(model), view_(view), looks_(looks) {
  qreal bottom = 0;
  if (isRow) {
    std::int32_t table = model.structure().valueAt(block.to - 1).table;
    bottom = addRow(block, table, {0, width}, 0, 0);
    const bool isLast = block.to == model.length() || model.structure().valueAt(block.to).table != table;
    if (isLast) bottom += gapBelow();
  } else {
    bottom = addParagraph(block, {0, width}, 0);
  }
  height_ = static_cast<int>(std::ceil(bottom));
}

qreal BlockLayout::gapBelow() const { return QFontMetricsF(looks_.font).height() * 0.4; }

/// Returns where the next thing goes.
qreal BlockLayout::addParagraph(Span span, Column column, qreal top) {
  const bool hasMark = model_.endsParagraph(span.to - 1);
  ShownText shown(model_, span, view_);
  const bool markShown = hasMark && text::isVisible(model_.visibility().valueAt(span.to - 1), view_);
  if (shown.text().isEmpty() && hasMark && !markShown) return top;

  const formats::Appearance look = looks_.of(model_, span.to - 1);
  const QFont font = looks_.paragraphFont(look);
  auto layout = std::make_unique<QTextLayout>(shown.text(), font);
  layout->setCacheEnabled(true);
  // Where the format does not tell, the text does.
  const bool byText = looks_.appearance.length() == 0 && shown.text().isRightToLeft();
  layout->setTextOption(optionOf(look, look.rightToLeft || byText, font));
  layout->setFormats(looks_.formats(model_, shown, look));
  const QFontMetricsF metrics(font);
  const qreal indent = look.heading == 0 ? look.listLevel * metrics.averageCharWidth() * 3 : 0;
  column.width -= indent;
  if (!look.rightToLeft) column.left += indent;
  if (look.heading != 0) top += metrics.height() * 0.5;
  qreal height = 0;
  layout->beginLayout();
  for (QTextLine line = layout->createLine(); line.isValid(); line = layout->createLine()) {
    line.setLeadingIncluded(true);
    line.setLineWidth(std::max(column.width, kNarrowest));
    line.setPosition({0, height});
    height += line.height() * 1.12;
  }
  layout->endLayout();
  const QRectF rect(column.left, top, column.width, height);
  const bool isItem = indent > 0;
  fragments_.push_back({span, std::move(shown), std::move(layout), rect.topLeft(), rect, isItem});
  return top + height + (hasMark ? gapBelow() : 0);
}

/// As the document has them, so far as it tells of every cell; the row takes all the room there is.
std::vector<qreal> BlockLayout::widthsOf(const std::vector<Span>& cells, qreal room) const {
  std::vector<qreal> widths;
  qreal all = 0;
  bool told = true;
  for (const Span& cell : cells) {
    widths.push_back(looks_.of(model_, cell.to - 1).cellWidth);
    told = told && widths.back() > 0;
    all += widths.back();
  }
  for (qreal& width : widths)
    width = std::max(told ? room * width / all : room / static_cast<qreal>(cells.size()), kNarrowest);
  return widths;
}

qreal BlockLayout::addRow(Span row, std::int32_t table, Column column, qreal top, int depth) {
  std::vector<Span> cells;
  Position from = row.from;
  for (const auto& run : model_.structure().runs(row.from, row.to)) {
    if (run.value.table != table || run.value.rowMark) continue;
    for (Position at = run.from; at < run.to; ++at) {
      if (!model_.isCellMark(at)) continue;
      cells.push_back({from, at + 1});
      from = at + 1;
    }
  }
  if (cells.empty()) cells.push_back({row.from, row.to});
  const std::vector<qreal> widths = widthsOf(cells, column.width);
  qreal left = column.left;
  qreal bottom = top;
  const std::size_t firstBorder = cells_.size();
  for (std::size_t i = 0; i < cells.size(); ++i) {
    cells_.emplace_back(left, top, widths[i], 0);
    const Column inner{left + kCellPadding, std::max(widths[i] - 2 * kCellPadding, kNarrowest)};
    left += widths[i];
    bottom = std::max(bottom, addCell(cells[i], table, inner, top + kCellPadding * 0.7, depth));
  }
  std::size_t border = firstBorder;
  for (; border < cells_.size(); ++border) {
    if (cells_[border].height() == 0) cells_[border].setHeight(bottom - top);
  }
  return bottom;
}

/// The paragraphs and tables of a cell, one below the other.
qreal BlockLayout::addCell(Span cell, std::int32_t table, Column column, qreal top, int depth) {
  Position from = cell.from;
  const auto paragraphsTo = [&](Position to) {
    for (Position at = from; at < to; ++at) {
      if (!model_.endsParagraph(at)) continue;
      top = addParagraph({from, at + 1}, column, top);
      from = at + 1;
    }
    if (from < to) top = addParagraph({from, to}, column, top);
    from = to;
  };
  const auto& tables = model_.tables();
  for (const auto& run : model_.structure().runs(cell.from, cell.to)) {
    if (depth >= kDeepest || !run.value.rowMark) continue;
    const std::int32_t inner = run.value.table;
    if (inner == table || tables[static_cast<std::size_t>(inner)].parent != table) continue;
    for (Position mark = run.from; mark < run.to; ++mark) {
      // Paragraphs in front of the inner table's row lie in this cell itself.
      Position rowStart = from;
      while (rowStart < mark && model_.structure().valueAt(rowStart).table == table)
        rowStart = std::min(model_.structure().runEnd(rowStart), mark);
      paragraphsTo(rowStart);
      top = addRow({rowStart, mark + 1}, inner, column, top, depth + 1);
      from = mark + 1;
    }
  }
  paragraphsTo(cell.to);
  return top;
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
    if (fragment.isItem) paintItemMark(painter, fragment, at, palette);
    QList<QTextLayout::FormatRange> chosen;
    const int from = fragment.shown.shown(selection.from);
    const int to = selection.to >= fragment.span.to ? static_cast<int>(fragment.shown.text().size())
                                                    : fragment.shown.shown(selection.to);
    const bool touches = selection.from < fragment.span.to && selection.to > fragment.span.from;
    if (touches && from < to) {
      QTextCharFormat format;
      format.setBackground(palette.brush(QPalette::Active, QPalette::Highlight));
      format.setForeground(palette.brush(QPalette::Active, QPalette::HighlightedText));
      chosen.push_back({from, to - from, format});
    }
    fragment.layout->draw(&painter, at + fragment.at, chosen, clip);
    const Position mark = fragment.span.to - 1;
    if (touches && selection.to > mark && selection.from <= mark && model_.endsParagraph(mark)) {
      const QRectF caretRect = caret(mark).translated(at);
      painter.fillRect(
          QRectF(caretRect.left(), caretRect.top(), caretRect.height() * 0.3, caretRect.height()),
          palette.brush(QPalette::Active, QPalette::Highlight));
    }
  }
}

/// A dash before an item of a list, whatever its number or bullet is.
void BlockLayout::paintItemMark(QPainter& painter, const Fragment& fragment, QPointF at,
                                const QPalette& palette) {
  if (fragment.layout->lineCount() == 0) return;
  const QFontMetricsF metrics(fragment.layout->font());
  const qreal step = metrics.averageCharWidth() * 2;
  const bool rightToLeft = fragment.layout->textOption().textDirection() == Qt::RightToLeft;
  const qreal x = rightToLeft ? fragment.rect.right() + step / 2 : fragment.rect.left() - step;
  const qreal y = fragment.rect.top() + fragment.layout->lineAt(0).ascent() - metrics.strikeOutPos();
  painter.fillRect(QRectF(x, y, step / 2, std::max(metrics.lineWidth(), 1.0)).translated(at),
                   palette.color(QPalette::PlaceholderText));
}

Position BlockLayout::lastOf(const Fragment& fragment) {
  return fragment.shown.position(static_cast<int>(fragment.shown.text().size()));
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
    return fragment.shown.position(line.xToCursor(local.x()));
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
  return fragment.shown.position(last ? end : end - 1);
}

}  // namespace pluvo::view
