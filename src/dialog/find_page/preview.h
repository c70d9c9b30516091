#pragma once

#include "choices.h"
#include "dialog/clsProcessFind.h"
#include "pages.h"

#include <string>

namespace pluvo::dialog {

/// The request as it stands on the find page: a sample of the text it finds and of the result. Sentences
/// below say what a user needs to understand them. It says what is missing, and what to do about it. The
/// engine is the one that would run.
std::u16string previewOf(const Pages& pages, const clsProcessFind& engine);

/// Shows the preview, and greys it where a field that it tells of has changed since. Whatever else is shown
/// in the preview's place stays as it is.
class Preview {
 public:
  /// All outlive it.
  Preview(Pages& pages, clsProcessFind& engine, Choices& choices);

 private:
  void cmdViewOperation_Click();

  void handleChanges();

  Pages& pages_;
  clsProcessFind& engine_;
  Choices& choices_;
  forms::TextBox& display_;
  /// Whether the preview is shown.
  bool shown_ = false;
};

}  // namespace pluvo::dialog
