#pragma once

#include "forms/control.h"

namespace pluvo::findpanel {

/// On can be used and is opaque; off cannot, and is transparent.
inline void switchOn(forms::Control& control, bool on) {
  control.Enabled(on);
  control.BackStyle(on ? forms::BackStyle::opaque : forms::BackStyle::transparent);
}

}  // namespace pluvo::findpanel
