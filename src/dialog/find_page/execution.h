#pragma once

#include "dialog/clsProcessFind.h"
#include "dialog/frmProcessing.h"
#include "forms/machine.h"
#include "pages.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace pluvo::dialog {

/// Hands the request on the find page to the engine, and has it run over the active document or over the
/// files of a folder.
class Execution {
 public:
  /// The files of a run.
  struct Files {
    /// What the files page finds in its folder.
    std::function<std::vector<std::u16string>()> LocateFilesForRun;
    /// They are about to be worked on, but for those that it takes out. Whether they are.
    std::function<bool(std::vector<std::u16string>& files)> chosen = [](auto&) { return true; };
  };

  /// All outlive it. The form is the dialog.
  Execution(forms::Form& form, Pages& pages, clsProcessFind& engine, forms::Clock& clock,
            forms::Yielding& yielding, Files files);

  /// Whether there is a document to run over. Throws Fault where the word processor does not answer.
  bool hasDocument();

  /// Whether a block awaits the user's decision, and what comes when none does any more.
  bool confirming() const { return confirmation_ != nullptr && confirmation_->Visible(); }
  forms::Event<> Confirmed;

  /// The files of the last multi-file run.
  const std::vector<std::u16string>& FilesToProcess() const { return filesToProcess_; }

 private:
  void cmdExecuteFAR_Click();
  bool documentIsReady();
  void tellBefore();
  void RunFindRequest();
  void copyRequest();
  void runOverDocument();
  void runOverFiles();
  void takeFilesToProcess();
  void showNotice(const std::u16string& text);
  /// Half a second, for the notice to be drawn.
  void pause();
  frmProcessing& confirmation();

  forms::Form& form_;
  Pages& pages_;
  clsProcessFind& engine_;
  forms::Clock& clock_;
  forms::Yielding& yielding_;
  Files files_;
  std::unique_ptr<frmProcessing> confirmation_;
  std::vector<std::u16string> filesToProcess_;
};

}  // namespace pluvo::dialog
