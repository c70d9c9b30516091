#pragma once

#include "errors/context.h"
#include "findpanel/choices.h"
#include "forms/form.h"

#include <string>

namespace pluvo::findpanel {

/// The request as it stands on the find page, as a sample of what it finds and of what it makes of it, with
/// the sentences a user needs to understand them. What is missing is said, and what to do about it.
std::u16string previewOf(const forms::Form& form);

/// Shows the preview.
class Preview {
 public:
  /// All outlive it; the form has the controls of all pages.
  Preview(forms::Form& form, errors::Context& context, Choices& choices);

 private:
  void cmdViewOperation_Click();

  forms::Form& form_;
  errors::Context& context_;
  Choices& choices_;
};

}  // namespace pluvo::findpanel
