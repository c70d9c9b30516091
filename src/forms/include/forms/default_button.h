#pragma once

#include "forms/control.h"

namespace pluvo::forms {

/// Whether Enter presses it, wherever on its form the keyboard is. A renderer presses the first that the user
/// sees.
inline bool isPressedByEnter(const Control& control) {
  const auto* button = dynamic_cast<const CommandButton*>(&control);
  return button != nullptr && button->Default() && button->Visible() && button->Enabled();
}

}  // namespace pluvo::forms
