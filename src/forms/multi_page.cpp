#include "forms/multi_page.h"

namespace pluvo::forms {

Page& MultiPage::add(std::u16string name, std::u16string caption, std::u16string tip) {
  pages_.push_back(std::make_unique<Page>(std::move(name), std::move(caption), std::move(tip)));
  return *pages_.back();
}

Page* MultiPage::page(std::u16string_view name) const {
  for (const auto& page : pages_) {
    if (page->Name() == name) return page.get();
  }
  return nullptr;
}

void MultiPage::Value(std::size_t page) {
  if (page == value_ || page >= pages_.size()) return;
  set(value_, page);
  Change.raise();
}

}  // namespace pluvo::forms
