#include "forms/doubles.h"

namespace pluvo::forms {
namespace {

class Question final : public Form {
 public:
  explicit Question(FormHost& host) : Form(host, u"question", u"Question") {
    add(text);
    add(yes);
    yes.Click.handledBy([this] {
      ++pressed;
      Hide();
    });
    Closed.handledBy([this] { closed = true; });
  }
  Label text{u"text", u"Really?"};
  CommandButton yes{u"yes", u"&Yes"};
  int pressed = 0;
  bool closed = false;
};

class Forms : public testing::Test {
 protected:
  ScriptedForms host;
};

TEST_F(Forms, ShownModallyWaitForTheUser) {
  Question question(host);
  host.user = [](Form& form) {
    EXPECT_TRUE(form.Visible());
    press(form, u"yes");
  };
  question.ShowModal();
  EXPECT_EQ(question.pressed, 1);
  EXPECT_FALSE(question.closed);
  host.user = [](Form& form) { form.close(); };
  question.ShowModal();
  EXPECT_TRUE(question.closed);
  question.yes.Enabled(false);
  question.yes.press();
  question.yes.Enabled(true);
  question.yes.Visible(false);
  question.yes.press();
  EXPECT_EQ(question.pressed, 1) << "only what is seen and on can be pressed";
}

TEST_F(Forms, TellTheHostWhenTheyComeAndGo) {
  host.watched = u"question";
  {
    Question question(host);
    question.Hide();
    question.Visible(true);
    question.Visible(true);
    EXPECT_EQ(host.visibility, (std::vector<bool>{true}));
  }
  EXPECT_EQ(host.visibility, (std::vector<bool>{true, false})) << "a form that goes is hidden first";
}

TEST_F(Forms, TellTheRendererWhatIsToBeShownAnew) {
  Question question(host);
  int changes = 0;
  question.text.changed.handledBy([&] { ++changes; });
  question.text.Caption(u"Really?");
  EXPECT_EQ(changes, 0) << "nothing is different";
  question.text.Caption(u"Sure?");
  question.text.Enabled(false);
  EXPECT_EQ(changes, 2);
}

}  // namespace
}  // namespace pluvo::forms
