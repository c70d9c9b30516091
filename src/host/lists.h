#pragma once

#include "forms/form.h"

/// What start-up adds to the design.
namespace pluvo::host {

void fillLists(forms::Form& form);
/// The tool tips that name the word processor.
void setProductTips(forms::Form& form);
void setNotice(forms::Form& form);
/// The find page shows the busy notice too, which the handlers know on the files page.
void mirrorNotice(forms::Form& form);

}  // namespace pluvo::host
