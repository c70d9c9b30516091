#include "find_page/execution.h"

#include "base/utf.h"
#include "errors/reports.h"
#include "opened_dialog.h"

namespace pluvo::dialog {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kHead = "Changes\t\tFile Name\r\n-----------\t\t------------";

class Execution : public testing::Test, protected OpenedDialog {
 protected:
  /// The dialog before a document, asked for "a".
  void begin(std::string_view text) {
    document(text);
    open();
    type(u"txtBeginText", u"a");
  }
  void execute() { press(u"cmdExecuteFAR"); }
  std::u16string notice() {
    return label(u"lblPleaseWait").Visible() ? label(u"lblPleaseWait").Caption() : u"";
  }
};

/// A second engine at the same button: what it was given can be read.
TEST_F(Execution, SendsTheRequestAsItStands) {
  begin("a¶");
  errors::WatchedContext watched;
  clsProcessFind engine({[this] { return word; }, watched.context, boxes, forms});
  const dialog::Execution second(dialog(), dynamic_cast<frmFAR&>(dialog()).pages(), engine, clock, yielding,
                                 {[](const auto& then) { then({}); }});
  engine::Request expected;
  expected.begin = u"a";
  expected.unit = engine::kParagraphs;
  expected.place = static_cast<engine::PlaceCode>(99);  // nothing is chosen
  expected.highlightColour = word::wdYellow;
  expected.startAtTop = true;
  execute();
  EXPECT_EQ(engine.request(), expected);
  EXPECT_FALSE(engine.MultiFileRun());
  const int shown = forms.modalRuns;
  execute();
  EXPECT_EQ(forms.modalRuns, shown + 2) << "the statistics of each engine";
  tick(u"chkQuiteMode");
  execute();
  EXPECT_EQ(forms.modalRuns, shown + 2);
  const std::pair<const char16_t*, bool engine::Request::*> ticks[] = {
      {u"chkMatchWholeWords", &engine::Request::wholeWords},
      {u"chkExtraSpace", &engine::Request::extraSpace},
      {u"chkMatchCase", &engine::Request::matchCase},
      {u"chkShowFieldCodes", &engine::Request::showFieldCodes},
      {u"chkConfirmEach", &engine::Request::confirmEach}};
  for (const auto& [name, field] : ticks) {
    expected.*field = true;
    tick(name);
    execute();
    EXPECT_EQ(engine.request(), expected) << base::utf8(name);
  }

  type(u"txtEndText", u"e");
  type(u"txtInsideText1", u"i");
  list(u"cboxNumberDistanceApart").enter(u"25");
  choose(u"cboxUnitDistanceApart", u"Entire Document");
  choose(u"cboxProcOperation1", u"Insert");
  choose(u"cboxProcRelativePosition1", u"After");
  choose(u"cboxProcSelection1", u"Inside Text");
  type(u"txtTextToEnter", u"t");
  list(u"cboxHighlighters").Text(u"Green");
  tick(u"chkStartFindsFromBeginning", false);
  execute();
  EXPECT_EQ(engine.request(), (engine::Request{u"a", u"e", u"i", 25, engine::kEntireDocument, engine::kInsert,
                                               engine::kInsideText, engine::kAfter, u"t", true, word::wdGreen,
                                               true, true, true, word::kMainTextAlone, false, true, false}));

  choose(u"cboxProcOperation1", u"Replace");
  execute();
  EXPECT_EQ(engine.request().place, 99) << "cleared with the operation";
}

TEST_F(Execution, NeedsAChoiceInEveryListButThePosition) {
  begin("a¶");
  EXPECT_EQ(list(u"cboxProcRelativePosition1").Value(), std::nullopt);
  execute();
  EXPECT_THAT(told(), IsEmpty()) << "no position is none";
  label(u"lblPleaseWait").Visible(true);
  for (const char16_t* name : {u"cboxNumberDistanceApart", u"cboxUnitDistanceApart", u"cboxProcOperation1",
                               u"cboxProcSelection1", u"cboxHighlighters"}) {
    const std::u16string before = list(name).Text();
    list(name).Text(u"");
    execute();
    EXPECT_THAT(reported(), ElementsAre("94 FF:20")) << base::utf8(name);
    EXPECT_FALSE(label(u"lblPleaseWait").Visible()) << "the button's own work goes on";
    list(name).Text(before);
  }
}

TEST_F(Execution, TellsWhereTheSearchStartsIfNotAtTheInsertionPoint) {
  std::vector<document::Content> stories;
  for (const auto kind : {word::wdMainTextStory, word::wdFootnotesStory}) {
    stories.push_back(notation::parse("a¶").content);
    stories.back().kind = kind;
  }
  const auto document = memory::MemoryDocument::create(std::move(stories));
  word->add(document);
  open();
  type(u"txtBeginText", u"a");
  tick(u"chkQuiteMode");
  for (const std::size_t story : {0U, 1U}) {
    for (const bool atTop : {true, false}) {
      document->select(story, {1, 1});
      tick(u"chkStartFindsFromBeginning", atTop);
      execute();
      EXPECT_EQ(told(), story == 0 || atTop
                            ? std::vector<std::string>{}
                            : std::vector<std::string>{
                                  "The insertion point is in a header, a footer, a note or a text box.  The "
                                  "search starts at the top of the document. | Pluvorama"});
    }
  }
}

TEST_F(Execution, NeedsADocumentOrAFolder) {
  open();
  type(u"txtBeginText", u"a");
  for (const bool confirms : {false, true}) {
    tick(u"chkConfirmEach", confirms);
    execute();
    EXPECT_THAT(told(), ElementsAre("Open a document first | Pluvorama"));
    EXPECT_EQ(dialog().WindowState(), 0);
  }
  type(u"txtFilePath", u16(folder.path("documents")));
  execute();
  EXPECT_THAT(told(), IsEmpty());
}

TEST_F(Execution, ConfirmsBlockByBlock) {
  begin("a a a¶");
  choose(u"cboxProcOperation1", u"Replace");
  type(u"txtTextToEnter", u"b");
  tick(u"chkConfirmEach");
  tick(u"chkQuiteMode");
  std::vector<int> states;
  forms.changes = [&](forms::Form&) { states.push_back(dialog().WindowState()); };
  execute();
  EXPECT_THAT(states, ElementsAre(1)) << "before the block is shown";
  EXPECT_EQ(yielding.yields, 0) << "no notice where each is confirmed";
  EXPECT_EQ(dialog().WindowState(), 1) << "out of the way of the block";
  ASSERT_EQ(forms.beside.size(), 1U);
  forms::Form& confirmation = *forms.beside.front();
  EXPECT_EQ(word->Selection()->Text(), u"a");
  forms::press(confirmation, u"cmdPerform");
  forms::press(confirmation, u"cmdSkip");
  forms::press(confirmation, u"cmdPerform");
  EXPECT_THAT(forms.beside, IsEmpty());
  EXPECT_EQ(dialog().WindowState(), 0) << "back again";
  EXPECT_EQ(document(), "b a b¶");
  tick(u"chkConfirmEach", false);
  execute();
  EXPECT_EQ(dialog().WindowState(), 0);
  EXPECT_EQ(document(), "b b b¶");
}

TEST_F(Execution, PausesForTheNotice) {
  begin("a¶");
  tick(u"chkQuiteMode");
  std::u16string seen;
  bool mirrored = false;
  yielding.meanwhile = [&] {
    seen = notice();
    mirrored = label(u"lblPleaseWait2").Visible() && label(u"lblPleaseWait2").Caption() == seen;
  };
  execute();
  EXPECT_EQ(seen, u"\r\n\r\nNon-Confirmation Quiet Mode.  Please Wait while your requests are processed...");
  EXPECT_TRUE(mirrored) << "the find page shows it";
  EXPECT_EQ(yielding.yields, 5) << "until more than half a second went by, an eighth at a time";
  EXPECT_EQ(notice(), u"");
  EXPECT_FALSE(label(u"lblPleaseWait2").Visible());
}

TEST_F(Execution, PausesOverMidnightUntilTheClockIsPastTheStart) {
  begin("a¶");
  tick(u"chkQuiteMode");
  clock.now = 86399.75;
  bool overMidnight = false;
  double last = 0;
  yielding.meanwhile = [&] {
    if (clock.now < 1) overMidnight = true;
    if (overMidnight && clock.now < 86000) clock.now = 86399.5;  // a day goes by
    last = clock.now;
  };
  execute();
  EXPECT_TRUE(overMidnight);
  EXPECT_EQ(last, 86399.875);
  EXPECT_LT(yielding.yields, 10);
}

/// A folder of texts.
class FolderExecution : public Execution {
 protected:
  FolderExecution() {
    for (const char* name : {"one.txt", "two.txt", "three.txt", "note.rtx"})
      folder.put(std::string("documents/") + name, "a b a\r\n");
    open();
    type(u"txtBeginText", u"a");
    choose(u"cboxProcOperation1", u"Replace");
    type(u"txtTextToEnter", u"c");
    type(u"txtFilePath", u16(folder.path("documents")));
    tick(u"chkFTdoc", false);
    tick(u"chkFTtxt");
    tick(u"chkQuiteMode");
  }
  std::string get(const std::string& name) { return folder.get("documents/" + name); }
};

TEST_F(FolderExecution, RunsOverTheFilesListedAndTrimmed) {
  if (!kOpensFiles) GTEST_SKIP();
  press(u"cmdGetPotentialFiles");
  ASSERT_EQ(files().ListCount(), 3U);
  files().select(1);
  press(u"cmdRemoveFiles");
  execute();
  EXPECT_EQ(get("one.txt"), "c b c\r\n");
  EXPECT_EQ(get("three.txt"), "a b a\r\n") << "removed from the list";
  EXPECT_EQ(get("two.txt"), "c b c\r\n");
  EXPECT_EQ(display(), std::string(kHead) + "\r\n   2\t\tone.txt\r\n   2\t\ttwo.txt");
  execute();
  EXPECT_EQ(display(), std::string(kHead) + "\r\n   0\t\tone.txt\r\n   0\t\ttwo.txt")
      << "a summary of its own";
  EXPECT_EQ(box(u"txtOperationDisplay").BackColor(), forms::kWhite);
  EXPECT_THAT(told(), IsEmpty());
}

TEST_F(FolderExecution, LocatesTheFilesWhereNoneAreListed) {
  if (!kOpensFiles) GTEST_SKIP();
  tick(u"chkQuiteMode", false);
  std::vector<std::u16string> notices;
  forms.painted = [&](forms::Form&) { notices.push_back(notice()); };
  execute();
  EXPECT_EQ(statistics.size(), 3U);
  EXPECT_EQ(get("three.txt"), "c b c\r\n");
  EXPECT_EQ(get("note.rtx"), "a b a\r\n");
  EXPECT_THAT(notices, ElementsAre(u"\r\n\r\nPlease wait while Locating files...", u"", u""));
  EXPECT_EQ(files().ListCount(), 0U) << "the list is the user's";
}

TEST_F(FolderExecution, OfNothingChangesNothing) {
  type(u"txtFilePath", u16(folder.path("nowhere")));
  execute();
  EXPECT_EQ(display(), kHead);
  EXPECT_THAT(told(), IsEmpty());
  list(u"cboxLevelsDeep").enter(u"deep");
  type(u"txtFilePath", u16(folder.path("documents")));
  execute();
  EXPECT_THAT(reported(), ElementsAre("13 FF:06"));
  EXPECT_EQ(get("one.txt"), "a b a\r\n") << "a depth that is no number finds nothing";
}

TEST_F(FolderExecution, WithoutAFolderIsOfTheDocument) {
  press(u"cmdGetPotentialFiles");
  document("a¶");
  box(u"txtFilePath").Text(u"");
  files().items({u"ignored"});
  execute();
  EXPECT_EQ(document(), "c¶");
  EXPECT_EQ(get("one.txt"), "a b a\r\n");
}

TEST_F(FolderExecution, ConfirmedLeavesTheDisplay) {
  if (!kOpensFiles) GTEST_SKIP();
  tick(u"chkConfirmEach");
  const std::string before = display();
  execute();
  ASSERT_EQ(forms.beside.size(), 1U);
  while (!forms.beside.empty()) forms::press(*forms.beside.front(), u"cmdPerform");
  for (const char* name : {"one.txt", "two.txt", "three.txt"}) EXPECT_EQ(get(name), "c b c\r\n");
  EXPECT_EQ(display(), before);
}

}  // namespace
}  // namespace pluvo::dialog
