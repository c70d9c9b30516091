#include "grid.h"

#include "forms/control.h"
#include "simple_mirrors.h"

#include <algorithm>

namespace pluvo::forms_win32 {

namespace {

bool isButtonOfLine(const Mirror& mirror) {
  return mirror.control().kind() == forms::ControlKind::commandButton && mirror.control().Cell().columns <= 0;
}

bool heads(const Mirror& mirror) {
  const auto* label = dynamic_cast<const forms::Label*>(&mirror.control());
  return label != nullptr && !label->IsLink();
}

}  // namespace

Grid::Grid(const std::vector<std::unique_ptr<Mirror>>& mirrors, const Look& look, bool withoutKept)
    : look_(look), places_(lineUp(mirrors)), grid_(itemsOf(places_, withoutKept), gap(), gap()) {}

std::vector<Grid::Items> Grid::lineUp(const std::vector<std::unique_ptr<Mirror>>& mirrors) {
  std::vector<Items> places;
  for (const auto& mirror : mirrors) {
    const bool joins = !places.empty() && isButtonOfLine(*mirror) && isButtonOfLine(*places.back().back());
    if (!joins) places.emplace_back();
    places.back().push_back(mirror.get());
  }
  return places;
}

std::vector<forms::GridItem> Grid::itemsOf(const std::vector<Items>& places, bool withoutKept) {
  std::vector<forms::GridItem> all;
  for (const Items& items : places) {
    const Mirror& first = *items.front();
    const auto heightFor = [&items](int width, bool least) {
      int height = 0;
      for (const Mirror* item : items)
        height = std::max(height, least ? item->leastHeightFor(width) : item->heightFor(width));
      return height;
    };
    const bool shown = std::ranges::any_of(items, [&](const Mirror* item) {
      return item->control().Visible() && !(withoutKept && item->control().StaysInSight());
    });
    all.push_back({first.control().Cell(), shown, first.grows(), heads(first), heightFor});
  }
  return all;
}

int Grid::leastWidth() const {
  return grid_.widthFor([this](std::size_t place) {
    int width = -gap();
    for (const Mirror* item : places_[place]) width += item->leastWidth() + gap();
    return width;
  }) + 2 * margin();
}

int Grid::heightFor(int width, bool least) const {
  return grid_.heightFor(width - 2 * margin(), least) + 2 * margin();
}

void Grid::arrange(int width, int height, int top) const {
  const std::vector<forms::GridPlace> all = grid_.arranged(width - 2 * margin(), height - 2 * margin());
  for (std::size_t i = 0; i < places_.size(); ++i) {
    const forms::GridPlace& place = all[i];
    if (place.width <= 0) continue;
    const int x = margin() + place.left;
    const int y = margin() - top + place.top;
    put(places_[i], {x, y, x + place.width, y + place.height});
  }
}

void Grid::put(const Items& items, const RECT& room) const {
  if (!isButtonOfLine(*items.front())) return items.front()->place(room);
  // To the right, the last outermost.
  LONG right = room.right;
  for (std::size_t item = items.size(); item-- > 0;) {
    if (!items[item]->control().Visible()) continue;
    const LONG wide = static_cast<ButtonMirror*>(items[item])->width();
    items[item]->place({right - wide, room.top, right, room.bottom});
    right -= wide + gap();
  }
}

}  // namespace pluvo::forms_win32
