#include "dialog/frmPassword.h"

#include "errors/reports.h"
#include "forms/doubles.h"

#include <gtest/gtest.h>

namespace pluvo::dialog {
namespace {

TEST(PasswordPrompt, GivesWhatWasTypedWhenTheUserProceeds) {
  const auto type = [](frmPassword& form) {
    form.txtPassword.Text(u"typed");
    form.txtPassword.pressKey(u'x');
    EXPECT_TRUE(form.Visible());
  };
  const struct {
    const char16_t* prompt;
    std::function<void(frmPassword&)> user;
    bool proceeded;
    const char16_t* password;
    const char16_t* tag;
  } cases[] = {
      {nullptr, [&](frmPassword& form) { type(form), form.cmdProceed.press(); }, true, u"typed", u"fpass:04"},
      {u"For this:", [&](frmPassword& form) { type(form), form.cmdCancel.press(); }, false, u"kept",
       u"fpass:01"},
      {nullptr, [](frmPassword& form) { form.txtPassword.pressKey(13); }, true, u"", u"fpass:04"},
      {nullptr, [&](frmPassword& form) { type(form), form.close(); }, false, u"kept", u"fpass:03"},
      {nullptr, [](frmPassword&) { throw errors::outOfMemory(); }, false, u"kept", u"fpass:05"}};
  // One form asks every time, and nothing of one answer is there at the next question.
  errors::WatchedContext watched;
  forms::ScriptedForms forms;
  frmPassword form(watched.context, forms);
  EXPECT_EQ(form.txtPassword.PasswordChar(), u"*");
  for (const auto& [prompt, user, proceeded, expected, tag] : cases) {
    forms.user = [&, act = user, wanted = prompt](forms::Form&) {
      EXPECT_EQ(form.txtPassword.Text(), u"");
      EXPECT_EQ(form.lblInstructions.Caption(), wanted ? wanted : u"Enter the password.");
      act(form);
    };
    std::u16string password = u"kept";
    EXPECT_EQ(form.RetrievePassword(password, prompt ? std::optional<std::u16string>(prompt) : std::nullopt),
              proceeded);
    EXPECT_EQ(password, expected);
    EXPECT_EQ(form.txtPassword.Text(), u"") << "nor is it there in between";
    EXPECT_EQ(watched.context.locationTag, tag);
  }
  EXPECT_EQ(watched.reports, std::vector<std::string>{"7 fpass:05"});
}

}  // namespace
}  // namespace pluvo::dialog
