#include "multifile/frmPassword.h"

#include "errors/reports.h"
#include "forms/doubles.h"

#include <gtest/gtest.h>

namespace pluvo::multifile {
namespace {

class PasswordPrompt : public testing::Test {
 protected:
  using User = std::function<void(frmPassword&)>;
  /// What the password is after the prompt, "kept" before; and whether the user proceeded.
  std::pair<bool, std::u16string> ask(const User& user, const std::optional<std::u16string>& prompt = {}) {
    forms.user = [&](forms::Form& form) {
      EXPECT_EQ(prompt_.txtPassword.Text(), u"");
      user(static_cast<frmPassword&>(form));
    };
    std::u16string password = u"kept";
    const bool proceeded = prompt_.RetrievePassword(password, prompt);
    return {proceeded, password};
  }
  static constexpr auto proceed = [](frmPassword& form) { form.cmdProceed.press(); };
  static constexpr auto enter = [](frmPassword& form) { form.txtPassword.pressKey(13); };
  static constexpr auto cancel = [](frmPassword& form) { form.cmdCancel.press(); };
  static constexpr auto close = [](frmPassword& form) { form.close(); };
  static User typing(const User& end) {
    return [end](frmPassword& form) {
      form.txtPassword.Text(u"typed");
      form.txtPassword.pressKey(u'x');
      EXPECT_TRUE(form.Visible());
      end(form);
    };
  }

  errors::WatchedContext watched;
  forms::ScriptedForms forms;
  frmPassword prompt_{watched.context, forms};
};

TEST_F(PasswordPrompt, GivesWhatWasTypedWhenTheUserProceeds) {
  using Answer = std::pair<bool, std::u16string>;
  EXPECT_EQ(ask(typing(proceed)), Answer(true, u"typed"));
  EXPECT_EQ(ask(typing(cancel)), Answer(false, u"kept")) << "though the time before the user proceeded";
  EXPECT_EQ(ask(enter), Answer(true, u"")) << "an empty password is one";
  EXPECT_EQ(watched.context.locationTag, u"fpass:04");
  EXPECT_EQ(ask(typing(close)), Answer(false, u"kept"));
  EXPECT_EQ(ask([](frmPassword&) { throw errors::outOfMemory(); }), Answer(false, u"kept"));
  EXPECT_EQ(watched.reports, std::vector<std::string>{"7 fpass:05"});
}

TEST_F(PasswordPrompt, ShowsItsPromptOnceAndHidesThePassword) {
  ask(
      [](frmPassword& form) {
        EXPECT_EQ(form.lblInstructions.Caption(), u"For this file:");
        EXPECT_EQ(form.txtPassword.PasswordChar(), u"*");
        form.cmdCancel.press();
      },
      u"For this file:");
  EXPECT_EQ(watched.context.locationTag, u"fpass:01");
  ask([](frmPassword& form) {
    EXPECT_NE(form.lblInstructions.Caption(), u"For this file:");
    form.cmdCancel.press();
  });
}

}  // namespace
}  // namespace pluvo::multifile
