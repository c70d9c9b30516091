#include "base/utf.h"
#include "dialog/frmDirectoryBrowser.h"
#include "opened_dialog.h"
#include "scanner/scripted_folders.h"

#include <algorithm>

namespace pluvo::dialog {
namespace {

using testing::ElementsAre;

/// The rows, joined by commas.
std::string rowsOf(const forms::ListBox& list) {
  std::string rows;
  for (std::size_t row = 0; row < list.ListCount(); ++row)
    rows += (row == 0 ? "" : ",") + base::utf8(list.List(row));
  return rows;
}

struct WordWithoutOptions : memory::MemoryApplication {
  std::shared_ptr<word::Options> Options() override {
    return without ? nullptr : MemoryApplication::Options();
  }
  bool without = false;
};

class FilesPage : public testing::Test, protected OpenedDialog {
 protected:
  FilesPage() {
    DialogServices scripted = services();
    scripted.folders = [] {
      return std::make_unique<scanner::ScriptedFolders>(
          std::vector<std::string>{"/d/a.doc", "/d/b.DOT", "/d/c.txt", "/d/d.rtf", "/d/e.htm", "/d/f.bat",
                                   "/d/sub/g.doc", "/d/sub/deep/h.doc", "/here/now/x.doc"});
    };
    restart(scripted);
    open();
    type(u"txtFilePath", u"/d");
  }
  std::string listed() {
    press(u"cmdGetPotentialFiles");
    return rowsOf(files());
  }
  std::u16string count() { return label(u"lblFound").Caption(); }
};

TEST_F(FilesPage, ListsTheTypesTicked) {
  const std::string all = "/d/a.doc,/d/b.DOT,/d/c.txt,/d/d.rtf,/d/e.htm,/d/f.bat";
  const struct {
    std::u16string ticked;
    const char16_t* other;
    std::string files;
    const char16_t* count;
  } cases[] = {{u"doc", u"bat", "/d/a.doc", u"1"},
               {u"dot txt", u"", "/d/b.DOT,/d/c.txt", u"2"},
               {u"rtf htm", u"", "/d/d.rtf,/d/e.htm", u"2"},
               {u"other", u"bat", "/d/f.bat", u"1"},
               {u"other", u"*", all, u"6"},
               {u"other", u"", "", u"0"},
               {u"", u"", all, u"6"},
               {u"doc other", u"doc", "/d/a.doc", u"1"}};
  for (const auto& it : cases) {
    for (const std::u16string kind : {u"doc", u"dot", u"txt", u"rtf", u"htm", u"other"})
      tick((u"chkFT" + kind).c_str(), it.ticked.find(kind) != it.ticked.npos);
    type(u"txtFileTypeOther", it.other);
    EXPECT_EQ(listed(), it.files);
    EXPECT_EQ(count(), u"Files Found: " + std::u16string(it.count));
  }
}

TEST_F(FilesPage, TakesTheQuotesOffAPastedPath) {
  const std::pair<const char16_t*, const char16_t*> cases[] = {
      {u"\"C:\\a b\"", u"C:\\a b"}, {u"'/a b'", u"/a b"}, {u"\"C:\\a", u"\"C:\\a"}, {u"\"\"", u"\"\""}};
  for (const auto& [typed, path] : cases) {
    type(u"txtFilePath", typed);
    EXPECT_EQ(box(u"txtFilePath").Text(), path);
  }
}

TEST_F(FilesPage, GoesAsDeepAsChosen) {
  tick(u"chkSubDirectories");
  EXPECT_EQ(listed(), "/d/a.doc,/d/sub/deep/h.doc,/d/sub/g.doc");
  choose(u"cboxLevelsDeep", u"1");
  EXPECT_EQ(listed(), "/d/a.doc,/d/sub/g.doc");
  type(u"txtFilePath", u"/d/");
  choose(u"cboxLevelsDeep", u"2");
  EXPECT_EQ(listed(), "/d/a.doc,/d/sub/deep/h.doc,/d/sub/g.doc");
  tick(u"chkSubDirectories", false);
  EXPECT_EQ(listed(), "/d/a.doc");
  list(u"cboxLevelsDeep").enter(u"deep");
  EXPECT_EQ(listed(), "");
  EXPECT_THAT(reported(), ElementsAre("13 FF:06"));
}

struct MockStepper : FileStepper {
  using Engine = clsProcessFind;
  using Paths = std::vector<std::u16string>;
  MOCK_METHOD(Paths, GetFiles, (Engine&, bool, std::int16_t), (override));
  MOCK_METHOD(void, MultiPLUVO, (Engine&, const Paths&), (override));
  MOCK_METHOD(bool, MultiPLUVO_OpenNextFile, (Engine&, const Paths&, std::int32_t&), (override));
  MOCK_METHOD(void, MultiPLUVO_CloseFile, (Engine&), (override));
  MOCK_METHOD(std::u16string, BrowseForFolder, (Engine&, const std::u16string&), (override));
  MOCK_METHOD(std::shared_ptr<word::Document>, currentDocument, (), (override));
};

TEST_F(FilesPage, TakesAllLevelsForAsManyAsCanBe) {
  const auto stepper = std::make_shared<testing::StrictMock<MockStepper>>();
  clsProcessFind* engine = nullptr;
  DialogServices watched = services();
  watched.engineMade = [&](clsProcessFind& made) { engine = &made; };
  restart(watched);
  open();
  engine->stepper(stepper);
  type(u"txtFilePath", u"/d");
  for (const auto& [text, levels] : {std::pair(u"All", std::int16_t{32000}), {u"9", std::int16_t{9}}}) {
    choose(u"cboxLevelsDeep", text);
    EXPECT_CALL(*stepper, GetFiles(testing::_, false, levels))
        .WillOnce(testing::Return(MockStepper::Paths{u""}));
    listed();
  }
}

TEST_F(FilesPage, ShowsThatItSearches) {
  std::vector<std::u16string> seen;
  forms.painted = [&](forms::Form&) {
    if (label(u"lblPleaseWait").Visible()) seen = {label(u"lblPleaseWait").Caption(), count()};
  };
  listed();
  EXPECT_THAT(seen, ElementsAre(u"\r\n\r\nSearching through Directories...", u"Files Found: "));
  EXPECT_FALSE(label(u"lblPleaseWait").Visible());
  type(u"txtFilePath", u"");
  seen.clear();
  EXPECT_EQ(listed(), "");
  EXPECT_TRUE(seen.empty()) << "without a folder nothing happens";
  EXPECT_EQ(count(), u"Files Found: 1");
}

TEST_F(FilesPage, TrimsTheList) {
  tick(u"chkFTdoc", false);
  listed();
  for (const std::size_t row : {0U, 2U, 4U}) files().select(row);
  press(u"cmdRemoveFiles");
  EXPECT_EQ(rowsOf(files()), "/d/b.DOT,/d/d.rtf,/d/f.bat");
  files().select(1);
  press(u"cmdChooseFiles");
  EXPECT_EQ(rowsOf(files()), "/d/d.rtf");
  EXPECT_EQ(count(), u"Files Found: 6") << "as it was found";
  type(u"txtFilePath", u"/e");
  EXPECT_EQ(files().ListCount(), 0U) << "a list belongs to its folder";
}

TEST_F(FilesPage, BrowsesForAFolder) {
  word->defaultFilePath(word::wdDocumentsPath, u"/here/now");
  listed();
  answers = [](forms::Form& form) {
    EXPECT_EQ(form.Name(), u"frmDirectoryBrowser");
    EXPECT_EQ(form.control(u"cmdSelectDirectory")->Caption(), u"Select");
    EXPECT_FALSE(form.control(u"Drive1")->Visible()) << "there are none";
    const auto& folders = form.get<forms::ListBox>(u"Dir1");
    EXPECT_EQ(rowsOf(folders), "/,  here,    now");
    folders.open(0);
    EXPECT_EQ(rowsOf(folders), "/,  d,  here");
    folders.open(1);
    folders.open(2);
    EXPECT_EQ(form.control(u"lblPath")->Caption(), u"/d/sub");
    forms::press(form, u"cmdSelectDirectory");
  };
  press(u"cmdBrowse");
  EXPECT_EQ(box(u"txtFilePath").Text(), u"/d/sub");
  EXPECT_EQ(files().ListCount(), 0U);
  answers = [](forms::Form& form) {
    form.get<forms::ListBox>(u"Dir1").open(0);
    form.close();
  };
  press(u"cmdBrowse");
  EXPECT_EQ(box(u"txtFilePath").Text(), u"/d/sub") << "closing the window chooses nothing";
}

TEST(Picker, FollowsTheDrive) {
  scanner::ScriptedFolders folders(
      {"c:\\docs\\a\\x.doc", "c:\\docs\\hidden\\x.doc", "c:\\docs\\.dotted\\x.doc", "d:\\y\\z.doc"}, "\\");
  folders.hide("c:\\docs\\hidden");
  folders.driveNames = {u"c:", u"d:", u"e:"};
  forms::ScriptedForms host;
  frmDirectoryBrowser picker(host, folders, u"\\");
  EXPECT_EQ(picker.path(), u"c:\\");
  picker.SetStartingDirectory(u"/docs");
  EXPECT_EQ(picker.path(), u"c:\\") << "no drive path";
  picker.SetStartingDirectory(u"c:\\docs");
  EXPECT_EQ(picker.Drive1.Text(), u"c:");
  picker.SetStartingDirectory(u"D:\\");
  EXPECT_EQ(picker.Drive1.Text(), u"d:") << "in whatever case";
  picker.SetStartingDirectory(u"c:\\docs");
  EXPECT_EQ(rowsOf(picker.Dir1), "c:\\,  docs,    a");
  picker.SetStartingDirectory(u"d:\\nowhere");
  EXPECT_EQ(picker.path(), u"d:\\") << "as far as the drive";
  picker.Drive1.choose(2);
  EXPECT_EQ(picker.path(), u"d:\\") << "a drive that is not ready";
  host.user = [&](forms::Form&) {
    EXPECT_FALSE(picker.selected());
    picker.Drive1.choose(0);
    picker.cmdSelectDirectory.press();
  };
  picker.choose();
  EXPECT_TRUE(picker.selected());
  EXPECT_EQ(picker.path(), u"c:\\");
}

TEST_F(FilesPage, FaultsAreReportedWithTheirTags) {
  const std::tuple<const char16_t*, const char16_t*, const char*> cases[] = {
      {u"txtFilePath", u"cmdBrowse", "7 cpf:40"},
      {u"lbxPotentialFiles", u"cmdChooseFiles", "7 FF:05"},
      {u"lblPleaseWait", u"cmdGetPotentialFiles", "7 FF:07"},
      {u"lbxPotentialFiles", u"cmdRemoveFiles", "7 FF:08"}};
  answers = [](forms::Form& form) { forms::press(form, u"cmdSelectDirectory"); };
  for (const auto& [failing, button, report] : cases) {
    files().items({u"a", u"b"});
    files().select(0);
    EXPECT_THAT(reportedWithout(failing, [&, name = button] { press(name); }), ElementsAre(report));
  }
  EXPECT_THAT(reportedWithout(u"lbxPotentialFiles", [&] { type(u"txtFilePath", u"/e"); }),
              ElementsAre("7 FF:36"));
  const auto forgetful = std::make_shared<WordWithoutOptions>();
  forgetful->defaultFilePath(word::wdUserTemplatesPath, u16(folder.path("templates")));
  word = forgetful;
  restart();
  open();
  forgetful->without = true;
  press(u"cmdBrowse");
  EXPECT_THAT(reported(), ElementsAre("91 FF:04"));
}

}  // namespace
}  // namespace pluvo::dialog
