#include "dialog/clsOpenPLUVO.h"

#include <utility>

namespace pluvo::dialog {

clsOpenPLUVO::clsOpenPLUVO(Surroundings surroundings) : surroundings_(std::move(surroundings)) {}

void clsOpenPLUVO::OpenPLUVO() {
  if (!dialog_) dialog_ = std::make_unique<frmFAR>(surroundings_);
  if (!dialog_->Visible()) dialog_->ShowModal();
}

}  // namespace pluvo::dialog
