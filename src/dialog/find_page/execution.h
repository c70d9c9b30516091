#pragma once

#include "dialog/clsProcessFind.h"
#include "dialog/frmProcessing.h"
#include "forms/machine.h"
#include "pages.h"

#include <exception>
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
    /// Tells what the files page finds in its folder.
    std::function<void(const std::function<void(std::vector<std::u16string> files)>& then)> LocateFilesForRun;
    /// They are about to be worked on, but for those that it takes out. Tells whether they are.
    std::function<void(std::vector<std::u16string>& files, const std::function<void(bool)>& then)> chosen =
        [](auto&, const auto& then) { then(true); };
  };

  /// All outlive it. The form is the dialog.
  Execution(forms::Form& form, Pages& pages, clsProcessFind& engine, forms::Clock& clock,
            forms::Yielding& yielding, Files files);

  /// Whether there is a document to run over. Throws Fault where the word processor does not answer.
  bool hasDocument();

  /// The pass that Execute began has come to its end, or to the first block that awaits a decision.
  forms::Event<> Executed;

  /// Whether a block awaits the user's decision, and the steps that follow the last decision.
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
  void takeFilesToProcess(const std::function<void()>& then);
  void MultiRun();
  bool went(const std::function<void()>& step, const std::exception_ptr& thrown = nullptr);
  void finish();
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
