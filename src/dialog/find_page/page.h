#pragma once

#include "forms/form.h"

namespace pluvo::dialog {

/// Texts to search for on the left, the operation on the right, and below a preview of
/// it.
struct FindPage final : forms::Page {
  FindPage();
  /// Start-up's part: what the lists offer.
  void fillLists();

  forms::Label lblBeginText{u"lblBeginText", u"Find Text that Begins with"};
  forms::TextBox txtBeginText{u"txtBeginText"};
  forms::Label lblEndText{u"lblEndText", u"And Ends with"};
  forms::TextBox txtEndText{u"txtEndText"};
  forms::Label lblInsideText1{u"lblInsideText1", u"Inside Text"};
  forms::TextBox txtInsideText1{u"txtInsideText1"};
  forms::Label Label3{u"Label3", u"No farther apart than"};
  forms::ComboBox cboxNumberDistanceApart{u"cboxNumberDistanceApart", forms::ComboBox::Bound::text};
  forms::ComboBox cboxUnitDistanceApart{u"cboxUnitDistanceApart"};
  forms::Label lblOperation1{u"lblOperation1", u"Operation"};
  forms::ComboBox cboxProcOperation1{u"cboxProcOperation1"};
  forms::Label Label2{u"Label2", u"After finding the text perform the following operation on it"};
  forms::ComboBox cboxProcSelection1{u"cboxProcSelection1"};
  forms::ComboBox cboxProcRelativePosition1{u"cboxProcRelativePosition1"};
  forms::Label lblOpThis1{u"lblOpThis1", u"with the following"};
  forms::TextBox txtTextToEnter{u"txtTextToEnter"};
  forms::Label Label1{u"Label1", u"Optionally, the above captured text will also contain"};
  forms::ComboBox cboxHighlighters{u"cboxHighlighters"};
  forms::TextBox txtOperationDisplay{u"txtOperationDisplay"};
  forms::CommandButton cmdViewOperation{u"cmdViewOperation", u"View Current Operation"};
  forms::CommandButton cmdExecuteFAR{u"cmdExecuteFAR", u"Execute Current Operation"};
  forms::Label lblFind{u"lblFind", u"Find"};
  forms::Picture Image1{u"Image1", u"\U0001F50D"};
  /// Shows what the files page's lblPleaseWait does.
  forms::Label lblPleaseWait2{u"lblPleaseWait2"};
};

}  // namespace pluvo::dialog
