#include "multifile/frmPassword.h"

#include "errors/reports.h"
#include "forms/doubles.h"

#include <gtest/gtest.h>

namespace pluvo::multifile {
namespace {

struct Asked {
  bool proceeded;
  std::u16string password;
};

class PasswordPrompt : public testing::Test {
 protected:
  /// Asks once while the user does something; the password before was "kept".
  Asked ask(const std::function<void(frmPassword&)>& user, const std::optional<std::u16string>& prompt = {}) {
    forms.user = [&](forms::Form& form) {
      EXPECT_EQ(prompt_.txtPassword.Text(), u"");
      user(static_cast<frmPassword&>(form));
    };
    Asked asked{false, u"kept"};
    asked.proceeded = prompt_.RetrievePassword(asked.password, prompt);
    return asked;
  }

  errors::WatchedContext watched;
  forms::ScriptedForms forms;
  frmPassword prompt_{watched.context, forms};
};

TEST_F(PasswordPrompt, GivesWhatWasTypedWhenTheUserProceeds) {
  Asked asked = ask([](frmPassword& form) {
    form.txtPassword.Text(u"secret");
    form.cmdProceed.press();
  });
  EXPECT_TRUE(asked.proceeded);
  EXPECT_EQ(asked.password, u"secret");

  asked = ask([](frmPassword& form) {
    form.txtPassword.pressKey(u'x');
    EXPECT_TRUE(form.Visible());
    form.txtPassword.pressKey(13);
  });
  EXPECT_TRUE(asked.proceeded);
  EXPECT_EQ(asked.password, u"") << "an empty password is one";
}

TEST_F(PasswordPrompt, LeavesThePasswordAsItWasWhenTheUserDoesNot) {
  const std::function<void(frmPassword&)> ways[] = {[](frmPassword& form) { form.cmdCancel.press(); },
                                                    [](frmPassword& form) { form.close(); }};
  for (const auto& way : ways) {
    ask([](frmPassword& form) { form.cmdProceed.press(); });
    const Asked asked = ask([&](frmPassword& form) {
      form.txtPassword.Text(u"typed");
      way(form);
    });
    EXPECT_FALSE(asked.proceeded);
    EXPECT_EQ(asked.password, u"kept");
  }
}

TEST_F(PasswordPrompt, ShowsItsPromptAndHidesThePassword) {
  ask(
      [](frmPassword& form) {
        EXPECT_EQ(form.lblInstructions.Caption(), u"For this file:");
        EXPECT_EQ(form.txtPassword.PasswordChar(), u"*");
        EXPECT_EQ(form.txtPassword.ControlTipText(), u"Enter Password Here");
        form.cmdCancel.press();
      },
      u"For this file:");
  EXPECT_EQ(watched.context.locationTag, u"fpass:01");
  ask([](frmPassword& form) {
    EXPECT_NE(form.lblInstructions.Caption(), u"For this file:");
    form.txtPassword.pressKey(13);
  });
  EXPECT_EQ(watched.context.locationTag, u"fpass:04");
}

TEST_F(PasswordPrompt, ReportsAFaultAndCountsItAsCancelled) {
  const Asked asked = ask([](frmPassword&) { throw errors::outOfMemory(); });
  EXPECT_FALSE(asked.proceeded);
  EXPECT_EQ(watched.reports, std::vector<std::string>{"7 fpass:05"});
}

}  // namespace
}  // namespace pluvo::multifile
