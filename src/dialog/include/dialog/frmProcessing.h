#pragma once

#include "dialog/clsProcessFind.h"
#include "forms/form.h"

#include <cstdint>
#include <exception>
#include <functional>
#include <string>
#include <vector>

namespace pluvo::dialog {

/// A request's operation, in the words of the lists it was chosen from: "Insert Before Selection: "text"".
std::u16string operationInWords(const engine::Request& request);

/// Runs a pass one block at a time: the found block is selected, and the user has it operated on or passed
/// by. In a multi-file run it steps from file to file.
///
/// The dialog is visible while a block awaits the user's decision, and hidden while the engine works, so that
/// its buttons cannot be pressed then. SingleProcess and MultiProcess may return before it awaits the first
/// one.
class frmProcessing final : public forms::Form {
 public:
  static constexpr const char16_t* kName = u"frmProcessing";

  explicit frmProcessing(clsProcessFind& engine);

  /// Called when the first block awaits the user's decision, or none does.
  using Then = std::function<void()>;
  void SingleProcess(Then then = [] {});
  void MultiProcess(
      const std::vector<std::u16string>& files, Then then = [] {});

  /// The last block was dealt with, and its outcome told; or the user has stopped.
  forms::Event<> Finished;

  /// The operation, and the number of the file among all.
  forms::Label lblOperation{u"lblOperation"};
  forms::Label lblFile{u"lblFile"};
  forms::CommandButton cmdPerform{u"cmdPerform", u"&Perform Operation"};
  forms::CommandButton cmdSkip{u"cmdSkip", u"&Skip Operation"};

 private:
  /// The user goes on with the pass no more, nor with the run that it is part of.
  void endRun();
  void cmdPerform_Click();
  void cmdSkip_Click();
  /// Does the step, finds the next block, or that of a later file, and puts it before the user, or ends.
  void proceed(std::function<void()> step);
  bool findNext();
  bool findInLaterFiles();
  void awaitDecision();
  void proceeded(const std::exception_ptr& thrown, bool found);
  bool startNextFile();
  void tellWhatAwaits();

  clsProcessFind& engine_;
  bool multi_ = false;
  std::vector<std::u16string> files_;
  std::int32_t index_ = 0;
  Then then_ = [] {};
};

}  // namespace pluvo::dialog
