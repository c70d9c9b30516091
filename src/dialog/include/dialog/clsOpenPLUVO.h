#pragma once

#include "dialog/dialog_services.h"
#include "dialog/frmFAR.h"

#include <memory>
#include <string>
#include <vector>

namespace pluvo::dialog {

/// The way in: one dialog, made at its first use and kept.
class clsOpenPLUVO {
 public:
  explicit clsOpenPLUVO(DialogServices services);

  /// Shows the dialog, and returns when the user closes it. Throws the Fault of a start-up that could not be
  /// reported, as the word processor does not answer perhaps; the next call starts anew.
  void OpenPLUVO();
  /// The same, but returns at once: the owner of the thread's loop dispatches the dialog's messages.
  void show();
  bool isShown() const { return dialog_ && dialog_->Visible(); }
  /// See frmFAR.
  void wordCloses() {
    if (dialog_) dialog_->wordCloses();
  }

  /// See frmFAR.
  void documentsChanged() {
    if (dialog_) dialog_->documentsChanged();
  }
  /// See frmFAR.
  void listFiles(const std::vector<std::u16string>& files) {
    if (dialog_) dialog_->listFiles(files);
  }
  /// See frmFAR.
  void goToBeginning() {
    if (dialog_) dialog_->goToBeginning();
  }

 private:
  frmFAR& needDialog();

  DialogServices services_;
  std::unique_ptr<frmFAR> dialog_;
};

}  // namespace pluvo::dialog
