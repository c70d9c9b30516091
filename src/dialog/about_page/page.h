#pragma once

#include "forms/form.h"

namespace pluvo::dialog {

/// Which program this is, and where to find more of it.
struct AboutPage final : forms::Page {
  AboutPage();
  /// Start-up's part.
  void setNotice();

  forms::Label lblProduct{u"lblProduct", u"P.L.U.V.O."};
  forms::Label lblProductLong{u"lblProductLong", u"Pluvorama"};
  forms::Label lblVersion{u"lblVersion", u"Version 1.3"};
  forms::Label lblBuild{u"lblBuild"};
  forms::Label Label4{u"Label4", u"Finds blocks of text:"};
  forms::Label Label5{u"Label5", u"a beginning, an ending, and what stands between them"};
  forms::Label Label6{u"Label6", u"Operates on them:"};
  forms::Label Label7{u"Label7", u"inserts, replaces, deletes, or highlights"};
  forms::Label Label8{u"Label8", u"Where you want it:"};
  forms::Label Label9{u"Label9", u"in the current document, or in all the files of a folder"};
  forms::Label lblNotice{u"lblNotice"};
  forms::Label lblSupport{u"lblSupport", u"Questions are welcome: tell our support what you wanted to do."};
  forms::Label lblDownloadSite{u"lblDownloadSite", u"Download your Fresh PLUVO today!"};
};

}  // namespace pluvo::dialog
