#pragma once

#include "dialog/clsProcessFind.h"
#include "findpanel/choices.h"
#include "forms/form.h"

#include <string>

namespace pluvo::findpanel {

/// The request as it stands on the find page, as a sample of what it finds and of what it makes of it, with
/// the sentences a user needs to understand them. What is missing is said, and what to do about it. The
/// engine is the one that would run.
std::u16string previewOf(const forms::Form& form, const dialog::clsProcessFind& engine);

/// Shows the preview, and greys it where a field that it tells of has changed since. Whatever else is shown
/// in the preview's place stays as it is.
class Preview {
 public:
  /// All outlive it; the form has the controls of all pages.
  Preview(forms::Form& form, dialog::clsProcessFind& engine, Choices& choices);

 private:
  void cmdViewOperation_Click();

  void handleChanges();

  forms::Form& form_;
  dialog::clsProcessFind& engine_;
  Choices& choices_;
  forms::TextBox& display_;
  /// Whether the preview is what is shown.
  bool shown_ = false;
};

}  // namespace pluvo::findpanel
