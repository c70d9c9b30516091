#pragma once

#include "dialog/clsProcessFind.h"
#include "dialog/dialog_services.h"
#include "errors/context.h"
#include "forms/form.h"
#include "forms/message_boxes.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::dialog {

struct Pages;

/// The main dialog: pages, each a struct of its controls, and their handlers.
///
/// No fault leaves its handlers but those of the reporter itself.
class frmFAR final : public forms::Form {
 public:
  static constexpr const char16_t* kName = u"frmFAR";

  /// Throws the Fault of a start-up that could not be reported. A fault that could be leaves the dialog as it
  /// was then.
  explicit frmFAR(const DialogServices& services);
  ~frmFAR() override;

  /// A document was opened or closed in the word processor, whose window is the dialog's too.
  void documentsChanged();
  /// The word processor is about to close: a run under way ends at its next step, and what fails of it then
  /// is kept nowhere.
  void wordCloses();
  /// Has the files page show these files, whose folder it names, for a run over them.
  void listFiles(const std::vector<std::u16string>& files);
  /// The keyboard goes to where a request begins.
  void goToBeginning();

  Pages& pages() { return *pages_; }

 private:
  void UserForm_Initialize();
  void UserForm_Activate();
  void MultiPage1_Change();
  void createEngine();
  std::u16string findDataFolder();
  void createReporter(errors::Context& context, const std::u16string& dataFolder);
  void connectRules(const std::u16string& dataFolder);
  void connectRuns(const std::u16string& dataFolder, const std::u16string& separator);
  std::unique_ptr<FolderPicker> makePicker(const std::u16string& separator);
  void showTip();

  DialogServices services_;
  std::unique_ptr<Pages> pages_;
  forms::MultiPage MultiPage1{u"MultiPage1"};
  forms::ReportBoxes reports_;
  errors::Context context_;
  /// That of work in another thread, beside which the pages go on.
  errors::Context workContext_;
  std::unique_ptr<scanner::Folders> folders_;
  std::unique_ptr<clsProcessFind> engine_;
  std::shared_ptr<FileStepper> stepper_;
  struct Rules;
  std::unique_ptr<Rules> rules_;
};

}  // namespace pluvo::dialog
