#pragma once

#include "dialog/clsProcessFind.h"
#include "forms/machine.h"
#include "pages.h"

#include <functional>
#include <string>
#include <string_view>

namespace pluvo::dialog {

/// The labels that open documents and the product's web page.
class Links {
 public:
  /// The program's own documents: where they lie, and how one is shown; see DialogServices.
  struct OwnDocuments {
    std::u16string folder;
    std::function<void(const std::u16string& path)> show;
  };

  /// All outlive it.
  Links(Pages& pages, clsProcessFind& engine, forms::Launcher& launcher, OwnDocuments documents);

 private:
  void opens(forms::Label& label, std::u16string_view tag, const char16_t* fileName);
  void lblDownloadSite_Click();

  clsProcessFind& engine_;
  forms::Launcher& launcher_;
  OwnDocuments documents_;
};

}  // namespace pluvo::dialog
