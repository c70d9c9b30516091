#pragma once

#include "dialog/clsProcessFind.h"
#include "dialog/folder_picker.h"
#include "dialog/labour.h"
#include "dialog/tips.h"
#include "forms/form.h"
#include "forms/input_boxes.h"
#include "forms/machine.h"
#include "forms/message_boxes.h"
#include "scanner/folders.h"
#include "word/word_processor.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace pluvo::dialog {

/// The things that a run over files takes from the dialog.
struct RunPlace {
  errors::Context& context;
  forms::MessageBoxes& boxes;
  /// The folder for the dialog's own files; ends with the separator that stands between folders.
  std::u16string dataFolder;
  std::u16string separator;
  std::function<std::unique_ptr<scanner::Folders>()> folders;
  std::function<std::unique_ptr<FolderPicker>()> makePicker;
};

/// The services the dialog works with. All of them outlive it.
struct DialogServices {
  /// Makes the word processor's global object; called once.
  std::function<std::shared_ptr<word::Application>()> application;
  forms::FormHost& forms;
  forms::MessageBoxes& boxes;
  forms::InputBoxes& inputs;
  forms::Clock& clock;
  forms::Yielding& yielding;
  forms::Launcher& launcher;
  RandomSource& random;
  /// Where the program lies, and beside it its documents; without a separator at the end.
  std::u16string componentFolder;
  std::function<std::unique_ptr<scanner::Folders>()> folders = scanner::machineFolders;
  /// Has the user choose a folder, beginning at this one: the one typed, or the user's documents. Empty: none
  /// was chosen. Without it the dialog has a picker of its own, which begins at the user's documents.
  std::function<std::u16string(const std::u16string& folder)> chooseFolder = {};
  /// The dialog's engine was made: a program sets what it alone decides, its limits and who watches it. The
  /// engine lives as long as the dialog.
  std::function<void(clsProcessFind&)> engineMade = [](clsProcessFind&) {};
  /// Makes the way of runs over files, without which there are none.
  std::function<std::shared_ptr<FileStepper>(const RunPlace& place)> stepper = {};
  /// A run over these files is about to begin; a program may take some out. Then is told whether it begins.
  std::function<void(std::vector<std::u16string>& files, const std::function<void(bool)>& then)> filesChosen =
      [](auto&, const auto& then) { then(true); };
  /// Tells what the last run did not reach in its documents: a sentence for the status line, or nothing.
  std::function<void(const std::function<void(const std::u16string& sentence)>& told)> notReached =
      [](const auto& told) { told({}); };
  /// The word processor as the user sees it now, whose selection is pasted; empty where it is that of the
  /// engine.
  std::function<word::Application&()> shown = {};
  /// Does long work; null where the dialog does it itself, at once.
  Labour* labour = nullptr;
  /// Shows a document that lies beside the program, and throws Fault where it cannot. Empty where the word
  /// processor opens it as the active document.
  std::function<void(const std::u16string& path)> showDocument = {};
};

}  // namespace pluvo::dialog
