#pragma once

#include "errors/context.h"
#include "forms/form.h"

#include <cstdint>
#include <optional>
#include <string>

namespace pluvo::dialog {

/// Asks for one password, and keeps none.
class frmPassword final : public forms::Form {
 public:
  frmPassword(errors::Context& context, forms::FormHost& host);

  /// Whether the user proceeded; else the password stays as it is. Every call begins with an empty box.
  bool RetrievePassword(std::u16string& password, const std::optional<std::u16string>& prompt = std::nullopt);

  forms::Label lblInstructions;
  forms::Label lblPassword{u"lblPassword", u"Password"};
  forms::TextBox txtPassword{u"txtPassword"};
  forms::CommandButton cmdProceed{u"cmdProceed", u"&Proceed"};
  forms::CommandButton cmdCancel{u"cmdCancel", u"&Cancel"};

 private:
  void AcceptPassword();
  void cmdProceed_Click();
  void cmdCancel_Click();
  void txtPassword_KeyPress(std::int16_t key);
  void unload();

  errors::Context& context_;
  bool proceed_ = false;
};

}  // namespace pluvo::dialog
