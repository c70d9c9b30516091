#include "page.h"

#include "placing.h"

namespace pluvo::dialog {

using forms::Cell;

AboutPage::AboutPage() : Page(u"pgAbout", u"About", u"") {
  place(*this, {{lblProduct, Cell{0, 0, 1, 12}},
                {lblProductLong, Cell{1, 0, 1, 12}},
                {lblVersion, Cell{2, 0, 1, 12}},
                {lblBuild, Cell{3, 0, 1, 12}},
                {Label4, Cell{4, 0, 1, 4}},
                {Label5, Cell{4, 4, 1, 8}},
                {Label6, Cell{5, 0, 1, 4}},
                {Label7, Cell{5, 4, 1, 8}},
                {Label8, Cell{6, 0, 1, 4}},
                {Label9, Cell{6, 4, 1, 8}},
                {lblNotice, Cell{7, 0, 1, 12}},
                {lblSupport, Cell{8, 0, 1, 12}},
                {lblDownloadSite, Cell{9, 0, 1, 12}}});
  lblBuild.Caption(u"Build " PLUVO_VERSION);
  lblProduct.Font({u"Impact", 28});
  lblProductLong.Font({u"Bookman Old Style", 18});
  lblDownloadSite.IsLink(true);
}

void AboutPage::setNotice() {
  lblNotice.Caption(
      u"PLUVO changes what you tell it to change.  Keep a copy of documents that have no other.");
}

}  // namespace pluvo::dialog
