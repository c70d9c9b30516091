#include "opened_dialog.h"

namespace pluvo::dialog {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// In the file's order.
constexpr const char16_t* kKept[] = {
    u"chkMatchWholeWords", u"chkExtraSpace",  u"chkMatchCase", u"chkStartFindsFromBeginning",
    u"chkQuiteMode",       u"chkConfirmEach", u"chkToolTips",  u"chkControlVButton",
    u"chkShowFieldCodes"};

class OptionsFile : public testing::Test, protected OpenedDialog {
 protected:
  /// The boxes as "1" and "0".
  std::string ticks() {
    std::string ticks;
    for (const char16_t* name : kKept) ticks += check(name).Value() ? '1' : '0';
    return ticks;
  }
};

constexpr const char* kDesigned = "000100100";

TEST_F(OptionsFile, WithoutOneTheDesignStands) {
  open();
  EXPECT_EQ(ticks(), kDesigned);
  EXPECT_THAT(told(), IsEmpty());
}

TEST_F(OptionsFile, RestoresWhatWasSaved) {
  open([&] {
    for (const char16_t* name : kKept) tick(name);
    press(u"cmdSaveOptions");
    EXPECT_EQ(options(), "PLUVO;Options;True;True;True;True;True;True;True;True;True;\r\n");
    tick(u"chkMatchCase", false);
    tick(u"chkToolTips", false);
    tick(u"chkShowFieldCodes", false);
    press(u"cmdSaveOptions");
    tick(u"chkQuiteMode", false);
  });
  restart();
  open();
  EXPECT_EQ(ticks(), "110111010");
  EXPECT_EQ(display(), "") << "no tip, as saved";
  EXPECT_THAT(told(), IsEmpty());
}

TEST_F(OptionsFile, KeepsTheReservedFields) {
  options("  \"one,\xFF;two;False;False;False;False;False;False;False;False;False;\" rest");
  open([&] {
    tick(u"chkExtraSpace");
    press(u"cmdSaveOptions");
  });
  EXPECT_EQ(options(), "one,\xFF;two;False;True;False;False;False;False;False;False;False;\r\n");
}

TEST_F(OptionsFile, DamagedIsReportedAndLeavesAUsableDialog) {
  const std::string eight = "r;r;True;True;True;False;True;True;False;True;";
  const struct {
    std::string bytes;
    std::string ticks;
    std::vector<std::string> reports;
  } cases[] = {{"", kDesigned, {"62 FF:02"}},
               {"\r\n", kDesigned, {"9 FF:02"}},
               {"  ", kDesigned, {"9 FF:02"}},
               {"r", kDesigned, {"9 FF:02"}},
               {"r;r;", kDesigned, {"13 FF:02"}},       // an empty value
               {"r;r;True", "100100100", {"9 FF:02"}},  // the second box reads past the last field
               {eight + "True", "111011011", {}},
               {eight + "True;\r\nsecond line", "111011011", {}},
               {eight.substr(0, eight.size() - 1), "111011010", {"9 FF:02"}},
               {eight, "111011010", {"13 FF:02"}},
               {"r;r;TRUE;-1;0;false;true;1;False;Yes;True;", "110011000", {"13 FF:02"}},
               {"r,r;True;", kDesigned, {"9 FF:02"}},  // a comma ends the field
               {std::string(100000, 'x'), kDesigned, {"9 FF:02"}},
               {std::string("\0;\xFF;\0", 5), kDesigned, {"13 FF:02"}}};
  for (const auto& it : cases) {
    folder.put("templates/PLUVO/PLUVO.cfg", it.bytes);
    restart();
    open();
    EXPECT_EQ(ticks(), it.ticks) << it.bytes.substr(0, 80);
    EXPECT_EQ(reported(), it.reports) << it.bytes.substr(0, 80);
    EXPECT_EQ(list(u"cboxLevelsDeep").ListCount(), 10U) << "start-up goes on";
  }
}

TEST_F(OptionsFile, ThatCannotBeOpenedIsNone) {
  std::filesystem::create_directories(folder.path("templates/PLUVO/PLUVO.cfg"));
  open();
  EXPECT_EQ(ticks(), kDesigned);
  EXPECT_THAT(told(), IsEmpty());
  press(u"cmdSaveOptions");
  EXPECT_THAT(reported(), ElementsAre("75 FF:03"));
}

TEST_F(OptionsFile, MakesTheDataFolderWhenItIsSaved) {
  open();
  EXPECT_FALSE(std::filesystem::exists(folder.path("templates")));
  press(u"cmdSaveOptions");
  EXPECT_EQ(options(), "PLUVO;Options;False;False;False;True;False;False;True;False;False;\r\n");
  EXPECT_THAT(told(), IsEmpty());
}

TEST_F(OptionsFile, WithATickOfAnotherKindIsNotSaved) {
  open();
  forms::Label other(u"chkOther", u"");
  dialog().get<forms::MultiPage>(u"MultiPage1").Pages()[2]->add(other);
  press(u"cmdSaveOptions");
  EXPECT_EQ(reported().front(), "91 FF:01");
}

/// Neither can the log: a line of the report says so.
TEST_F(OptionsFile, WithoutADataFolderSavingIsTold) {
  folder.put("templates", "no folder");
  open();
  press(u"cmdSaveOptions");
  EXPECT_THAT(told(), ElementsAre(testing::AllOf(testing::HasSubstr("FF:03"),
                                                 testing::HasSubstr("PLUVO.cfg\": see that its folder"),
                                                 testing::HasSubstr("errors.txt\": see that its folder"))));
}

}  // namespace
}  // namespace pluvo::dialog
