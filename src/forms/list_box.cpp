#include "forms/list_box.h"

namespace pluvo::forms {

void ListBox::items(std::vector<std::u16string> texts) {
  rows_.clear();
  rows_.reserve(texts.size());
  for (std::u16string& text : texts) rows_.push_back({std::move(text), false});
  changed.raise();
}

void ListBox::retain(const std::function<bool(bool selected)>& passes) {
  std::erase_if(rows_, [&](const Row& row) { return !passes(row.selected); });
  changed.raise();
}

void ListBox::select(std::size_t row, bool value) {
  if (!inReach() || row >= rows_.size()) return;
  if (value && !multiSelect_) {
    for (Row& other : rows_) other.selected = false;
  }
  rows_[row].selected = value;
  changed.raise();
}

}  // namespace pluvo::forms
