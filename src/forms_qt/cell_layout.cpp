#include "cell_layout.h"

#include <QLabel>
#include <QWidget>
#include <algorithm>
#include <utility>

namespace pluvo::forms_qt {

namespace {

constexpr int kColumns = 12;

/// How wide it would be with all the room it likes.
int wish(const QLayoutItem& item) {
  // A label that may break its lines says so of any width.
  const auto* label = qobject_cast<const QLabel*>(const_cast<QLayoutItem&>(item).widget());  // NOLINT
  return label == nullptr ? item.sizeHint().width() : label->fontMetrics().size(0, label->text()).width();
}

}  // namespace

CellLayout::~CellLayout() = default;

void CellLayout::add(QWidget& widget, forms::Cell cell, bool grows, bool heads) {
  if (cell.columns <= 0) {
    int below = 0;
    for (const Place& place : places_) below = std::max(below, place.cell.row + place.cell.rows);
    cell = {below, 0, 1, kColumns};
  } else {
    inLines_ = false;
  }
  cell.column = std::clamp(cell.column, 0, kColumns - 1);
  cell.columns = std::clamp(cell.columns, 1, kColumns - cell.column);
  cell.rows = std::max(cell.rows, 1);
  addChildWidget(&widget);
  places_.push_back({std::unique_ptr<QLayoutItem>(new QWidgetItem(&widget)), cell, grows, heads});
  invalidate();
}

void CellLayout::addItem(QLayoutItem* item) {
  places_.push_back({std::unique_ptr<QLayoutItem>(item), {count(), 0, 1, kColumns}, false, false});
}

QLayoutItem* CellLayout::itemAt(int index) const {
  return index >= 0 && index < count() ? places_[static_cast<std::size_t>(index)].item.get() : nullptr;
}

QLayoutItem* CellLayout::takeAt(int index) {
  if (index < 0 || index >= count()) return nullptr;
  QLayoutItem* item = places_[static_cast<std::size_t>(index)].item.release();
  places_.erase(places_.begin() + index);
  return item;
}

Qt::Orientations CellLayout::expandingDirections() const {
  const bool grows = std::ranges::any_of(places_, &Place::grows);
  return grows ? Qt::Horizontal | Qt::Vertical : Qt::Orientations(Qt::Horizontal);
}

int CellLayout::gap(QStyle::PixelMetric metric, int share) const {
  const QWidget& page = *parentWidget();
  return std::max(page.style()->pixelMetric(metric, nullptr, &page), page.fontMetrics().height() * share / 4);
}

int CellLayout::columnGap() const { return gap(QStyle::PM_LayoutHorizontalSpacing, 3); }

int CellLayout::rowGap() const { return gap(QStyle::PM_LayoutVerticalSpacing, 2); }

int CellLayout::left(const forms::Cell& cell, int width) const {
  return (width + columnGap()) * cell.column / kColumns;
}

int CellLayout::widthOf(const forms::Cell& cell, int width) const {
  return (width + columnGap()) * (cell.column + cell.columns) / kColumns - columnGap() - left(cell, width);
}

int CellLayout::heightOf(const QLayoutItem& item, int width, bool least) {
  if (item.hasHeightForWidth()) return item.heightForWidth(width);
  return least ? item.minimumSize().height() : item.sizeHint().height();
}

std::vector<CellLayout::Row> CellLayout::rows(int width, bool least) const {
  int count = 0;
  for (const Place& place : places_) count = std::max(count, place.cell.row + place.cell.rows);
  std::vector<Row> rows(static_cast<std::size_t>(count));
  const auto row = [&](int at) -> Row& { return rows[static_cast<std::size_t>(at)]; };
  for (const Place& place : places_) {
    if (place.item->isEmpty()) continue;
    for (int at = 0; at < place.cell.rows; ++at) row(place.cell.row + at).used = true;
    Row& last = row(place.cell.row + place.cell.rows - 1);
    if (place.grows) last.weight = std::max(last.weight, place.cell.columns);
    if (place.cell.rows > 1) continue;
    const int height = heightOf(*place.item, widthOf(place.cell, width), least && place.grows);
    last.height = std::max(last.height, height);
    if (!place.grows) last.first = std::max(last.first, height);
    if (!place.heads) last.heading = false;
  }
  const int between = rowGap();
  const Row* above = nullptr;
  for (Row& each : rows) {
    if (!each.used) continue;
    if (each.height == 0) each.heading = false;
    if (above != nullptr) each.gap = above->heading ? between / 2 : each.heading ? between * 3 / 2 : between;
    above = &each;
  }
  for (const Place& place : places_) {
    if (place.item->isEmpty() || place.cell.rows == 1) continue;
    int there = 0;
    for (int at = 0; at < place.cell.rows; ++at) {
      there += row(place.cell.row + at).height;
      if (at > 0) there += row(place.cell.row + at).gap;
    }
    const int height = heightOf(*place.item, widthOf(place.cell, width), least && place.grows);
    Row& last = row(place.cell.row + place.cell.rows - 1);
    last.height += std::max(0, height - there);
  }
  return rows;
}

int CellLayout::total(int width, bool least) const {
  const QMargins margins = contentsMargins();
  int sum = margins.top() + margins.bottom();
  for (const Row& row : rows(width - margins.left() - margins.right(), least)) sum += row.gap + row.height;
  return sum;
}

int CellLayout::heightForWidth(int width) const { return total(width, false); }

int CellLayout::minimumHeightForWidth(int width) const { return total(width, true); }

template <class Width>
int CellLayout::widthFor(Width width) const {
  int unit = 0;
  const int between = columnGap();
  for (const Place& place : places_) {
    if (place.item->isEmpty()) continue;
    unit = std::max(unit, (width(*place.item) + between + place.cell.columns - 1) / place.cell.columns);
  }
  const QMargins margins = contentsMargins();
  return unit * kColumns - between + margins.left() + margins.right();
}

int CellLayout::leastWidth() const {
  const int width = widthFor([](const QLayoutItem& item) { return item.minimumSize().width(); });
  if (!inLines_) return width;
  // In the grid the columns decide; lines of their own are as long as they like, within reason.
  constexpr int kFewest = 34;
  constexpr int kMost = 64;
  const int letter = parentWidget()->fontMetrics().averageCharWidth();
  return std::max(width, widthFor([&](const QLayoutItem& item) {
                    return std::clamp(wish(item), kFewest * letter, kMost * letter);
                  }));
}

QSize CellLayout::minimumSize() const {
  const int width = leastWidth();
  return {width, minimumHeightForWidth(width)};
}

QSize CellLayout::sizeHint() const {
  const int width = leastWidth();
  return {width, heightForWidth(width)};
}

void CellLayout::setGeometry(const QRect& rect) {
  QLayout::setGeometry(rect);
  const QRect inside = rect.marginsRemoved(contentsMargins());
  std::vector<Row> rows = this->rows(inside.width(), false);
  int asked = 0;
  int weights = 0;
  for (const Row& row : rows) {
    asked += row.gap + row.height;
    weights += row.weight;
  }
  if (asked > inside.height()) {
    // Boxes give up what they can spare.
    const std::vector<Row> least = this->rows(inside.width(), true);
    int spare = asked - inside.height();
    for (std::size_t at = rows.size(); at-- > 0 && spare > 0;) {
      const int given = std::min(spare, rows[at].height - least[at].height);
      rows[at].height -= given;
      spare -= given;
    }
  } else if (weights > 0) {
    int left = inside.height() - asked;
    for (Row& row : rows) {
      if (row.weight == 0) continue;
      const int share = left * row.weight / weights;
      row.height += share;
      left -= share;
      weights -= row.weight;
    }
  }
  std::vector<int> tops;
  int y = inside.top();
  for (const Row& row : rows) {
    y += row.gap;
    tops.push_back(y);
    y += row.height;
  }
  for (const Place& place : places_) {
    if (place.item->isEmpty()) continue;
    const auto first = static_cast<std::size_t>(place.cell.row);
    const auto last = first + static_cast<std::size_t>(place.cell.rows) - 1;
    const int width = widthOf(place.cell, inside.width());
    const int room = tops[last] + rows[last].height - tops[first];
    int height = room;
    int top = tops[first];
    if (!place.grows) {
      const int line = place.cell.rows == 1 ? rows[first].first : room;
      height = std::min(line, heightOf(*place.item, width, false));
      // What is above a box stands close to it.
      top += rows[first].heading ? line - height : (line - height) / 2;
    }
    place.item->setGeometry({inside.left() + left(place.cell, inside.width()), top, width, height});
  }
}

}  // namespace pluvo::forms_qt
