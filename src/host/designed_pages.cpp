#include "design.h"

namespace pluvo::host {

namespace {

using forms::Cell;

constexpr const char16_t* kDistanceTip =
    u"Choose the distance that the End of the 'Begins with' and Beginning of the 'Ends with' text are "
    u"allowed to be";

// Texts to search for on the left, what is to be done with them on the right, and below what would come of
// it.
constexpr DesignedControl kFindAndReplace[] = {
    {u"lblBeginText", Kind::label, u"Find Text that Begins with", u"", Cell{1, 0, 1, 6}},
    {u"txtBeginText", Kind::lines, u"",
     u"Type, Ctrl-V Paste*, or Right-Click Select - the beginning portion of your text to find here "
     u"(Required)",
     Cell{2, 0, 3, 6}},
    {u"lblEndText", Kind::label, u"And Ends with", u"", Cell{7, 0, 1, 6}},
    {u"txtEndText", Kind::lines, u"",
     u"Type, Ctrl-V Paste*, or Right-Click Select - the ending portion of your text to find here",
     Cell{8, 0, 1, 6}},
    {u"lblInsideText1", Kind::label, u"Inside Text", u"", Cell{10, 0, 1, 6}},
    {u"txtInsideText1", Kind::lines, u"",
     u"Type, Ctrl-V Paste*, or Right-Click Select - additional text here that will restrict the large block "
     u"find a little further",
     Cell{11, 0, 1, 6}, At::off},
    {u"Label3", Kind::label, u"No farther apart than", u"", Cell{5, 0, 1, 6}},
    {u"cboxNumberDistanceApart", Kind::numbers, u"Same", kDistanceTip, Cell{6, 0, 1, 3}},
    {u"cboxUnitDistanceApart", Kind::list, u"Paragraph(s)", kDistanceTip, Cell{6, 3, 1, 3}},
    {u"lblOperation1", Kind::label, u"Operation", u"", Cell{2, 6, 1, 2}},
    {u"cboxProcOperation1", Kind::list, u"None", u"Choose an operation", Cell{2, 8, 1, 4}},
    {u"Label2", Kind::label, u"After finding the text perform the following operation on it", u"",
     Cell{1, 6, 1, 6}},
    {u"cboxProcSelection1", Kind::list, u"Selection", u"Choose a location to operate on", Cell{3, 9, 1, 3},
     At::off},
    {u"cboxProcRelativePosition1", Kind::list, u"", u"", Cell{3, 6, 1, 3}, At::off},
    {u"lblOpThis1", Kind::label, u"with the following", u"", Cell{5, 6, 1, 6}},
    {u"txtTextToEnter", Kind::lines, u"",
     u"When you choose insert or replace this is the text that will be used for the operation",
     Cell{6, 6, 3, 6}, At::off},
    {u"Label1", Kind::label, u"Optionally, the above captured text will also contain", u"", Cell{9, 0, 1, 6}},
    {u"cboxHighlighters", Kind::list, u"Yellow", u"Color up your document", Cell{4, 8, 1, 4}, At::hidden},
    {u"txtOperationDisplay", Kind::display, u"", u"", Cell{12, 0, 1, 12}},
    {u"cmdViewOperation", Kind::button, u"View Current Operation",
     u"Take a look at what the above Find && Operate Procedure will perform", Cell{9, 6, 1, 3}},
    {u"cmdExecuteFAR", Kind::button, u"Execute Current Operation",
     u"Begin parsing through the text performing the operation specified", Cell{9, 9, 1, 3}},
    {u"lblFind", Kind::label, u"Find", u"", Cell{0, 1, 1, 11}},
    {u"Image1", Kind::picture, u"\U0001F50D", u"", Cell{0, 0, 1, 1}},
    {u"lblPleaseWait2", Kind::label, u"", u"", Cell{10, 6, 2, 6}, At::hidden},
};

constexpr DesignedControl kMultiFiles[] = {
    {u"lblMultiFileInstructions", Kind::label,
     u"This will allow you to process multiple files with the single Find & Replace Operation.", u"",
     Cell{0, 0, 1, 12}},
    {u"lblPathChoosing", Kind::label, u"Type or Browse to the path for the files you wish to process", u"",
     Cell{1, 0, 1, 12}},
    {u"txtFilePath", Kind::text, u"", u"If empty only the current document will be processed.",
     Cell{2, 0, 1, 10}},
    {u"cmdBrowse", Kind::button, u"Browse", u"Browse to find the folder location you wish to process",
     Cell{2, 10, 1, 2}},
    {u"chkSubDirectories", Kind::tick, u"Include Sub Directories", u"", Cell{3, 0, 1, 5}},
    {u"lblLevelsDeep", Kind::label, u"Sub Directory Levels", u"", Cell{3, 5, 1, 4}},
    {u"cboxLevelsDeep", Kind::numbers, u"All",
     u"Choose how deep into the directory structure you want to search", Cell{3, 9, 1, 3}},
    {u"Label11", Kind::label, u"File Types To Process", u"", Cell{4, 1, 1, 11}},
    {u"chkFTdoc", Kind::tick, u"*.doc", u"", Cell{5, 0, 1, 2}, At::ticked},
    {u"chkFTdot", Kind::tick, u"*.dot", u"", Cell{5, 2, 1, 2}},
    {u"chkFTtxt", Kind::tick, u"*.txt", u"", Cell{5, 4, 1, 2}},
    {u"chkFTrtf", Kind::tick, u"*.rtf", u"", Cell{5, 6, 1, 2}},
    {u"chkFThtm", Kind::tick, u"*.htm", u"", Cell{5, 8, 1, 2}},
    {u"chkFTother", Kind::tick, u"", u"Choose a file Extention", Cell{6, 0, 1, 1}},
    {u"txtFileTypeOther", Kind::text, u"",
     u"Type in file extension (e.g. bat, ini, pol, pl, * ) *** Caution using *.* as it will pick up "
     u"executable files see Instructions Doc for more info ***",
     Cell{6, 2, 1, 4}},
    {u"lblFileTypeOther", Kind::label, u"*.", u"", Cell{6, 1, 1, 1}},
    {u"Image2", Kind::picture, u"\U0001F4C4", u"Choose what file extensions will be processed",
     Cell{4, 0, 1, 1}},
    {u"Label10", Kind::label,
     u"By Default PLUVO will operate on all files found, but if you would like to remove certain files from "
     u"the list click the List Potential Files button and then Choose or Remove Files to be processed.",
     u"", Cell{7, 0, 1, 12}},
    {u"cmdGetPotentialFiles", Kind::button, u"List Potential Files To Process",
     u"Create a list of files based on the above criteria", Cell{8, 0, 1, 4}},
    {u"cmdRemoveFiles", Kind::button, u"Remove Selected Files From List",
     u"Remove the below highlighted files from processing", Cell{8, 4, 1, 4}},
    {u"cmdChooseFiles", Kind::button, u"Choose Only Selected Files From List",
     u"Choose only the highlighted files below for processing", Cell{8, 8, 1, 4}},
    {u"lbxPotentialFiles", Kind::files, u"", u"", Cell{9, 0, 1, 12}},
    {u"lblPleaseWait", Kind::label, u"Searching though Directories...", u"", Cell{10, 0, 1, 8}, At::hidden},
    {u"lblFound", Kind::label, u"Files Found:", u"", Cell{10, 8, 1, 4}},
};

// The options file has the ticks in this order.
constexpr DesignedControl kOptions[] = {
    {u"chkMatchWholeWords", Kind::tick, u"Match Whole Words Only", u"", Cell{0, 0, 1, 5}},
    {u"chkExtraSpace", Kind::tick, u"Include Extra Space when inserting text",
     u"Adds an extra space after text when performing inserts", Cell{0, 5, 1, 7}},
    {u"chkMatchCase", Kind::tick, u"Match Case", u"", Cell{1, 0, 1, 5}},
    {u"chkStartFindsFromBeginning", Kind::tick, u"Start all Finds from Beginning of Document",
     u"Alternatively, start all finds from cursor location", Cell{1, 5, 1, 7}, At::ticked},
    {u"chkQuiteMode", Kind::tick, u"Quiet Mode",
     u"This will stop other information prompts like number of occurances etc..", Cell{2, 0, 1, 5}},
    {u"chkConfirmEach", Kind::tick, u"Confirm Each Operation",
     u"Brings up confirmation box for each found occurance before making any changes", Cell{2, 5, 1, 7}},
    {u"cmdSaveOptions", Kind::button, u"Save Options", u"Save your options for future uses",
     Cell{5, 8, 1, 4}},
    {u"chkToolTips", Kind::tick, u"Tool Tips", u"Enables the Tool Tips to show up each time you start",
     Cell{3, 0, 1, 5}, At::ticked},
    {u"chkControlVButton", Kind::tick,
     u"Ctrl+V Inserts Selected/Highligted Data (off = Paste from Clipboard)",
     u"If checked will insert highlighted text into the text box selected. If off or if nothing is selected, "
     u"it will paste text from the clipboard - see Instructions for more information",
     Cell{4, 0, 1, 12}},
    {u"Label12", Kind::label, u"View a document:", u"", Cell{6, 0, 1, 3}},
    {u"lblReadMe", Kind::link, u"ReadMe", u"Open ReadMe Document", Cell{6, 3, 1, 2}},
    {u"lblInstructions", Kind::link, u"Instructions", u"Open Instructions Document", Cell{6, 5, 1, 3}},
    {u"chkShowFieldCodes", Kind::tick, u"Show Field Codes", u"", Cell{3, 5, 1, 7}},
};

constexpr DesignedControl kAbout[] = {
    {u"lblProduct", Kind::label, u"P.L.U.V.O.", u"", Cell{0, 0, 1, 12}, At::first, 28, u"Impact"},
    {u"lblProductLong", Kind::label, u"Pluvorama", u"", Cell{1, 0, 1, 12}, At::first, 18,
     u"Bookman Old Style"},
    {u"lblVersion", Kind::label, u"Version 1.3", u"", Cell{2, 0, 1, 12}},
    {u"lblBuild", Kind::label, u"Build " PLUVO_VERSION, u"", Cell{3, 0, 1, 12}},
    {u"Label4", Kind::label, u"Finds blocks of text:", u"", Cell{4, 0, 1, 4}},
    {u"Label5", Kind::label, u"a beginning, an ending, and what stands between them", u"", Cell{4, 4, 1, 8}},
    {u"Label6", Kind::label, u"Operates on them:", u"", Cell{5, 0, 1, 4}},
    {u"Label7", Kind::label, u"inserts, replaces, deletes, or highlights", u"", Cell{5, 4, 1, 8}},
    {u"Label8", Kind::label, u"Where you want it:", u"", Cell{6, 0, 1, 4}},
    {u"Label9", Kind::label, u"in the current document, or in all the files of a folder", u"",
     Cell{6, 4, 1, 8}},
    {u"lblNotice", Kind::label, u"", u"", Cell{7, 0, 1, 12}},
    {u"lblSupport", Kind::label, u"Questions are welcome: tell our support what you wanted to do.", u"",
     Cell{8, 0, 1, 12}},
    {u"lblDownloadSite", Kind::link, u"Download your Fresh PLUVO today!", u"", Cell{9, 0, 1, 12}},
};

// As the eye goes, left to right and down; the find page's left half first.
constexpr const char16_t* kFindTabs[] = {
    u"txtBeginText",       u"cboxNumberDistanceApart", u"cboxUnitDistanceApart",     u"txtEndText",
    u"txtInsideText1",     u"cboxProcOperation1",      u"cboxProcRelativePosition1", u"cboxProcSelection1",
    u"cboxHighlighters",   u"txtTextToEnter",          u"cmdViewOperation",          u"cmdExecuteFAR",
    u"txtOperationDisplay"};
constexpr const char16_t* kOptionsTabs[] = {
    u"chkMatchWholeWords", u"chkExtraSpace",  u"chkMatchCase", u"chkStartFindsFromBeginning",
    u"chkQuiteMode",       u"chkConfirmEach", u"chkToolTips",  u"chkShowFieldCodes",
    u"chkControlVButton",  u"cmdSaveOptions", u"lblReadMe",    u"lblInstructions"};

constexpr DesignedPage kPages[] = {
    {u"pgFindAndReplace", u"Find & Replace", u"Find && Replace Main Screen", kFindAndReplace, kFindTabs},
    {u"pgMultiFiles", u"Multiple Files", u"Process Multiple Files", kMultiFiles},
    {u"Options", u"Options", u"Set && Save options", kOptions, kOptionsTabs},
    {u"pgAbout", u"About", u"", kAbout},
};

}  // namespace

std::span<const DesignedPage> designedPages() { return kPages; }

}  // namespace pluvo::host
