#include "forms/multi_page.h"

#include <algorithm>

namespace pluvo::forms {

Control* Page::control(std::u16string_view name) const {
  const auto found = std::ranges::find(controls_, name, &Control::Name);
  return found == controls_.end() ? nullptr : *found;
}

void MultiPage::Value(std::size_t page) {
  if (page == value_ || page >= pages_.size()) return;
  set(value_, page);
  Change.raise();
}

}  // namespace pluvo::forms
