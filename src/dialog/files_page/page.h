#pragma once

#include "forms/form.h"

namespace pluvo::dialog {

/// A folder, which files of it, and those that there are.
struct FilesPage final : forms::Page {
  FilesPage();
  /// Start-up's part: what the list offers.
  void fillLists();

  forms::Label lblMultiFileInstructions{
      u"lblMultiFileInstructions",
      u"This will allow you to process multiple files with the single Find & Replace Operation."};
  forms::Label lblPathChoosing{u"lblPathChoosing",
                               u"Type or Browse to the path for the files you wish to process"};
  forms::TextBox txtFilePath{u"txtFilePath"};
  forms::CommandButton cmdBrowse{u"cmdBrowse", u"Browse"};
  forms::CheckBox chkSubDirectories{u"chkSubDirectories", u"Include Sub Directories"};
  forms::Label lblLevelsDeep{u"lblLevelsDeep", u"Sub Directory Levels"};
  forms::ComboBox cboxLevelsDeep{u"cboxLevelsDeep", forms::ComboBox::Bound::text};
  forms::Label Label11{u"Label11", u"File Types To Process"};
  forms::CheckBox chkFTdoc{u"chkFTdoc", u"*.doc"};
  forms::CheckBox chkFTdot{u"chkFTdot", u"*.dot"};
  forms::CheckBox chkFTtxt{u"chkFTtxt", u"*.txt"};
  forms::CheckBox chkFTrtf{u"chkFTrtf", u"*.rtf"};
  forms::CheckBox chkFThtm{u"chkFThtm", u"*.htm"};
  forms::CheckBox chkFTother{u"chkFTother"};
  forms::TextBox txtFileTypeOther{u"txtFileTypeOther"};
  forms::Label lblFileTypeOther{u"lblFileTypeOther", u"*."};
  forms::Picture Image2{u"Image2", u"\U0001F4C4"};
  forms::Label Label10{
      u"Label10",
      u"By Default PLUVO will operate on all files found, but if you would like to remove certain files from "
      u"the list click the List Potential Files button and then Choose or Remove Files to be processed."};
  forms::CommandButton cmdGetPotentialFiles{u"cmdGetPotentialFiles", u"List Potential Files To Process"};
  forms::CommandButton cmdRemoveFiles{u"cmdRemoveFiles", u"Remove Selected Files From List"};
  forms::CommandButton cmdChooseFiles{u"cmdChooseFiles", u"Choose Only Selected Files From List"};
  forms::ListBox lbxPotentialFiles{u"lbxPotentialFiles"};
  forms::Label lblPleaseWait{u"lblPleaseWait", u"Searching though Directories..."};
  forms::Label lblFound{u"lblFound", u"Files Found:"};
};

}  // namespace pluvo::dialog
