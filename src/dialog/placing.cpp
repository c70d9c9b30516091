#include "placing.h"

#include "base/text.h"

#include <cstdint>

namespace pluvo::dialog {

void place(forms::Page& page, std::initializer_list<Placed> controls) {
  for (const auto& [control, cell, tip] : controls) {
    const bool hasNoGround =
        control.kind() == forms::ControlKind::label || control.kind() == forms::ControlKind::checkBox;
    if (hasNoGround) control.BackStyle(forms::BackStyle::transparent);
    control.Cell(cell);
    control.ControlTipText(tip);
    page.add(control);
  }
}

void tabOrder(std::initializer_list<forms::Control*> controls) {
  int index = 0;
  for (forms::Control* control : controls) control->TabIndex(++index);
}

void switchOn(forms::Control& control, bool on) {
  control.Enabled(on);
  control.BackStyle(on ? forms::BackStyle::opaque : forms::BackStyle::transparent);
}

void fillNumbered(forms::ComboBox& list, std::initializer_list<const char16_t*> texts) {
  for (const char16_t* text : texts)
    list.AddItem(text, base::decimal(static_cast<std::int64_t>(list.ListCount())));
}

void fillPlain(forms::ComboBox& list, std::initializer_list<const char16_t*> texts) {
  for (const char16_t* text : texts) list.AddItem(text);
}

}  // namespace pluvo::dialog
