#include "forms/form.h"

#include "base/at_end.h"

namespace pluvo::forms {

void Form::Visible(bool value) {
  if (visible_ == value) return;
  visible_ = value;
  try {
    host_.visibleChanged(*this);
  } catch (...) {
    visible_ = false;
    throw;
  }
}

void Form::ShowModal() {
  const base::AtEnd hidden([this] { visible_ = false; });
  visible_ = true;
  host_.runModal(*this);
}

Control* Form::control(std::u16string_view name) const {
  for (Control* control : controls_) {
    if (control->Name() == name) return control;
    const auto* pages = dynamic_cast<const MultiPage*>(control);
    if (pages == nullptr) continue;
    for (const Page* page : pages->Pages()) {
      if (Control* found = page->control(name)) return found;
    }
  }
  return nullptr;
}

}  // namespace pluvo::forms
