#include "dialog/clsOpenPLUVO.h"

#include <utility>

namespace pluvo::dialog {

clsOpenPLUVO::clsOpenPLUVO(Surroundings surroundings) : surroundings_(std::move(surroundings)) {}

frmFAR& clsOpenPLUVO::needDialog() {
  if (!dialog_) dialog_ = std::make_unique<frmFAR>(surroundings_);
  return *dialog_;
}

void clsOpenPLUVO::OpenPLUVO() {
  if (!needDialog().Visible()) needDialog().ShowModal();
}

void clsOpenPLUVO::show() { needDialog().Visible(true); }

}  // namespace pluvo::dialog
