#include "page.h"

#include "placing.h"

namespace pluvo::dialog {

using forms::Cell;

FilesPage::FilesPage() : Page(u"pgMultiFiles", u"Multiple Files", u"Process Multiple Files") {
  place(
      *this,
      {{lblMultiFileInstructions, Cell{0, 0, 1, 12}},
       {lblPathChoosing, Cell{1, 0, 1, 12}},
       {txtFilePath, Cell{2, 0, 1, 10}, u"If empty only the current document will be processed."},
       {cmdBrowse, Cell{2, 10, 1, 2}, u"Browse to find the folder location you wish to process"},
       {chkSubDirectories, Cell{3, 0, 1, 5}},
       {lblLevelsDeep, Cell{3, 5, 1, 4}},
       {cboxLevelsDeep, Cell{3, 9, 1, 3}, u"Choose how deep into the directory structure you want to search"},
       {Label11, Cell{4, 1, 1, 11}},
       {chkFTdoc, Cell{5, 0, 1, 2}},
       {chkFTdot, Cell{5, 2, 1, 2}},
       {chkFTtxt, Cell{5, 4, 1, 2}},
       {chkFTrtf, Cell{5, 6, 1, 2}},
       {chkFThtm, Cell{5, 8, 1, 2}},
       {chkFTother, Cell{6, 0, 1, 1}, u"Choose a file Extention"},
       {txtFileTypeOther, Cell{6, 2, 1, 4},
        u"Type in file extension (e.g. bat, ini, pol, pl, * ) *** Caution using *.* as it will pick up "
        u"executable files see Instructions Doc for more info ***"},
       {lblFileTypeOther, Cell{6, 1, 1, 1}},
       {Image2, Cell{4, 0, 1, 1}, u"Choose what file extensions will be processed"},
       {Label10, Cell{7, 0, 1, 12}},
       {cmdGetPotentialFiles, Cell{8, 0, 1, 4}, u"Create a list of files based on the above criteria"},
       {cmdRemoveFiles, Cell{8, 4, 1, 4}, u"Remove the below highlighted files from processing"},
       {cmdChooseFiles, Cell{8, 8, 1, 4}, u"Choose only the highlighted files below for processing"},
       {lbxPotentialFiles, Cell{9, 0, 1, 12}},
       {lblPleaseWait, Cell{10, 0, 1, 8}},
       {lblFound, Cell{10, 8, 1, 4}}});
  cboxLevelsDeep.Text(u"All");
  chkFTdoc.Value(true);
  lbxPotentialFiles.MultiSelect(true);
  lblPleaseWait.Visible(false);
}

void FilesPage::fillLists() {
  fillPlain(cboxLevelsDeep, {u"All", u"1", u"2", u"3", u"4", u"5", u"6", u"7", u"8", u"9"});
}

}  // namespace pluvo::dialog
