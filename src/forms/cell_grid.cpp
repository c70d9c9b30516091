#include "forms/cell_grid.h"

#include <algorithm>
#include <utility>

namespace pluvo::forms {

namespace {

constexpr int kColumns = 12;

std::size_t at(int row) { return static_cast<std::size_t>(row); }
std::size_t firstRow(const Cell& cell) { return at(cell.row); }
std::size_t lastRow(const Cell& cell) { return at(cell.row + cell.rows - 1); }

bool isLeft(const Cell& cell) { return cell.column + cell.columns <= kColumns / 2; }
bool isRight(const Cell& cell) { return cell.column >= kColumns / 2; }

/// Where to divide a row in which a cell stands across the middle. Before that cell, or after it where it is
/// the first; nowhere where it is the last.
int middleOf(const std::vector<Cell>& cells, int row) {
  int middle = kColumns;
  bool isFirst = true;
  bool isLast = true;
  const auto stands = [row](const Cell& cell) { return cell.columns > 0 && cell.row == row; };
  for (const Cell& across : cells) {
    if (!stands(across) || isLeft(across) || isRight(across)) continue;
    const int end = across.column + across.columns;
    for (const Cell& cell : cells) {
      if (!stands(cell)) continue;
      isFirst = isFirst && cell.column >= across.column;
      isLast = isLast && cell.column < end;
    }
    middle = isFirst ? end : across.column;
  }
  return isLast ? kColumns : middle;
}

/// The columns from one to the other become all there are.
void widen(Cell& cell, int from, int to) {
  const int room = to - from;
  if (room <= 0) return;
  const auto scaled = [&](int column) { return ((column - from) * kColumns + room / 2) / room; };
  const int end = scaled(cell.column + cell.columns);
  cell.column = scaled(cell.column);
  cell.columns = end - cell.column;
}

}  // namespace

std::vector<Cell> inOneColumn(std::vector<Cell> cells) {
  const std::vector<Cell> wide = cells;
  int rows = 0;
  for (const Cell& cell : wide) rows = std::max(rows, cell.row + cell.rows);
  std::vector<bool> across(at(rows));
  std::vector<bool> joined(at(rows));  // with the row below
  for (const Cell& cell : wide) {
    if (cell.columns <= 0) continue;
    for (int row = cell.row; row < cell.row + cell.rows; ++row) {
      if (!isLeft(cell) && !isRight(cell)) across[at(row)] = true;
      if (row + 1 < cell.row + cell.rows) joined[at(row)] = true;
    }
  }
  int added = 0;
  for (int from = 0, to = 0; from < rows; from = to) {
    bool flows = false;
    for (to = from; to < rows && !across[at(to)]; ++to) flows = flows || joined[at(to)];
    if (!flows) to = from + 1;
    const int middle = across[at(from)] ? middleOf(wide, from) : kColumns / 2;
    bool hasRight = false;
    for (std::size_t i = 0; i < wide.size(); ++i) {
      Cell& cell = cells[i];
      if (wide[i].columns <= 0 || wide[i].row < from || wide[i].row >= to) continue;
      const bool isBelow = wide[i].column >= middle;
      hasRight = hasRight || isBelow;
      cell.row += added + (isBelow ? to - from : 0);
      widen(cell, isBelow ? middle : 0, isBelow ? kColumns : middle);
    }
    if (hasRight) added += to - from;
  }
  return cells;
}

CellGrid::CellGrid(std::vector<GridItem> items, int columnGap, int rowGap)
    : items_(std::move(items)), columnGap_(columnGap), rowGap_(rowGap) {
  int below = 0;
  for (GridItem& item : items_) {
    Cell& cell = item.cell;
    if (cell.columns <= 0) cell = {below, 0, 1, kColumns};
    cell.column = std::clamp(cell.column, 0, kColumns - 1);
    cell.columns = std::clamp(cell.columns, 1, kColumns - cell.column);
    cell.rows = std::max(cell.rows, 1);
    below = std::max(below, cell.row + cell.rows);
  }
}

int CellGrid::left(const Cell& cell, int width) const {
  return (width + columnGap_) * cell.column / kColumns;
}

int CellGrid::widthOf(const Cell& cell, int width) const {
  return (width + columnGap_) * (cell.column + cell.columns) / kColumns - columnGap_ - left(cell, width);
}

int CellGrid::heightOf(const GridItem& item, int width, bool least) const {
  return item.heightFor(widthOf(item.cell, width), least && item.grows);
}

int CellGrid::widthFor(const std::function<int(std::size_t item)>& wanted) const {
  int unit = 0;
  for (std::size_t i = 0; i < items_.size(); ++i) {
    const int columns = items_[i].cell.columns;
    if (items_[i].shown) unit = std::max(unit, (wanted(i) + columnGap_ + columns - 1) / columns);
  }
  return unit * kColumns - columnGap_;
}

std::vector<CellGrid::Row> CellGrid::rows(int width, bool least) const {
  std::size_t count = 0;
  for (const GridItem& item : items_) count = std::max(count, lastRow(item.cell) + 1);
  std::vector<Row> rows(count);
  for (const GridItem& item : items_) {
    if (!item.shown) continue;
    for (std::size_t row = firstRow(item.cell); row <= lastRow(item.cell); ++row) rows[row].used = true;
    Row& last = rows[lastRow(item.cell)];
    if (item.grows) last.weight = std::max(last.weight, item.cell.columns);
    if (item.cell.rows > 1) continue;
    const int height = heightOf(item, width, least);
    last.height = std::max(last.height, height);
    if (!item.grows) last.line = std::max(last.line, height);
    if (!item.heads) last.heading = false;
  }
  addGaps(rows);
  for (const GridItem& item : items_) {
    if (!item.shown || item.cell.rows == 1) continue;
    int there = 0;
    for (std::size_t row = firstRow(item.cell); row <= lastRow(item.cell); ++row)
      there += rows[row].height + (row > firstRow(item.cell) ? rows[row].gap : 0);
    rows[lastRow(item.cell)].height += std::max(0, heightOf(item, width, least) - there);
  }
  return rows;
}

void CellGrid::addGaps(std::vector<Row>& rows) const {
  const Row* above = nullptr;
  for (Row& row : rows) {
    if (!row.used) continue;
    if (row.height == 0) row.heading = false;
    if (above != nullptr) row.gap = above->heading ? rowGap_ / 2 : row.heading ? rowGap_ * 3 / 2 : rowGap_;
    above = &row;
  }
}

int CellGrid::heightFor(int width, bool least) const {
  int sum = 0;
  for (const Row& row : rows(width, least)) sum += row.gap + row.height;
  return sum;
}

void CellGrid::share(std::vector<Row>& rows, int width, int height) const {
  int left = height;
  int weights = 0;
  for (const Row& row : rows) {
    left -= row.gap + row.height;
    weights += row.weight;
  }
  if (left < 0) {
    const std::vector<Row> least = this->rows(width, true);
    for (std::size_t row = rows.size(); row-- > 0 && left < 0;) {
      const int given = std::min(-left, rows[row].height - least[row].height);
      rows[row].height -= given;
      left += given;
    }
    return;
  }
  for (Row& row : rows) {
    if (weights == 0) break;
    const int part = left * row.weight / weights;
    row.height += part;
    left -= part;
    weights -= row.weight;
  }
}

std::vector<GridPlace> CellGrid::arranged(int width, int height) const {
  std::vector<Row> rows = this->rows(width, false);
  share(rows, width, height);
  std::vector<int> tops;
  int y = 0;
  for (const Row& row : rows) {
    y += row.gap;
    tops.push_back(y);
    y += row.height;
  }
  std::vector<GridPlace> places(items_.size());
  for (std::size_t i = 0; i < items_.size(); ++i) {
    const GridItem& item = items_[i];
    if (!item.shown) continue;
    const std::size_t first = firstRow(item.cell);
    const std::size_t last = lastRow(item.cell);
    const int room = tops[last] + rows[last].height - tops[first];
    GridPlace& place = places[i];
    place = {left(item.cell, width), tops[first], widthOf(item.cell, width), room};
    if (item.grows) continue;
    const int line = item.cell.rows == 1 ? rows[first].line : room;
    place.height = std::min(line, heightOf(item, width, false));
    const int over = line - place.height;
    // A label above a box stands close to it.
    place.top += rows[first].heading ? over : over / 2;
  }
  return places;
}

}  // namespace pluvo::forms
