#include "base/utf.h"
#include "opened_dialog.h"

namespace pluvo::dialog {
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
  auto& distance = list(u"cboxNumberDistanceApart");
  for (const char16_t* typed : {u"25", u"Same", u"0", u"-3", u"123456"}) {
    EXPECT_TRUE(distance.enter(typed));
    EXPECT_EQ(distance.Text(), typed);
    EXPECT_THAT(told(), IsEmpty());
  }
  for (const char16_t* typed : {u"far", u"same", u""}) {
    EXPECT_FALSE(distance.enter(typed));
    EXPECT_EQ(distance.Text(), u"123456");
    EXPECT_THAT(told(), ElementsAre(kDistanceRefused));
  }
}

TEST_F(Choices, AskForADistanceBeyondTheList) {
  const std::pair<const char16_t*, const char16_t*> cases[] = {
      {u"12345", u"9999"}, {u"2.6", u"3"}, {u"", u"Same"}, {u"x", u"Same"},
      {u" 12", u"12"},     {u"0", u"0"},   {u"-5", u"-5"}, {u"00001", u"9999"}};
  for (const auto& [answer, distance] : cases) {
    inputs.answer = answer;
    choose(u"cboxNumberDistanceApart", u"(More...)");
    EXPECT_EQ(list(u"cboxNumberDistanceApart").Value(), distance) << base::utf8(answer);
  }
  EXPECT_EQ(inputs.prompts.front(), u"Distance apart value.: Please input a value between 1 and 9999.");
  EXPECT_THAT(told(), IsEmpty());

  inputs.answer = u"9e9";  // a number of few characters that fits nowhere
  choose(u"cboxNumberDistanceApart", u"1");
  choose(u"cboxNumberDistanceApart", u"(More...)");
  EXPECT_THAT(reported(), ElementsAre("6 FF:12", kDistanceRefused));
  EXPECT_EQ(list(u"cboxNumberDistanceApart").Value(), u"1");
}

/// A sign for position, text, place and colour each: + where it is enabled or shown, else -.
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
  const std::pair<const char16_t*, const char*> cases[] = {{u"Insert", "+++-"}, {u"Replace", "-++-"},
                                                           {u"Delete", "--+-"}, {u"Highlight", "--++"},
                                                           {u"None", "----"},   {u"Insert", "+++-"}};
  EXPECT_EQ(on(dialog()), "----") << "as designed, with no operation";
  for (const auto& [operation, ons] : cases) {
    const bool inserts = operation == std::u16string(u"Insert");
    type(u"txtTextToEnter", u"kept");
    choose(u"cboxProcOperation1", operation);
    EXPECT_EQ(list(u"cboxProcRelativePosition1").Value().value_or(u"none"), inserts ? u"0" : u"none");
    EXPECT_EQ(on(dialog()), ons) << base::utf8(operation);
    if (inserts) choose(u"cboxProcRelativePosition1", u"After");
  }
  EXPECT_EQ(box(u"txtTextToEnter").Text(), u"kept");
  EXPECT_EQ(list(u"cboxProcRelativePosition1").Value(), u"1");
  EXPECT_EQ(list(u"cboxProcSelection1").Text(), u"Selection");

  // Values that are none, which code may set, leave all as it is but the colours.
  for (const auto& [operation, ons] : {std::pair{u"Insert", "+++-"}, std::pair{u"Highlight", "--+-"}}) {
    choose(u"cboxProcOperation1", operation);
    for (const char16_t* code : {u"5", u"-1", u""}) {
      list(u"cboxProcOperation1").Value(code);
      EXPECT_EQ(on(dialog()), ons) << base::utf8(code);
    }
  }
  for (const char16_t* code : {u"4", u"-1", u""}) list(u"cboxProcSelection1").Value(code);
  EXPECT_THAT(told(), IsEmpty()) << "no text is missing";
}

TEST_F(Choices, AskForTheTextOfAPlace) {
  const struct {
    const char16_t* texts;  ///< of which boxes: begin, end, inside
    const char16_t* place;
    const char* refusal;
  } cases[] = {{u"", u"Selection", ""},
               {u"e", u"Beginning", "'Begins with' text before selecting an operation on it."},
               {u"b", u"Beginning", ""},
               {u"b", u"Ending", "'Ends with' text before selecting an operation on it."},
               {u"be", u"Ending", ""},
               {u"be", u"Inside Text", "'Inside Text' text before selecting an operation on it."},
               {u"bi", u"Inside Text", "'Ends with' text before selecting an operation on Inside text."},
               {u"bei", u"Inside Text", ""}};
  choose(u"cboxProcOperation1", u"Delete");
  for (const auto& [texts, place, refusal] : cases) {
    const std::u16string filled = texts;
    choose(u"cboxProcSelection1", u"Selection");
    for (const auto& [name, letter] : {std::pair{u"txtBeginText", u'b'}, std::pair{u"txtEndText", u'e'},
                                       std::pair{u"txtInsideText1", u'i'}})
      box(name).Text(filled.find(letter) == filled.npos ? u"" : u"text");
    choose(u"cboxProcSelection1", place);
    const bool refused = *refusal != 0;
    const std::vector<std::string> box = {"You must fill in " + std::string(refusal) + " | Pluvorama"};
    EXPECT_EQ(told(), refused ? box : std::vector<std::string>());
    EXPECT_EQ(list(u"cboxProcSelection1").Text(), refused ? u"Selection" : place);
  }
}

/// Of the procedure that was entered last.
TEST_F(Choices, FaultsAreReportedWithTheirTags) {
  const auto entering = [this](const char16_t* name) {
    return [this, name] { list(name).enter(u"none of these"); };
  };
  const auto choosing = [this](const char16_t* name, const char16_t* row) {
    return [this, name, row] { choose(name, row); };
  };
  document("a¶");
  type(u"txtBeginText", u"b");
  type(u"txtEndText", u"e");
  const struct {
    const char16_t* failing;
    std::function<void()> doing;
    const char* report;
  } cases[] = {{u"boxes", entering(u"cboxUnitDistanceApart"), "7 FF:23"},
               {u"boxes", entering(u"cboxNumberDistanceApart"), "7 FF:11"},
               {u"cboxHighlighters", choosing(u"cboxProcOperation1", u"Highlight"), "7 FF:14"},
               {u"boxes", choosing(u"cboxProcSelection1", u"Inside Text"), "7 FF:18"},
               {u"txtOperationDisplay", [this] { press(u"cmdViewOperation"); }, "7 FF:22"},
               {u"txtInsideText1", [this] { type(u"txtBeginText", u""); }, "7 FF:30"},
               {u"txtInsideText1", [this] { type(u"txtEndText", u""); }, "7 FF:33"},
               {u"lblPleaseWait", [this] { tick(u"chkQuiteMode"), press(u"cmdExecuteFAR"); }, "7 FF:21"}};
  for (const auto& it : cases)
    EXPECT_THAT(reportedWithout(it.failing, it.doing), testing::Contains(it.report)) << it.report;
}

}  // namespace
}  // namespace pluvo::dialog
