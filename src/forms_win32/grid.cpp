#include "grid.h"

#include "forms/control.h"
#include "simple_mirrors.h"

#include <algorithm>

namespace pluvo::forms_win32 {

namespace {

constexpr int kColumns = 12;

bool isButton(const Mirror& mirror) { return mirror.control().kind() == forms::ControlKind::commandButton; }

bool heads(const Mirror& mirror) {
  const auto* label = dynamic_cast<const forms::Label*>(&mirror.control());
  return label != nullptr && !label->IsLink();
}

std::size_t at(int row) { return static_cast<std::size_t>(row); }

}  // namespace

bool Grid::Place::shown() const {
  return std::ranges::any_of(items, [](const Mirror* item) { return item->control().Visible(); });
}

Grid::Grid(const std::vector<std::unique_ptr<Mirror>>& mirrors, const Look& look) : look_(look) {
  int below = 0;
  for (const auto& mirror : mirrors) {
    forms::Cell cell = mirror->control().Cell();
    if (cell.columns <= 0) {
      Place* last = places_.empty() ? nullptr : &places_.back();
      const bool joins = isButton(*mirror) && last != nullptr && isButton(*last->items.back()) &&
                         last->items.back()->control().Cell().columns <= 0;
      if (joins) {
        last->items.push_back(mirror.get());
        continue;
      }
      cell = {below, 0, 1, kColumns};
    }
    cell.column = std::clamp(cell.column, 0, kColumns - 1);
    cell.columns = std::clamp(cell.columns, 1, kColumns - cell.column);
    cell.rows = std::max(cell.rows, 1);
    below = std::max(below, cell.row + cell.rows);
    places_.push_back({{mirror.get()}, cell});
  }
}

int Grid::left(const forms::Cell& cell, int width) const { return (width + gap()) * cell.column / kColumns; }

int Grid::widthOf(const forms::Cell& cell, int width) const {
  return (width + gap()) * (cell.column + cell.columns) / kColumns - gap() - left(cell, width);
}

int Grid::leastWidth() const {
  int unit = 0;
  for (const Place& place : places_) {
    int inner = 0;
    for (const Mirror* item : place.items) inner += item->leastWidth() + gap();
    unit = std::max(unit, (inner + place.cell.columns - 1) / place.cell.columns);
  }
  return unit * kColumns - gap() + 2 * margin();
}

int Grid::heightOf(const Place& place, int width, bool least) {
  int height = 0;
  for (const Mirror* item : place.items) {
    const bool shrinks = least && item->grows();
    height = std::max(height, shrinks ? item->leastHeightFor(width) : item->heightFor(width));
  }
  return height;
}

std::vector<Grid::Row> Grid::rows(int width, bool least) const {
  int count = 0;
  for (const Place& place : places_) count = std::max(count, place.cell.row + place.cell.rows);
  std::vector<Row> rows(at(count));
  for (const Place& place : places_) {
    if (!place.shown()) continue;
    for (int row = 0; row < place.cell.rows; ++row) rows[at(place.cell.row + row)].used = true;
    Row& last = rows[at(place.cell.row + place.cell.rows - 1)];
    if (place.grows()) last.weight = std::max(last.weight, place.cell.columns);
    if (place.cell.rows > 1) continue;
    const int height = heightOf(place, widthOf(place.cell, width), least);
    last.height = std::max(last.height, height);
    if (!place.grows()) last.line = std::max(last.line, height);
    if (!heads(*place.items.front())) last.heading = false;
  }
  const Row* above = nullptr;
  for (Row& row : rows) {
    if (!row.used) continue;
    if (row.height == 0) row.heading = false;
    // A heading is nearer to what it heads than to what stands above it.
    if (above != nullptr && above->heading != row.heading) {
      row.gap = above->heading ? gap() / 2 : gap() + gap() / 2;
    } else if (above != nullptr) {
      row.gap = gap();
    }
    above = &row;
  }
  for (const Place& place : places_) {
    if (!place.shown() || place.cell.rows == 1) continue;
    int there = 0;
    for (int row = place.cell.row; row < place.cell.row + place.cell.rows; ++row)
      there += rows[at(row)].height + (row > place.cell.row ? rows[at(row)].gap : 0);
    Row& last = rows[at(place.cell.row + place.cell.rows - 1)];
    last.height += std::max(0, heightOf(place, widthOf(place.cell, width), least) - there);
  }
  return rows;
}

int Grid::heightFor(int width, bool least) const {
  int sum = 2 * margin();
  for (const Row& row : rows(width - 2 * margin(), least)) sum += row.gap + row.height;
  return sum;
}

void Grid::arrange(int width, int height, int top) const {
  const int inside = width - 2 * margin();
  std::vector<Row> rows = this->rows(inside, false);
  int left = height - 2 * margin();
  int weights = 0;
  for (const Row& row : rows) {
    left -= row.gap + row.height;
    weights += row.weight;
  }
  if (left < 0) {
    // Boxes give up what they can spare.
    const std::vector<Row> least = this->rows(inside, true);
    for (std::size_t row = rows.size(); row-- > 0 && left < 0;) {
      const int given = std::min(-left, rows[row].height - least[row].height);
      rows[row].height -= given;
      left += given;
    }
  } else {
    for (Row& row : rows) {
      if (row.weight == 0) continue;
      const int share = left * row.weight / weights;
      row.height += share;
      left -= share;
      weights -= row.weight;
    }
  }
  std::vector<int> tops;
  int y = margin() - top;
  for (const Row& row : rows) {
    y += row.gap;
    tops.push_back(y);
    y += row.height;
  }
  for (const Place& place : places_) {
    if (!place.shown()) continue;
    const std::size_t first = at(place.cell.row);
    const std::size_t last = first + at(place.cell.rows) - 1;
    const int wide = widthOf(place.cell, inside);
    const int room = tops[last] + rows[last].height - tops[first];
    int high = room;
    int from = tops[first];
    if (!place.grows()) {
      const int line = place.cell.rows == 1 ? rows[first].line : room;
      high = std::min(line, heightOf(place, wide, false));
      from += (line - high) / 2;
    }
    const int x = margin() + this->left(place.cell, inside);
    put(place, {x, from, x + wide, from + high});
  }
}

void Grid::put(const Place& place, const RECT& room) const {
  if (!isButton(*place.items.front()) || place.items.front()->control().Cell().columns > 0)
    return place.items.front()->place(room);
  // To the right, the last outermost.
  LONG right = room.right;
  for (std::size_t item = place.items.size(); item-- > 0;) {
    if (!place.items[item]->control().Visible()) continue;
    const LONG wide = static_cast<ButtonMirror*>(place.items[item])->width();
    place.items[item]->place({right - wide, room.top, right, room.bottom});
    right -= wide + gap();
  }
}

}  // namespace pluvo::forms_win32
