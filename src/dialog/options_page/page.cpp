#include "page.h"

#include "placing.h"

namespace pluvo::dialog {

using forms::Cell;

OptionsPage::OptionsPage() : Page(u"Options", u"Options", u"Set && Save options") {
  place(
      *this,
      {{chkMatchWholeWords, Cell{0, 0, 1, 5}},
       {chkExtraSpace, Cell{0, 5, 1, 7}, u"Adds an extra space after text when performing inserts"},
       {chkMatchCase, Cell{1, 0, 1, 5}},
       {chkStartFindsFromBeginning, Cell{1, 5, 1, 7}, u"Alternatively, start all finds from cursor location"},
       {chkQuiteMode, Cell{2, 0, 1, 5},
        u"This will stop other information prompts like number of occurances etc.."},
       {chkConfirmEach, Cell{2, 5, 1, 7},
        u"Brings up confirmation box for each found occurance before making any changes"},
       {cmdSaveOptions, Cell{5, 8, 1, 4}, u"Save your options for future uses"},
       {chkToolTips, Cell{3, 0, 1, 5}, u"Enables the Tool Tips to show up each time you start"},
       {chkControlVButton, Cell{4, 0, 1, 12},
        u"If checked will insert highlighted text into the text box selected. If off or if nothing is "
        u"selected, it will paste text from the clipboard - see Instructions for more information"},
       {Label12, Cell{6, 0, 1, 3}},
       {lblReadMe, Cell{6, 3, 1, 2}, u"Open ReadMe Document"},
       {lblInstructions, Cell{6, 5, 1, 3}, u"Open Instructions Document"},
       {chkShowFieldCodes, Cell{3, 5, 1, 7}}});
  tabOrder({&chkMatchWholeWords, &chkExtraSpace, &chkMatchCase, &chkStartFindsFromBeginning, &chkQuiteMode,
            &chkConfirmEach, &chkToolTips, &chkShowFieldCodes, &chkControlVButton, &cmdSaveOptions,
            &lblReadMe, &lblInstructions});
  chkStartFindsFromBeginning.Value(true);
  chkToolTips.Value(true);
  lblReadMe.IsLink(true);
  lblInstructions.IsLink(true);
}

void OptionsPage::setProductTips() {
  chkMatchWholeWords.ControlTipText(u"Microsoft\u00AE Word\u00AE Stanadard Whole Word Matching");
  chkMatchCase.ControlTipText(u"Microsoft\u00AE Word\u00AE Standard Match Case");
}

}  // namespace pluvo::dialog
