#include "dialog/frmPassword.h"

#include "base/secret_text.h"

namespace pluvo::dialog {

namespace {

constexpr const char16_t* kInstructions = u"Enter the password.";
constexpr std::int16_t kEnter = 13;

}  // namespace

frmPassword::frmPassword(errors::Context& context, forms::FormHost& host)
    : Form(host, u"frmPassword", u"Enter Password"),
      lblInstructions(u"lblInstructions", kInstructions),
      context_(context) {
  for (forms::Control* control : std::initializer_list<forms::Control*>{
           &lblInstructions, &lblPassword, &txtPassword, &cmdProceed, &cmdCancel})
    add(*control);
  cmdProceed.Default(true);
  txtPassword.PasswordChar(u"*");
  txtPassword.ControlTipText(u"Enter Password Here");
  cmdProceed.Click.handledBy([this] { cmdProceed_Click(); });
  cmdCancel.Click.handledBy([this] { cmdCancel_Click(); });
  txtPassword.KeyPress.handledBy([this](std::int16_t key) { txtPassword_KeyPress(key); });
}

bool frmPassword::RetrievePassword(std::u16string& password, const std::optional<std::u16string>& prompt) {
  return errors::guarded(context_, u"fpass:05", [&] {
    unload();
    if (prompt) lblInstructions.Caption(*prompt);
    ShowModal();
    const bool proceeded = proceed_;
    if (proceeded) {
      base::wipe(password);
      password = txtPassword.Text();
    }
    unload();
    return proceeded;
  });
}

void frmPassword::unload() {
  proceed_ = false;
  txtPassword.Text({});
  lblInstructions.Caption(kInstructions);
}

void frmPassword::AcceptPassword() {
  errors::guarded(context_, u"fpass:04", [&] {
    proceed_ = true;
    Hide();
  });
}

void frmPassword::cmdProceed_Click() {
  errors::guarded(context_, u"fpass:02", [&] { AcceptPassword(); });
}

void frmPassword::cmdCancel_Click() {
  errors::guarded(context_, u"fpass:01", [&] { Hide(); });
}

void frmPassword::txtPassword_KeyPress(std::int16_t key) {
  errors::guarded(context_, u"fpass:03", [&] {
    if (key == kEnter) AcceptPassword();
  });
}

}  // namespace pluvo::dialog
