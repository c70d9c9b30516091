#include "forms/form.h"

namespace pluvo::forms {

namespace {

Control* find(const std::vector<Control*>& controls, std::u16string_view name) {
  for (Control* control : controls) {
    if (control->Name() == name) return control;
    const auto* pages = dynamic_cast<const MultiPage*>(control);
    if (pages == nullptr) continue;
    for (const auto& page : pages->Pages()) {
      if (Control* found = find(page->controls(), name)) return found;
    }
  }
  return nullptr;
}

}  // namespace

Control* Form::control(std::u16string_view name) const { return find(controls_, name); }

}  // namespace pluvo::forms
