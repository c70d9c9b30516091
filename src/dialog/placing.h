#pragma once

#include "forms/form.h"

#include <initializer_list>

/// What a page's constructor says of its controls.
namespace pluvo::dialog {

/// A control's place on its page, and its tool tip.
struct Placed {
  forms::Control& control;
  forms::Cell cell;
  const char16_t* tip = u"";
};

/// Puts the controls on the page, whose collection has them in this order. Labels and ticks have no ground of
/// their own.
void place(forms::Page& page, std::initializer_list<Placed> controls);

/// Where the Tab key goes, if not by the order of the controls.
void tabOrder(std::initializer_list<forms::Control*> controls);

/// On can be used and is opaque; off cannot, and is transparent.
void switchOn(forms::Control& control, bool on);

/// Rows whose code is their number, or that have none.
void fillNumbered(forms::ComboBox& list, std::initializer_list<const char16_t*> texts);
void fillPlain(forms::ComboBox& list, std::initializer_list<const char16_t*> texts);

}  // namespace pluvo::dialog
