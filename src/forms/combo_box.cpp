#include "forms/combo_box.h"

#include <algorithm>

namespace pluvo::forms {

const std::u16string& ComboBox::List(std::size_t row, std::size_t column) const {
  return column == 0 ? rows_.at(row).text : rows_.at(row).code;
}

void ComboBox::AddItem(std::u16string text, std::u16string code) {
  rows_.push_back({std::move(text), std::move(code)});
  changed.raise();
}

void ComboBox::Clear() {
  rows_.clear();
  changed.raise();
}

void ComboBox::Text(std::u16string text) {
  if (text_ == text) return;
  set(text_, std::move(text));
  Change.raise();
}

std::optional<std::u16string> ComboBox::Value() const {
  const auto shown = std::ranges::find(rows_, text_, &Row::text);
  if (shown != rows_.end()) return bound(*shown);
  if (bound_ == Bound::text && !text_.empty()) return text_;
  return std::nullopt;
}

void ComboBox::Value(const std::u16string& value) {
  const auto row =
      std::ranges::find_if(rows_, [&](const Row& candidate) { return bound(candidate) == value; });
  if (row != rows_.end()) return Text(row->text);
  Text(bound_ == Bound::text ? value : std::u16string());
}

void ComboBox::type(std::u16string text) {
  if (!inReach()) return;
  if (!before_) before_ = text_;
  Text(std::move(text));
}

bool ComboBox::commit() {
  if (!before_) return true;
  bool refused = false;
  BeforeUpdate.raise(refused);
  const std::u16string before = *std::exchange(before_, std::nullopt);
  if (refused) Text(before);
  return !refused;
}

bool ComboBox::enter(std::u16string text) {
  type(std::move(text));
  return commit();
}

bool ComboBox::choose(std::size_t row) { return enter(rows_.at(row).text); }

}  // namespace pluvo::forms
