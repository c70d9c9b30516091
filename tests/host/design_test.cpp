#include "errors/text.h"
#include "opened_dialog.h"

#include <map>

namespace pluvo::host {
namespace {

struct Listed {
  std::string name, kind, text, tip;
  bool operator==(const Listed&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Listed& it) {
  return out << it.name << " | " << it.kind << " | " << it.text << " | " << it.tip;
}

/// What users see, control by control, as the manual has it.
const std::vector<Listed> kListed = {
    // pgFindAndReplace
    {"lblBeginText", "label", "Find Text that Begins with", ""},
    {"txtBeginText", "text box of several lines", "",
     "Type, Ctrl-V Paste*, or Right-Click Select - the beginning portion of your text to find here "
     "(Required)"},
    {"lblEndText", "label", "And Ends with", ""},
    {"txtEndText", "text box of several lines", "",
     "Type, Ctrl-V Paste*, or Right-Click Select - the ending portion of your text to find here"},
    {"lblInsideText1", "label", "Inside Text", ""},
    {"txtInsideText1", "text box of several lines off", "",
     "Type, Ctrl-V Paste*, or Right-Click Select - additional text here that will restrict the large block "
     "find a little further"},
    {"Label3", "label", "No farther apart than", ""},
    {"cboxNumberDistanceApart", "combo box", "Same",
     "Choose the distance that the End of the 'Begins with' and Beginning of the 'Ends with' text are "
     "allowed to be"},
    {"cboxUnitDistanceApart", "combo box", "Paragraph(s)",
     "Choose the distance that the End of the 'Begins with' and Beginning of the 'Ends with' text are "
     "allowed to be"},
    {"lblOperation1", "label", "Operation", ""},
    {"cboxProcOperation1", "combo box", "None", "Choose an operation"},
    {"Label2", "label", "After finding the text perform the following operation on it", ""},
    {"cboxProcSelection1", "combo box off", "Selection", "Choose a location to operate on"},
    {"cboxProcRelativePosition1", "combo box off", "", ""},
    {"lblOpThis1", "label", "with the following", ""},
    {"txtTextToEnter", "text box of several lines off", "",
     "When you choose insert or replace this is the text that will be used for the operation"},
    {"Label1", "label", "Optionally, the above captured text will also contain", ""},
    {"cboxHighlighters", "combo box hidden", "Yellow", "Color up your document"},
    {"txtOperationDisplay", "text box of several lines read-only", "", ""},
    {"cmdViewOperation", "button", "View Current Operation",
     "Take a look at what the above Find && Operate Procedure will perform"},
    {"cmdExecuteFAR", "button", "Execute Current Operation",
     "Begin parsing through the text performing the operation specified"},
    {"lblFind", "label", "Find", ""},
    {"Image1", "picture", "", ""},
    {"lblPleaseWait2", "label hidden", "", ""},
    // pgMultiFiles
    {"lblMultiFileInstructions", "label",
     "This will allow you to process multiple files with the single Find & Replace Operation.", ""},
    {"lblPathChoosing", "label", "Type or Browse to the path for the files you wish to process", ""},
    {"txtFilePath", "text box", "", "If empty only the current document will be processed."},
    {"cmdBrowse", "button", "Browse", "Browse to find the folder location you wish to process"},
    {"chkSubDirectories", "check box", "Include Sub Directories", ""},
    {"lblLevelsDeep", "label", "Sub Directory Levels", ""},
    {"cboxLevelsDeep", "combo box", "All", "Choose how deep into the directory structure you want to search"},
    {"Label11", "label", "File Types To Process", ""},
    {"chkFTdoc", "check box", "*.doc", ""},
    {"chkFTdot", "check box", "*.dot", ""},
    {"chkFTtxt", "check box", "*.txt", ""},
    {"chkFTrtf", "check box", "*.rtf", ""},
    {"chkFThtm", "check box", "*.htm", ""},
    {"chkFTother", "check box", "", "Choose a file Extention"},
    {"txtFileTypeOther", "text box", "",
     "Type in file extension (e.g. bat, ini, pol, pl, * ) *** Caution using *.* as it will pick up "
     "executable files see Instructions Doc for more info ***"},
    {"lblFileTypeOther", "label", "*.", ""},
    {"Image2", "picture", "", "Choose what file extensions will be processed"},
    {"Label10", "label",
     "By Default PLUVO will operate on all files found, but if you would like to remove certain files from "
     "the list click the List Potential Files button and then Choose or Remove Files to be processed.",
     ""},
    {"cmdGetPotentialFiles", "button", "List Potential Files To Process",
     "Create a list of files based on the above criteria"},
    {"cmdRemoveFiles", "button", "Remove Selected Files From List",
     "Remove the below highlighted files from processing"},
    {"cmdChooseFiles", "button", "Choose Only Selected Files From List",
     "Choose only the highlighted files below for processing"},
    {"lbxPotentialFiles", "list box of several", "", ""},
    {"lblPleaseWait", "label hidden", "Searching though Directories...", ""},
    {"lblFound", "label", "Files Found:", ""},
    // Options
    {"chkMatchWholeWords", "check box", "Match Whole Words Only",
     "Microsoft® Word® Stanadard Whole Word Matching"},
    {"chkExtraSpace", "check box", "Include Extra Space when inserting text",
     "Adds an extra space after text when performing inserts"},
    {"chkMatchCase", "check box", "Match Case", "Microsoft® Word® Standard Match Case"},
    {"chkStartFindsFromBeginning", "check box", "Start all Finds from Beginning of Document",
     "Alternatively, start all finds from cursor location"},
    {"chkQuiteMode", "check box", "Quiet Mode",
     "This will stop other information prompts like number of occurances etc.."},
    {"chkConfirmEach", "check box", "Confirm Each Operation",
     "Brings up confirmation box for each found occurance before making any changes"},
    {"cmdSaveOptions", "button", "Save Options", "Save your options for future uses"},
    {"chkToolTips", "check box", "Tool Tips", "Enables the Tool Tips to show up each time you start"},
    {"chkControlVButton", "check box", "Ctrl+V Inserts Selected/Highligted Data (off = Paste from Clipboard)",
     "If checked will insert highlighted text into the text box selected. If off or if nothing is selected, "
     "it will paste text from the clipboard - see Instructions for more information"},
    {"Label12", "label", "View a document:", ""},
    {"lblReadMe", "link label", "ReadMe", "Open ReadMe Document"},
    {"lblInstructions", "link label", "Instructions", "Open Instructions Document"},
    {"chkShowFieldCodes", "check box", "Show Field Codes", ""},
    // pgAbout
    {"lblProduct", "label", "P.L.U.V.O.", ""},
    {"lblProductLong", "label", "Pluvorama", ""},
    {"lblVersion", "label", "Version 1.3", ""},
    {"Label4", "label", "Finds blocks of text:", ""},
    {"Label5", "label", "a beginning, an ending, and what stands between them", ""},
    {"Label6", "label", "Operates on them:", ""},
    {"Label7", "label", "inserts, replaces, deletes, or highlights", ""},
    {"Label8", "label", "Where you want it:", ""},
    {"Label9", "label", "in the current document, or in all the files of a folder", ""},
    {"lblNotice", "label",
     "PLUVO changes what you tell it to change.  Keep a copy of documents that have no other.", ""},
    {"lblSupport", "label", "Questions are welcome: tell our support what you wanted to do.", ""},
    {"lblDownloadSite", "link label", "Download your Fresh PLUVO today!", ""},
};

std::string kindOf(const forms::Control& control) {
  using forms::ControlKind;
  if (const auto* label = dynamic_cast<const forms::Label*>(&control); label && label->IsLink())
    return "link label";
  static const std::map<ControlKind, std::string> kinds = {
      {ControlKind::label, "label"},        {ControlKind::commandButton, "button"},
      {ControlKind::textBox, "text box"},   {ControlKind::checkBox, "check box"},
      {ControlKind::comboBox, "combo box"}, {ControlKind::listBox, "list box"},
      {ControlKind::picture, "picture"}};
  std::string kind = kinds.at(control.kind());
  if (const auto* box = dynamic_cast<const forms::TextBox*>(&control)) {
    if (box->MultiLine()) kind += " of several lines";
    if (box->ReadOnly()) kind += " read-only";
  }
  if (const auto* list = dynamic_cast<const forms::ListBox*>(&control); list && list->MultiSelect())
    kind += " of several";
  if (!control.Enabled()) kind += " off";
  if (!control.Visible()) kind += " hidden";
  return kind;
}

std::string textOf(const forms::Control& control) {
  if (const auto* box = dynamic_cast<const forms::TextBox*>(&control)) return errors::utf8(box->Text());
  if (const auto* list = dynamic_cast<const forms::ComboBox*>(&control)) return errors::utf8(list->Text());
  return errors::utf8(control.Caption());
}

class Design : public testing::Test, protected OpenedDialog {};

TEST_F(Design, IsAsListed) {
  options("PLUVO;Options;False;False;False;True;False;False;False;False;False;");
  open();
  std::vector<Listed> shown;
  for (const auto& page : dialog().get<forms::MultiPage>(u"MultiPage1").Pages()) {
    for (const forms::Control* control : page->controls()) {
      shown.push_back({errors::utf8(control->Name()), kindOf(*control), textOf(*control),
                       errors::utf8(control->ControlTipText())});
    }
  }
  EXPECT_THAT(shown, testing::ElementsAreArray(kListed)) << "every control, and in this order";
}

TEST_F(Design, HasThePagesInOrder) {
  open();
  EXPECT_EQ(dialog().Caption(), u"Pluvorama");
  std::vector<std::u16string> pages;
  for (const auto& page : dialog().get<forms::MultiPage>(u"MultiPage1").Pages())
    pages.push_back(page->Name() + u'|' + page->Caption() + u'|' + page->ControlTipText());
  EXPECT_EQ(pages,
            (std::vector<std::u16string>{u"pgFindAndReplace|Find & Replace|Find && Replace Main Screen",
                                         u"pgMultiFiles|Multiple Files|Process Multiple Files",
                                         u"Options|Options|Set && Save options", u"pgAbout|About|"}));
}

TEST_F(Design, GivesEveryControlAPlaceOfItsOwn) {
  open();
  for (const auto& page : dialog().get<forms::MultiPage>(u"MultiPage1").Pages()) {
    std::map<std::pair<int, int>, std::u16string> taken;
    for (const forms::Control* control : page->controls()) {
      const forms::Cell cell = control->Cell();
      EXPECT_GT(cell.columns, 0) << errors::utf8(control->Name());
      EXPECT_LE(cell.column + cell.columns, 12) << errors::utf8(control->Name());
      for (int row = cell.row; row < cell.row + cell.rows; ++row) {
        for (int column = cell.column; column < cell.column + cell.columns; ++column) {
          const bool free = taken.try_emplace({row, column}, control->Name()).second;
          EXPECT_TRUE(free) << errors::utf8(control->Name()) << " lies over "
                            << errors::utf8(taken[{row, column}]);
        }
      }
    }
  }
}

struct ListCase {
  const char16_t* name;
  std::vector<forms::ComboBox::Row> rows;
};

TEST_F(Design, FillsTheListsOnce) {
  open();
  open();
  const ListCase cases[] = {
      {u"cboxProcOperation1",
       {{u"None", u"0"}, {u"Insert", u"1"}, {u"Replace", u"2"}, {u"Delete", u"3"}, {u"Highlight", u"4"}}},
      {u"cboxProcSelection1",
       {{u"Selection", u"0"}, {u"Beginning", u"1"}, {u"Ending", u"2"}, {u"Inside Text", u"3"}}},
      {u"cboxProcRelativePosition1", {{u"Before", u"0"}, {u"After", u"1"}}},
      {u"cboxNumberDistanceApart",
       {{u"Same", {}},
        {u"1", {}},
        {u"2", {}},
        {u"3", {}},
        {u"4", {}},
        {u"5", {}},
        {u"6", {}},
        {u"7", {}},
        {u"8", {}},
        {u"9", {}},
        {u"(More...)", {}}}},
      {u"cboxUnitDistanceApart",
       {{u"Word(s)", u"0"}, {u"Sentence(s)", u"1"}, {u"Paragraph(s)", u"2"}, {u"Entire Document", u"3"}}},
      {u"cboxHighlighters",
       {{u"Yellow", u"7"},
        {u"Pink", u"5"},
        {u"Green", u"11"},
        {u"Blue", u"2"},
        {u"Red", u"6"},
        {u"No Highlight", u"0"}}},
      {u"cboxLevelsDeep",
       {{u"All", {}},
        {u"1", {}},
        {u"2", {}},
        {u"3", {}},
        {u"4", {}},
        {u"5", {}},
        {u"6", {}},
        {u"7", {}},
        {u"8", {}},
        {u"9", {}}}},
  };
  for (const ListCase& it : cases) EXPECT_EQ(list(it.name).rows(), it.rows) << errors::utf8(it.name);
}

}  // namespace
}  // namespace pluvo::host
