#pragma once

#include "forms/form.h"

namespace pluvo::dialog {

/// How requests are run, and the program's own documents. The options file has the ticks in the order of the
/// page.
struct OptionsPage final : forms::Page {
  OptionsPage();
  /// Start-up's part: the tool tips that name the word processor.
  void setProductTips();

  forms::CheckBox chkMatchWholeWords{u"chkMatchWholeWords", u"Match Whole Words Only"};
  forms::CheckBox chkExtraSpace{u"chkExtraSpace", u"Include Extra Space when inserting text"};
  forms::CheckBox chkMatchCase{u"chkMatchCase", u"Match Case"};
  forms::CheckBox chkStartFindsFromBeginning{u"chkStartFindsFromBeginning",
                                             u"Start all Finds from Beginning of Document"};
  forms::CheckBox chkQuiteMode{u"chkQuiteMode", u"Quiet Mode"};
  forms::CheckBox chkConfirmEach{u"chkConfirmEach", u"Confirm Each Operation"};
  forms::CommandButton cmdSaveOptions{u"cmdSaveOptions", u"Save Options"};
  forms::CheckBox chkToolTips{u"chkToolTips", u"Tool Tips"};
  forms::CheckBox chkControlVButton{u"chkControlVButton",
                                    u"Ctrl+V Inserts Selected/Highligted Data (off = Paste from Clipboard)"};
  forms::Label Label12{u"Label12", u"View a document:"};
  forms::Label lblReadMe{u"lblReadMe", u"ReadMe"};
  forms::Label lblInstructions{u"lblInstructions", u"Instructions"};
  forms::CheckBox chkShowFieldCodes{u"chkShowFieldCodes", u"Show Field Codes"};
};

}  // namespace pluvo::dialog
