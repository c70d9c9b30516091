#include "base/utf.h"
#include "opened_dialog.h"

#include <set>

namespace pluvo::dialog {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class StartUp : public testing::Test, protected OpenedDialog {};

TEST_F(StartUp, HappensOnce) {
  open([&] {
    EXPECT_EQ(dialog().ActiveControl(), &box(u"txtBeginText"));
    type(u"txtBeginText", u"kept");
    dialog().get<forms::MultiPage>(u"MultiPage1").choose(2);
    EXPECT_EQ(forms.repaints, 1) << "redrawn where tabs are switched";
  });
  const std::string tip = display();
  open();
  EXPECT_EQ(box(u"txtBeginText").Text(), u"kept");
  EXPECT_EQ(display(), tip);
  EXPECT_EQ(random.seeds, 1);
  EXPECT_THAT(told(), IsEmpty());
}

TEST_F(StartUp, ShowsATipWhereThatIsSaved) {
  options("r;r;False;False;False;False;False;False;True;False;False;");
  random.next = 0.65F;
  open();
  EXPECT_EQ(display(),
            "Usage Tips:\r\n\r\nFrom the Options Tab you can set up options that will remain permanently for "
            "future find operations by clicking the Save Options button.");
  EXPECT_EQ(box(u"txtOperationDisplay").BackColor(), 0xDFFFFFU);
}

TEST_F(StartUp, FaultBeforeTheReporterIsTheCallers) {
  const auto answering = std::exchange(word, nullptr);
  try {
    open();
    ADD_FAILURE() << "opened without a word processor";
  } catch (const errors::Fault& fault) {
    EXPECT_EQ(fault.number, errors::kObjectNotSet);
  }
  word = answering;
  open();
  EXPECT_THAT(told(), IsEmpty()) << "the next call starts anew";
  EXPECT_EQ(list(u"cboxProcOperation1").ListCount(), 5U);
}

/// Folders fail where the reporter is there already.
TEST_F(StartUp, FaultAfterTheReporterIsThereIsReportedAndLeavesTheDialog) {
  DialogServices without = services();
  without.folders = []() -> std::unique_ptr<scanner::Folders> {
    throw errors::Fault(errors::kOutOfMemory, u"Out of memory");
  };
  restart(without);
  bool seen = false;
  open([&] { seen = true; });
  EXPECT_TRUE(seen);
  EXPECT_EQ(list(u"cboxProcOperation1").ListCount(), 0U);
  EXPECT_THAT(told(),
              ElementsAre("Find Execution has stopped.\r\nIf this issue persists contact "
                          "support@pluvo.example\r\nwith the below information:\r\n\r\nFF:41\r\n\r\nError "
                          "Code(7):Out of memory\r\n | An error has occured in P.L.U.V.O."));
  EXPECT_THAT(log(), HasSubstr("FF:41"));
}

TEST(Tips, AreAllShownInAThousandOpenings) {
  const auto chance = machineRandomSource();
  std::set<std::u16string> seen;
  for (int opening = 0; opening < 1000; ++opening) seen.insert(usageTip(*chance));
  const auto all = usageTips();
  EXPECT_EQ(all.size(), 10U);
  EXPECT_EQ(seen, std::set<std::u16string>(all.begin(), all.end()));
}

TEST(Tips, NeverLieAfterTheLast) {
  ScriptedRandom random;
  const auto all = usageTips();
  for (const float draw : {0.99999994F, 1.0F}) {
    random.next = draw;
    EXPECT_EQ(usageTip(random), all.back());
  }
  random.next = 0;
  EXPECT_EQ(usageTip(random), all.front());
}

class Status : public testing::Test, protected OpenedDialog {};

TEST_F(Status, TellsOverWhatARunGoes) {
  folder.put("letters/a.txt", "x");
  folder.put("letters/b.txt", "x");
  const auto status = [&] { return base::utf8(dialog().StatusText()); };
  open([&] {
    EXPECT_EQ(status(), "No document is open.  Open a document first, or choose a folder.");
    document("a¶");
    dialog().activate();
    EXPECT_EQ(status(), "Execute runs over this document");
    tick(u"chkFTdoc", false);
    tick(u"chkFTtxt");
    type(u"txtFilePath", u16(folder.path("letters/")));
    EXPECT_EQ(status(), "Execute runs over the files in letters");
    press(u"cmdGetPotentialFiles");
    EXPECT_EQ(status(), "Execute runs over 2 files in letters");
    files().select(0);
    press(u"cmdRemoveFiles");
    EXPECT_EQ(status(), "Execute runs over 1 file in letters");
    tick(u"chkFTtxt", false);
    tick(u"chkFTrtf");
    for (const char16_t* search : {u"cmdGetPotentialFiles", u"cmdExecuteFAR"}) {
      press(search);
      EXPECT_EQ(status(), "No files of these types were found in letters");
    }
    tick(u"chkFTtxt");
    if (kOpensFiles) {
      type(u"txtBeginText", u"x");
      choose(u"cboxProcOperation1", u"Insert");
      type(u"txtTextToEnter", u"a\r\nb");
      tick(u"chkConfirmEach");
      press(u"cmdExecuteFAR");
      EXPECT_EQ(status(), "a.txt, file 1 of 2");
      forms::Form& confirmation = *forms.beside.front();
      EXPECT_EQ(confirmation.get<forms::Label>(u"lblFile").Caption(), u"a.txt (1 of 2)");
      EXPECT_EQ(confirmation.get<forms::Label>(u"lblOperation").Caption(),
                u"Insert Before Selection: \"a  b\"");
      forms::press(confirmation, u"cmdSkip");
      EXPECT_EQ(status(), "b.txt, file 2 of 2");
      confirmation.close();
      EXPECT_EQ(status(), "Execute runs over the files in letters");
    }
    type(u"txtFilePath", u"/no such/folder");
    press(u"cmdExecuteFAR");
    EXPECT_EQ(status(), "There is no folder /no such/folder");
    press(u"cmdSaveOptions");
    EXPECT_EQ(status(), "Options saved");
    type(u"txtFilePath", u"");
    EXPECT_EQ(status(), "Execute runs over this document");
    std::filesystem::remove(folder.path("templates/PLUVO/PLUVO.cfg"));
    std::filesystem::create_directory(folder.path("templates/PLUVO/PLUVO.cfg"));
    press(u"cmdSaveOptions");
    EXPECT_EQ(status(), "Execute runs over this document") << "they were not";
  });
}

class Links : public testing::Test, protected OpenedDialog {};

TEST_F(Links, OpenTheDocumentsBesideTheProgram) {
  if (!kOpensFiles) GTEST_SKIP();
  open([&] {
    label(u"lblReadMe").press();
    EXPECT_THAT(reported(), ElementsAre("5174 FF:27"));
    folder.put("program/Readme.txt", "read me");
    label(u"lblReadMe").press();
    EXPECT_EQ(word->ActiveDocument()->Name(), u"Readme.txt");
    EXPECT_THAT(reported(), IsEmpty());
    label(u"lblInstructions").press();
  });
  EXPECT_THAT(reported(), ElementsAre("5174 FF:25"));
  EXPECT_EQ(word->count(), 1);
}

TEST_F(Links, PagesThatCannotBePaintedAreReported) {
  open();
  EXPECT_THAT(reportedWithout(u"painting", [&] { dialog().get<forms::MultiPage>(u"MultiPage1").choose(1); }),
              ElementsAre("7 FF:29"));
}

#ifdef PLUVO_PROGRAMS
TEST_F(Links, OpenWhatIsBuiltForThem) {
  if (!kOpensFiles) GTEST_SKIP();
  DialogServices built = services();
  built.componentFolder = u16(PLUVO_PROGRAMS);
  restart(built);
  const auto text = [&] {
    const auto document = word->ActiveDocument();
    return base::utf8(document->StoryRanges(word::wdMainTextStory)->Text());
  };
  open([&] {
    label(u"lblReadMe").press();
    ASSERT_THAT(told(), IsEmpty());
    EXPECT_THAT(text(), HasSubstr("Keep a copy of documents that have no other."));
    label(u"lblInstructions").press();
    EXPECT_THAT(text(), HasSubstr("Find Text that Begins with.\r\u2022  Type"));
    EXPECT_EQ(word->ActiveDocument()->Name(), u"Instructions.doc");
  });
  EXPECT_EQ(word->count(), 2);
  EXPECT_THAT(told(), IsEmpty());
}
#endif

TEST_F(Links, TryThreeWaysToThePage) {
  open([&] {
    launcher.startable = u"cmd.exe";
    label(u"lblDownloadSite").press();
    EXPECT_THAT(launcher.tried,
                ElementsAre("start http://www.pluvo.example/", "cmd.exe /c start http://www.pluvo.example/"));
    EXPECT_THAT(reported(), IsEmpty());
    launcher.startable.clear();
    launcher.tried.clear();
    label(u"lblDownloadSite").press();
  });
  EXPECT_EQ(launcher.tried.size(), 3U);
  EXPECT_EQ(launcher.tried.back(), "command.com /c start http://www.pluvo.example/");
  EXPECT_THAT(reported(), ElementsAre("53 FF:24"));
}

}  // namespace
}  // namespace pluvo::dialog
