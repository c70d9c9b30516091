/// Boxes and launching, by whatever toolkit.
#include "errors/fault.h"
#include "user.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pluvo::forms {
namespace {

class ShownBoxes : public testing::Test {
 protected:
  User user;
};

TEST_F(ShownBoxes, AnswerAsTheyAreAnsweredAndClosedAsByTheirLast) {
  const struct {
    Buttons buttons;
    std::optional<BoxAnswer> pressed;
    BoxAnswer answer;
  } cases[] = {{Buttons::ok, BoxAnswer::ok, BoxAnswer::ok},
               {Buttons::ok, std::nullopt, BoxAnswer::ok},
               {Buttons::yesNo, BoxAnswer::yes, BoxAnswer::yes},
               {Buttons::yesNo, BoxAnswer::no, BoxAnswer::no},
               {Buttons::yesNo, std::nullopt, BoxAnswer::no},
               {Buttons::yesNoCancel, BoxAnswer::no, BoxAnswer::no},
               {Buttons::yesNoCancel, BoxAnswer::cancel, BoxAnswer::cancel},
               {Buttons::yesNoCancel, std::nullopt, BoxAnswer::cancel}};
  for (const auto& it : cases) {
    user.later([&] { EXPECT_EQ(user.answerBox(it.pressed), "A & B: <b>Find & Replace?"); });
    EXPECT_EQ(user.boxes.show(u"<b>Find & Replace?", it.buttons, u"A & B"), it.answer);
  }
}

TEST_F(ShownBoxes, GiveWhatIsTypedUnlessTheyAreCancelled) {
  for (const int end : {User::kEnter, User::kEscape}) {
    user.later([&] {
      user.type(u"12");
      user.key(end);
    });
    EXPECT_EQ(user.inputs.ask(u"a number", u"How far?"), end == User::kEnter ? u"12" : u"");
  }
}

TEST_F(ShownBoxes, TellWhatCannotBeStarted) {
  try {
    user.launcher.launchHidden(u"pluvo-is-not-there --now");
    FAIL() << "there is no such program";
  } catch (const errors::Fault& fault) {
    EXPECT_EQ(fault.number, 53);
    EXPECT_NE(fault.description.find(u"pluvo-is-not-there"), std::u16string::npos);
  }
}

}  // namespace
}  // namespace pluvo::forms
