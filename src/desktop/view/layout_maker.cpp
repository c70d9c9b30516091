#include "layout_maker.h"

#include <QFontMetricsF>
#include <QTextLine>
#include <QTextOption>
#include <algorithm>
#include <cmath>
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

std::unique_ptr<BlockLayout> LayoutMaker::layOut(Span block, bool isRow, qreal width) {
  made_ = std::make_unique<BlockLayout>();
  made_->end_ = block.to;
  qreal bottom = 0;
  if (isRow) {
    std::int32_t table = story_.structure().valueAt(block.to - 1).table;
    bottom = addRow(block, table, {0, width}, 0, 0);
    const bool isLast = block.to == story_.length() || story_.structure().valueAt(block.to).table != table;
    if (isLast) bottom += gapBelow();
  } else {
    if (goesOn(block)) made_->end_ = lineStartAtEnd(block, {0, width});
    bottom = addParagraph({block.from, made_->end_}, {0, width}, 0);
  }
  made_->height_ = static_cast<int>(std::ceil(bottom));
  return std::move(made_);
}

qreal LayoutMaker::gapBelow() const { return QFontMetricsF(looks_.font).height() * 0.4; }

/// Whether the paragraph has begun before it.
bool LayoutMaker::continues(Span span) const { return span.from > 0 && !story_.endsParagraph(span.from - 1); }

/// Whether the paragraph goes on after it.
bool LayoutMaker::goesOn(Span span) const {
  return !story_.endsParagraph(span.to - 1) && span.to < story_.length();
}

/// Where the line begins that holds the end of a part of a paragraph. Later text decides where lines break.
Position LayoutMaker::lineStartAtEnd(Span part, Column column) const {
  constexpr Position kAhead = 1024;
  const Position most = std::min(part.to + kAhead, story_.length());
  Position to = part.to;
  while (to < most && !story_.endsParagraph(to)) ++to;
  const std::optional<Fragment> ahead = inLines({part.from, to}, column);
  if (!ahead) return part.to;
  const QTextLine line = ahead->layout->lineForTextPosition(ahead->shown.shown(part.to));
  if (!line.isValid() || line.textStart() == 0) return part.to;
  return std::min(ahead->shown.position(line.textStart()), part.to);
}

/// A paragraph, or a part of one, in lines from the top; nothing where none of it is shown.
std::optional<LayoutMaker::Fragment> LayoutMaker::inLines(Span span, Column column) const {
  const bool hasMark = story_.endsParagraph(span.to - 1);
  ShownText shown(story_, span, view_);
  const bool endShown =
      hasMark ? text::isVisible(story_.visibility().valueAt(span.to - 1), view_) : !goesOn(span);
  if (shown.text().isEmpty() && !endShown) return std::nullopt;

  const formats::Appearance look = looks_.of(story_, span.to - 1);
  const QFont font = looks_.paragraphFont(look);
  auto layout = std::make_unique<QTextLayout>(shown.text(), font);
  layout->setCacheEnabled(true);
  // Where the format does not tell, the text does.
  const bool byText = looks_.appearance.length() == 0 && shown.text().isRightToLeft();
  layout->setTextOption(optionOf(look, look.rightToLeft || byText, font));
  layout->setFormats(looks_.formats(story_, shown, look));
  const QFontMetricsF metrics(font);
  const qreal indent = look.heading == 0 ? look.listLevel * metrics.averageCharWidth() * 3 : 0;
  column.width -= indent;
  if (!look.rightToLeft) column.left += indent;
  const bool begins = !continues(span);
  const qreal top = look.heading != 0 && begins ? metrics.height() * 0.5 : 0;
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
  const bool isItem = indent > 0 && begins;
  return Fragment{span, std::move(shown), std::move(layout), rect.topLeft(),
                  rect, isItem,           hasMark,           goesOn(span)};
}

/// Returns where the next thing goes.
qreal LayoutMaker::addParagraph(Span span, Column column, qreal top) {
  std::optional<Fragment> fragment = inLines(span, column);
  if (!fragment) return top;
  fragment->rect.translate(0, top);
  fragment->at = fragment->rect.topLeft();
  const qreal bottom = fragment->rect.bottom();
  made_->fragments_.push_back(std::move(*fragment));
  return bottom + (story_.endsParagraph(span.to - 1) ? gapBelow() : 0);
}

/// As the document has them, so far as it tells of every cell; the row takes all the room there is.
std::vector<qreal> LayoutMaker::widthsOf(const std::vector<Span>& cells, qreal room) const {
  std::vector<qreal> widths;
  qreal all = 0;
  bool told = true;
  for (const Span& cell : cells) {
    widths.push_back(looks_.of(story_, cell.to - 1).cellWidth);
    told = told && widths.back() > 0;
    all += widths.back();
  }
  for (qreal& width : widths)
    width = std::max(told ? room * width / all : room / static_cast<qreal>(cells.size()), kNarrowest);
  return widths;
}

qreal LayoutMaker::addRow(Span row, std::int32_t table, Column column, qreal top, int depth) {
  std::vector<Span> cells;
  Position from = row.from;
  for (const auto& run : story_.structure().runs(row.from, row.to)) {
    if (run.value.table != table || run.value.rowMark) continue;
    for (Position at = run.from; at < run.to; ++at) {
      if (!story_.isCellMark(at)) continue;
      cells.push_back({from, at + 1});
      from = at + 1;
    }
  }
  if (cells.empty()) cells.push_back({row.from, row.to});
  const std::vector<qreal> widths = widthsOf(cells, column.width);
  qreal left = column.left;
  qreal bottom = top;
  const std::size_t firstBorder = made_->cells_.size();
  for (std::size_t i = 0; i < cells.size(); ++i) {
    made_->cells_.emplace_back(left, top, widths[i], 0);
    const Column inner{left + kCellPadding, std::max(widths[i] - 2 * kCellPadding, kNarrowest)};
    left += widths[i];
    bottom = std::max(bottom, addCell(cells[i], table, inner, top + kCellPadding * 0.7, depth));
  }
  std::size_t border = firstBorder;
  for (; border < made_->cells_.size(); ++border) {
    if (made_->cells_[border].height() == 0) made_->cells_[border].setHeight(bottom - top);
  }
  return bottom;
}

/// The paragraphs and tables of a cell, one below the other.
qreal LayoutMaker::addCell(Span cell, std::int32_t table, Column column, qreal top, int depth) {
  Position from = cell.from;
  const auto paragraphsTo = [&](Position to) {
    for (Position at = from; at < to; ++at) {
      if (!story_.endsParagraph(at)) continue;
      top = addParagraph({from, at + 1}, column, top);
      from = at + 1;
    }
    if (from < to) top = addParagraph({from, to}, column, top);
    from = to;
  };
  const auto& tables = story_.tables();
  for (const auto& run : story_.structure().runs(cell.from, cell.to)) {
    if (depth >= kDeepest || !run.value.rowMark) continue;
    const std::int32_t inner = run.value.table;
    if (inner == table || tables[static_cast<std::size_t>(inner)].parent != table) continue;
    for (Position mark = run.from; mark < run.to; ++mark) {
      // Paragraphs in front of the inner table's row lie in this cell itself.
      Position rowStart = from;
      while (rowStart < mark && story_.structure().valueAt(rowStart).table == table)
        rowStart = std::min(story_.structure().runEnd(rowStart), mark);
      paragraphsTo(rowStart);
      top = addRow({rowStart, mark + 1}, inner, column, top, depth + 1);
      from = mark + 1;
    }
  }
  paragraphsTo(cell.to);
  return top;
}

}  // namespace pluvo::view
