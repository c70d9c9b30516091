#include "host/opened_dialog.h"

namespace pluvo::host {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kRefused = "Please Select one of the values provided. | Improper Value Selection";
constexpr const char* kDistanceRefused =
    "Please Select one of the values provided or a numerical value between 1 and 9999. | Improper Value "
    "Selection";

class Choices : public testing::Test, protected OpenedDialog {
 protected:
  Choices() { open(); }
};

TEST_F(Choices, RefuseWhatIsNotListed) {
  choose(u"cboxProcOperation1", u"Highlight");
  choose(u"cboxHighlighters", u"Green");
  for (const char16_t* name :
       {u"cboxHighlighters", u"cboxProcOperation1", u"cboxProcSelection1", u"cboxUnitDistanceApart"}) {
    const std::u16string before = list(name).Text();
    for (const char16_t* typed : {u"Mauve", u"yellow", u"7", u""}) {
      EXPECT_FALSE(list(name).enter(typed));
      EXPECT_EQ(list(name).Text(), before);
      EXPECT_THAT(told(), ElementsAre(kRefused));
    }
  }
  EXPECT_EQ(list(u"cboxHighlighters").Value(), u"11");
  EXPECT_TRUE(list(u"cboxHighlighters").Visible()) << "the operation is in force again";
  EXPECT_TRUE(list(u"cboxHighlighters").enter(u"No Highlight"));
  EXPECT_EQ(list(u"cboxHighlighters").Value(), u"0");
  EXPECT_THAT(told(), IsEmpty());

  choose(u"cboxProcOperation1", u"Insert");
  choose(u"cboxProcRelativePosition1", u"After");
  for (const char16_t* typed : {u"Behind", u"after", u"1", u""}) {
    EXPECT_FALSE(list(u"cboxProcRelativePosition1").enter(typed));
    EXPECT_EQ(list(u"cboxProcRelativePosition1").Value(), u"1");
    EXPECT_THAT(told(), ElementsAre(kRefused));
  }
}

TEST_F(Choices, TakeADistanceTyped) {
  struct Case {
    const char16_t* typed;
    bool taken;
  };
  const Case cases[] = {{u"25", true},     {u"Same", true}, {u"0", true},     {u"-3", true},
                        {u"123456", true}, {u"far", false}, {u"same", false}, {u"", false}};
  auto& distance = list(u"cboxNumberDistanceApart");
  for (const Case& it : cases) {
    const std::u16string before = distance.Text();
    EXPECT_EQ(distance.enter(it.typed), it.taken) << errors::utf8(it.typed);
    EXPECT_EQ(distance.Text(), it.taken ? it.typed : before);
    EXPECT_EQ(told(), it.taken ? std::vector<std::string>() : std::vector<std::string>{kDistanceRefused});
  }
}

TEST_F(Choices, AskForADistanceBeyondTheList) {
  struct Case {
    const char16_t* answer;
    const char16_t* distance;
  };
  const Case cases[] = {{u"12345", u"9999"}, {u"2.6", u"3"},  {u"2.5", u"2"},
                        {u"", u"Same"},      {u"x", u"Same"}, {u" 12", u"12"},
                        {u"0", u"0"},        {u"-5", u"-5"},  {u"00001", u"9999"}};
  for (const Case& it : cases) {
    inputs.answer = it.answer;
    choose(u"cboxNumberDistanceApart", u"(More...)");
    EXPECT_EQ(list(u"cboxNumberDistanceApart").Value(), it.distance) << errors::utf8(it.answer);
  }
  EXPECT_EQ(inputs.prompts.front(), u"Distance apart value.: Please input a value between 1 and 9999.");
  EXPECT_THAT(told(), IsEmpty());

  inputs.answer = u"9e9";  // a number of few characters that fits nowhere
  choose(u"cboxNumberDistanceApart", u"1");
  choose(u"cboxNumberDistanceApart", u"(More...)");
  EXPECT_THAT(reported(), ElementsAre("6 FF:12", kDistanceRefused));
  EXPECT_EQ(list(u"cboxNumberDistanceApart").Value(), u"1");
}

/// What is on, as "position text place colour".
std::string on(const forms::Form& form) {
  std::string letters;
  for (const char16_t* name : {u"cboxProcRelativePosition1", u"txtTextToEnter", u"cboxProcSelection1"}) {
    const forms::Control& control = *form.control(name);
    EXPECT_EQ(control.BackStyle() == forms::BackStyle::opaque, control.Enabled());
    letters += control.Enabled() ? '+' : '-';
  }
  return letters + (form.control(u"cboxHighlighters")->Visible() ? '+' : '-');
}

TEST_F(Choices, SwitchWithTheOperation) {
  struct Case {
    const char16_t* operation;
    std::optional<std::u16string> position;
    const char* on;
  };
  const Case cases[] = {{u"Insert", u"0", "+++-"},         {u"Replace", std::nullopt, "-++-"},
                        {u"Delete", std::nullopt, "--+-"}, {u"Highlight", std::nullopt, "--++"},
                        {u"None", std::nullopt, "----"},   {u"Insert", u"0", "+++-"}};
  EXPECT_EQ(on(dialog()), "----") << "as designed, with no operation";
  for (const Case& it : cases) {
    type(u"txtTextToEnter", u"kept");
    choose(u"cboxProcOperation1", it.operation);
    EXPECT_EQ(list(u"cboxProcRelativePosition1").Value(), it.position) << errors::utf8(it.operation);
    EXPECT_EQ(on(dialog()), it.on) << errors::utf8(it.operation);
    if (it.position) choose(u"cboxProcRelativePosition1", u"After");
  }
  EXPECT_EQ(box(u"txtTextToEnter").Text(), u"kept");
  EXPECT_EQ(list(u"cboxProcRelativePosition1").Value(), u"1");
  EXPECT_EQ(list(u"cboxProcSelection1").Text(), u"Selection");
}

TEST_F(Choices, AskForTheTextOfAPlace) {
  struct Case {
    const char16_t* begin;
    const char16_t* end;
    const char16_t* inside;
    const char16_t* place;
    const char* refusal;
  };
  const Case cases[] = {
      {u"", u"", u"", u"Selection", nullptr},
      {u"", u"e", u"", u"Beginning",
       "You must fill in 'Begins with' text before selecting an operation on it. | Pluvorama"},
      {u"b", u"", u"", u"Beginning", nullptr},
      {u"b", u"", u"", u"Ending",
       "You must fill in 'Ends with' text before selecting an operation on it. | Pluvorama"},
      {u"b", u"e", u"", u"Ending", nullptr},
      {u"b", u"e", u"", u"Inside Text",
       "You must fill in 'Inside Text' text before selecting an operation on it. | Pluvorama"},
      {u"b", u"", u"i", u"Inside Text",
       "You must fill in 'Ends with' text before selecting an operation on Inside text. | Pluvorama"},
      {u"b", u"e", u"i", u"Inside Text", nullptr}};
  choose(u"cboxProcOperation1", u"Delete");
  for (const Case& it : cases) {
    choose(u"cboxProcSelection1", u"Selection");
    box(u"txtBeginText").Text(it.begin);
    box(u"txtEndText").Text(it.end);
    box(u"txtInsideText1").Text(it.inside);
    choose(u"cboxProcSelection1", it.place);
    EXPECT_EQ(told(), it.refusal ? std::vector<std::string>{it.refusal} : std::vector<std::string>());
    EXPECT_EQ(list(u"cboxProcSelection1").Text(), it.refusal ? u"Selection" : it.place);
  }
}

}  // namespace
}  // namespace pluvo::host
