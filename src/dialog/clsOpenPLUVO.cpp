#include "dialog/clsOpenPLUVO.h"

#include <utility>

namespace pluvo::dialog {

clsOpenPLUVO::clsOpenPLUVO(DialogServices services) : services_(std::move(services)) {}

frmFAR& clsOpenPLUVO::needDialog() {
  if (!dialog_) dialog_ = std::make_unique<frmFAR>(services_);
  return *dialog_;
}

void clsOpenPLUVO::OpenPLUVO() {
  if (!needDialog().Visible()) needDialog().ShowModal();
}

void clsOpenPLUVO::show() { needDialog().Visible(true); }

}  // namespace pluvo::dialog
