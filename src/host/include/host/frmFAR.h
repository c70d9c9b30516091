#pragma once

#include "dialog/clsProcessFind.h"
#include "errors/context.h"
#include "forms/form.h"
#include "forms/message_boxes.h"
#include "host/surroundings.h"
#include "multifile/folder_picker.h"

#include <memory>
#include <string>
#include <vector>

namespace pluvo::host {

/// The main dialog: pages of controls as the design has them (see design.h), and what they do.
///
/// No fault leaves its handlers but those of the reporter itself.
class frmFAR final : public forms::Form {
 public:
  /// Throws the Fault of a start-up that could not be reported. A fault that could be leaves the dialog as it
  /// was then.
  explicit frmFAR(const Surroundings& surroundings);
  ~frmFAR() override;

  /// A document was opened or closed in the word processor, whose window is the dialog's too.
  void documentsChanged();
  /// Has the files page show these files, whose folder it names, for a run over them.
  void listFiles(const std::vector<std::u16string>& files);

 private:
  void build();
  void UserForm_Initialize();
  void UserForm_Activate();
  void MultiPage1_Change();
  void createEngine();
  std::u16string findDataFolder();
  void createReporter(const std::u16string& dataFolder);
  void connectPages(const std::u16string& dataFolder);
  std::unique_ptr<multifile::FolderPicker> makePicker(const std::u16string& separator);
  void showTip();

  Surroundings surroundings_;
  forms::MultiPage MultiPage1{u"MultiPage1"};
  std::vector<std::unique_ptr<forms::Control>> controls_;
  forms::ReportBoxes reports_;
  errors::Context context_;
  std::unique_ptr<scanner::Folders> folders_;
  std::unique_ptr<dialog::clsProcessFind> engine_;
  struct Pages;
  std::unique_ptr<Pages> pages_;
};

}  // namespace pluvo::host
