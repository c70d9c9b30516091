#pragma once

#include "engine/clsProcessFind.h"
#include "forms/form.h"
#include "forms/machine.h"

#include <string>
#include <string_view>

namespace pluvo::host {

/// The labels that open documents and the product's web page.
class Links {
 public:
  /// All outlive it.
  Links(forms::Form& form, engine::clsProcessFind& engine, forms::Launcher& launcher,
        std::u16string componentFolder);

 private:
  void opens(const char16_t* label, std::u16string_view tag, const char16_t* fileName);
  void lblDownloadSite_Click();

  forms::Form& form_;
  engine::clsProcessFind& engine_;
  forms::Launcher& launcher_;
  std::u16string componentFolder_;
};

}  // namespace pluvo::host
