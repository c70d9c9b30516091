#pragma once

#include "forms/control.h"

#include <QFont>
#include <QPalette>
#include <QWidget>

/// Colours and fonts of controls, such that they go with the desktop's own, light or dark.
namespace pluvo::forms_qt {

/// White is the desktop's colour for text boxes, transparent that of its windows. Any other
/// colour is shown as it is, under text that can be read on it.
void dressBox(QWidget& box, const forms::Control& control);
/// Labels and their like stand on the window; only a colour of their own is shown.
void dressLabel(QWidget& label, const forms::Control& control);
/// The face where the system has it, else the system's own; the usual size is the system's.
void setFont(QWidget& widget, const forms::Font& font);

}  // namespace pluvo::forms_qt
