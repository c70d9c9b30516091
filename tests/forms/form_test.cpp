#include "forms/doubles.h"

namespace pluvo::forms {
namespace {

class Question final : public Form {
 public:
  explicit Question(FormHost& host) : Form(host, u"question", u"Question") {
    add(yes);
    yes.Click.handledBy([this] {
      story += "pressed ";
      Hide();
    });
    Closed.handledBy([this] { story += "closed "; });
  }
  CommandButton yes{u"yes", u"&Yes"};
  std::string story;
};

TEST(Forms, ShownModallyWaitForTheUser) {
  ScriptedForms host;
  Question question(host);
  host.user = [](Form& form) {
    EXPECT_TRUE(form.Visible());
    press(form, u"yes");
  };
  question.ShowModal();
  host.user = [](Form& form) { form.close(); };
  question.ShowModal();
  EXPECT_EQ(question.story, "pressed closed ");
  question.yes.Enabled(false);
  question.yes.press();
  question.yes.Enabled(true);
  question.yes.Visible(false);
  question.yes.press();
  EXPECT_EQ(question.story, "pressed closed ") << "only what is seen and on can be pressed";
  host.user = [](Form&) { throw 1; };
  EXPECT_THROW(question.ShowModal(), int);
  EXPECT_FALSE(question.Visible());
}

TEST(Forms, TellWhenTheyComeAndGoAndWhatIsToBeShownAnew) {
  ScriptedForms host;
  host.watched = u"question";
  {
    Question question(host);
    question.Hide();
    question.Visible(true);
    question.Visible(true);
    EXPECT_EQ(host.visibility, (std::vector<bool>{true}));
    int changes = 0;
    question.yes.changed.handledBy([&] { ++changes; });
    question.yes.Caption(u"&Yes");
    EXPECT_EQ(changes, 0) << "nothing is different";
    question.yes.Caption(u"&Sure");
    question.yes.Enabled(false);
    EXPECT_EQ(changes, 2);
  }
  EXPECT_EQ(host.visibility, (std::vector<bool>{true, false})) << "a form that goes is hidden first";
}

}  // namespace
}  // namespace pluvo::forms
