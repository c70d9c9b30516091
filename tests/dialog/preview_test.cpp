#include "opened_dialog.h"

namespace pluvo::dialog {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class Preview : public testing::Test, protected OpenedDialog {
 protected:
  Preview() {
    document("Dear Sir¶");
    auto here = services();
    here.engineMade = [this](clsProcessFind& made) { engine = &made; };
    restart(std::move(here));
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
  clsProcessFind* engine = nullptr;
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
      {u"-2", u"Entire Document", "The ending may be anywhere after the beginning."}};
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
  EXPECT_THAT(shown(), HasSubstr("which counts although the box is greyed."));
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

/// A row: the texts, whether limits are lifted, and the text shown.
TEST_F(Preview, TellsWhatBecomesOfSeveralLines) {
  const std::string kept = "Of 'Find Text that Begins with' the first line is looked for, or 255 characters.";
  const std::tuple<const char16_t*, const char16_t*, bool, std::string, std::string> cases[] = {
      {u"A\r\nB\r\n", u"C\r\n", true, "A\r\nB\u00B6\r\n..{Unknown text}..C\u00B6\r\n\r\n",
       "Only whole words"},
      {u"\r\nA", u"\r\n", true, "\r\nA..{Unknown text}..\u00B6\r\n", "Only whole words are found."},
      {u"A\r\nB", u"", false, "\r\nA\r\nB\r\n\r\n", kept},
      {u"A\r\nB", u"", false, "", "Choose 'Beginning' to operate on the whole text."},
      {u"A\r\nB", u"C", false, "",
       "the whole text has to stand letter for letter, capitals too.  Parts of words "},
      {u"A\r\nB", u"C", false, "", "and its distance counted, from the end of the first line,"},
      {u"A", u"\r\nC", false, "'And Ends with' begins with an empty line", "or clear the box."}};
  for (const auto& [begin, end, lifted, text, sentence] : cases) {
    SCOPED_TRACE(sentence);
    engine->LiftLimitsSetting(lifted);
    type(u"txtBeginText", begin);
    type(u"txtEndText", end);
    tick(u"chkMatchWholeWords");
    choose(u"cboxProcOperation1", u"Delete");
    EXPECT_THAT(shown(), AllOf(HasSubstr(text), HasSubstr(sentence)));
  }
  list(u"cboxProcSelection1").Text(u"Ending");
  EXPECT_THAT(shown(),
              HasSubstr("The operation will change nothing: it is on 'Ending', and 'And Ends with' is not"));
  engine->LiftLimitsSetting(true);
  choose(u"cboxProcOperation1", u"Insert");
  type(u"txtTextToEnter", u"N\r\n");
  EXPECT_THAT(shown(), HasSubstr("N\u00B6\r\n\r\nC"));
}

TEST_F(Preview, TellsOfTheExtraSpaceThatStays) {
  choose(u"cboxProcOperation1", u"Insert");
  type(u"txtTextToEnter", u"NEW");
  tick(u"chkExtraSpace");
  press(u"cmdExecuteFAR");
  tick(u"chkExtraSpace", false);
  EXPECT_EQ(made(), "NEW Dear");
  EXPECT_THAT(shown(), HasSubstr("asked for before, and stays"));
  type(u"txtTextToEnter", u"");
  EXPECT_THAT(shown(), HasSubstr("Only the extra space is put in."));
}

TEST_F(Preview, IsGreyedByWhatChangesAfterIt) {
  const auto greyed = [&] {
    return box(u"txtOperationDisplay").BackStyle() == forms::BackStyle::transparent;
  };
  const std::function<void()> changes[] = {[&] { type(u"txtBeginText", u"Sir"); },
                                           [&] { type(u"txtFilePath", u"/letters"); },
                                           [&] { choose(u"cboxProcOperation1", u"Delete"); },
                                           [&] { list(u"cboxNumberDistanceApart").enter(u"3"); },
                                           [&] { tick(u"chkMatchCase", !check(u"chkMatchCase").Value()); }};
  for (const auto& change : changes) {
    const std::string before = shown();
    EXPECT_FALSE(greyed());
    change();
    EXPECT_TRUE(greyed());
    EXPECT_EQ(display(), before);
  }
  shown();
  tick(u"chkToolTips", !check(u"chkToolTips").Value());
  EXPECT_FALSE(greyed()) << "it tells nothing of that";
  box(u"txtOperationDisplay").Text(u"a summary");
  type(u"txtBeginText", u"Madam");
  EXPECT_FALSE(greyed());
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
}  // namespace pluvo::dialog
