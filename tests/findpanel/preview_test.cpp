#include "host/opened_dialog.h"

namespace pluvo::host {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class Preview : public testing::Test, protected OpenedDialog {
 protected:
  Preview() {
    open();
    type(u"txtBeginText", u"Dear");
  }
  std::string shown() {
    press(u"cmdViewOperation");
    EXPECT_EQ(box(u"txtOperationDisplay").BackColor(), forms::kWhite);
    return display();
  }
  /// The line under a heading.
  std::string under(const std::string& heading) {
    const std::string text = shown();
    const std::size_t at = text.find(heading + "\r\n");
    if (at == std::string::npos) return "no " + heading;
    const std::size_t from = at + heading.size() + 2;
    return text.substr(from, text.find("\r\n", from) - from);
  }
  std::string found() { return under("Finding text that looks like:"); }
  std::string made() { return under("And making it look like:"); }
};

TEST_F(Preview, ShowsWhatIsFound) {
  EXPECT_EQ(found(), "Dear");
  type(u"txtEndText", u"Yours");
  EXPECT_EQ(found(), "Dear..{Unknown text}..Yours");
  type(u"txtInsideText1", u"sum");
  EXPECT_EQ(found(), "Dear..{Unknown text}..sum..{Unknown text}..Yours");
}

TEST_F(Preview, ShowsWhatIsMadeOfIt) {
  const std::tuple<const char16_t*, const char16_t*, const char*> cases[] = {
      {u"None", u"Selection", "A..{Unknown text}..B..{Unknown text}..C"},
      {u"Insert", u"Selection", "NEW A..{Unknown text}..B..{Unknown text}..C"},
      {u"Insert", u"Ending", "A..{Unknown text}..B..{Unknown text}..NEW C"},
      {u"Replace", u"Selection", "NEW"},
      {u"Replace", u"Inside Text", "A..{Unknown text}..NEW..{Unknown text}..C"},
      {u"Delete", u"Beginning", "..{Unknown text}..B..{Unknown text}..C"},
      {u"Delete", u"Selection", "{Nothing}"},
      {u"Highlight", u"Selection", "{Green: A..{Unknown text}..B..{Unknown text}..C}"},
      {u"Highlight", u"Inside Text", "A..{Unknown text}..{Green: B}..{Unknown text}..C"}};
  type(u"txtBeginText", u"A");
  type(u"txtEndText", u"C");
  type(u"txtInsideText1", u"B");
  tick(u"chkExtraSpace");
  box(u"txtTextToEnter").Text(u"NEW");
  list(u"cboxHighlighters").Text(u"Green");
  for (const auto& [operation, place, expected] : cases) {
    choose(u"cboxProcOperation1", operation);
    list(u"cboxProcSelection1").Text(place);
    EXPECT_EQ(made(), expected);
  }
  list(u"cboxHighlighters").Text(u"No Highlight");
  EXPECT_EQ(made(), "A..{Unknown text}..{not highlighted: B}..{Unknown text}..C");
  choose(u"cboxProcOperation1", u"Insert");
  choose(u"cboxProcRelativePosition1", u"After");
  EXPECT_EQ(made(), "A..{Unknown text}..B NEW..{Unknown text}..C");
  EXPECT_THAT(shown(), HasSubstr("A space is put between"));
}

TEST_F(Preview, TellsDistanceAndOptions) {
  type(u"txtEndText", u"Yours");
  const std::tuple<const char16_t*, const char16_t*, const char*> distances[] = {
      {u"Same", u"Paragraph(s)", "in the same paragraph, or in two that follow each other."},
      {u"1", u"Word(s)", "Besides the words that they stand in, there are no more than 1 word between"},
      {u"25", u"Sentence(s)", "no more than 25 sentences between"},
      {u"2.6", u"Sentence(s)", "no more than 3 sentences between"},
      {u"-1", u"Sentence(s)", "are in the same sentence."},
      {u"-2", u"Entire Document", "anywhere behind the beginning."}};
  for (const auto& [distance, unit, sentence] : distances) {
    list(u"cboxNumberDistanceApart").enter(distance);
    choose(u"cboxUnitDistanceApart", unit);
    EXPECT_THAT(shown(), HasSubstr(sentence));
  }
  EXPECT_THAT(shown(), HasSubstr("taken as the same.  The search starts at the beginning of the document."));
  for (const char16_t* name : {u"chkMatchCase", u"chkMatchWholeWords", u"chkShowFieldCodes"}) tick(name);
  tick(u"chkStartFindsFromBeginning", false);
  EXPECT_THAT(shown(), HasSubstr("told apart.  Only whole words are found.  Fields are searched by their "
                                 "codes, not by what they show.  The search starts at the cursor."));
  type(u"txtFilePath", u"/letters");
  choose(u"cboxProcOperation1", u"Delete");
  EXPECT_THAT(shown(),
              AllOf(HasSubstr("The files in /letters are searched"), HasSubstr("changed without asking.")));
  tick(u"chkConfirmEach");
  EXPECT_THAT(shown(), HasSubstr("You are asked before each change."));
}

TEST_F(Preview, SaysWhatIsMissing) {
  type(u"txtBeginText", u"\r\nDear");
  EXPECT_THAT(shown(), HasSubstr("begins with an empty line"));
  type(u"txtBeginText", u"");
  EXPECT_THAT(shown(), StartsWith("There is nothing to find yet.  Type into 'Find Text that Begins with'"));
  box(u"txtInsideText1").Text(u"sum");
  type(u"txtBeginText", u"Dear");
  EXPECT_THAT(shown(), HasSubstr("Fill in 'And Ends with'"));
  box(u"txtInsideText1").Text(u"");
  choose(u"cboxProcOperation1", u"Insert");
  EXPECT_THAT(shown(), HasSubstr("There is nothing to insert yet"));
  choose(u"cboxProcOperation1", u"Replace");
  EXPECT_THAT(shown(), HasSubstr("the text is taken away."));
  type(u"txtEndText", u"\r\nYours");
  EXPECT_THAT(shown(), HasSubstr("'And Ends with' begins with an empty line"));
  type(u"txtEndText", u"Yours");
  for (const char16_t* distance : {u"-2", u"123456"}) {
    list(u"cboxNumberDistanceApart").enter(distance);
    EXPECT_THAT(shown(), StartsWith("Nothing can be found: 'No farther apart than'"));
  }
}

TEST_F(Preview, IsNoneWhereThePlaceHasNoText) {
  type(u"txtEndText", u"Yours");
  choose(u"cboxProcOperation1", u"Delete");
  choose(u"cboxProcSelection1", u"Ending");
  type(u"txtEndText", u"");
  EXPECT_EQ(shown(), "");
  EXPECT_THAT(told(), ElementsAre("You must fill in 'Ends with' text before selecting an operation on it. | "
                                  "Pluvorama"));
  EXPECT_EQ(list(u"cboxProcSelection1").Text(), u"Selection");
}

}  // namespace
}  // namespace pluvo::host
