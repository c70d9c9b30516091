#pragma once

#include "desktop_forms.h"
#include "dialog/clsOpenPLUVO.h"
#include "folder_run.h"
#include "forms_qt/boxes.h"
#include "forms_qt/forms.h"
#include "forms_qt/machine.h"
#include "memory/application.h"
#include "multifile/questions.h"
#include "pass_watch.h"
#include "places.h"
#include "work.h"
#include "work_boxes.h"

#include <QRect>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pluvo::desktop {

/// The dialog's services in the window.
struct DialogPlace {
  QWidget& window;
  QWidget& container;
  /// The needs of a run over files; the dialog adds the driver.
  FolderRun::Place run;
  /// A run over these files is about to begin; takes out those that are not to be worked on. Then is
  /// told whether it begins.
  std::function<void(std::vector<std::u16string>& files, const std::function<void(bool)>& then)> filesChosen;
  /// Tells what the run that has just ended did not reach, in a sentence.
  std::function<void(const std::function<void(const std::u16string& sentence)>& told)> notReached;
  /// Shows a document of the program's own, by its path. Throws Fault.
  std::function<void(const std::u16string& path)> showDocument;
  /// The document in front, as it is shown.
  std::function<word::Application&()> shown;
  /// Has the user choose a folder, beginning at this one; empty where none was chosen.
  std::function<std::u16string(const std::u16string& folder)> chooseFolder;
  /// Before a block awaits the user's decision: it is to be seen.
  std::function<void()> blockAwaits = [] {};
  /// Whether a block awaits a decision has changed.
  std::function<void()> confirmingChanged = [] {};
  /// Where on the screen the block is; empty when it is out of sight.
  std::function<QRect()> blockRect = [] { return QRect(); };
  /// The user has had enough of the dialog for now: Escape.
  std::function<void()> left = [] {};
};

/// The product's dialog beside the documents, and all it works with.
class Dialog {
 public:
  Dialog(const std::shared_ptr<memory::MemoryApplication>& application, Work& work, PassWatch& watch,
         const Places& places, DialogPlace place);
  ~Dialog();

  /// Shows the dialog, and returns when the window closes.
  void open();
  /// The program ends: open() returns, and no box is shown any more.
  void close();
  /// The kinds of stories in which the next run works; main text alone at first.
  void worksIn(word::StoryKinds stories);
  /// A document was opened or closed.
  void documentsChanged() { opener_.documentsChanged(); }

  /// The work under way has changed, and with it the buttons that the user may press.
  void workChanged();
  /// The keyboard goes to where a request begins.
  void goToBeginning() { opener_.goToBeginning(); }
  /// Whether a block awaits the user's decision.
  bool confirming() const { return forms_.confirming(); }
  /// Whether a run over files has the document open.
  bool runWorks(const memory::MemoryDocument& document) const { return run_ && run_->works(document); }
  /// Has the files page show these files, to be run over by Execute.
  void listFiles(const std::vector<std::u16string>& files);
  /// Opens a file with the program that the desktop has for it. Throws Fault.
  void openFile(const QString& path) { launcher_.openFile(path); }
  /// Asks for the password of an encrypted document; nothing where the user gives none.
  std::optional<base::SecretText> passwordFor(store::PasswordFor what, const std::string& path);
  /// It was wrong: whether the user would give another.
  bool opensAgain() { return multifile::openAgain(boxes_); }
  /// Of a document that recommends to be read.
  bool opensToRead(const std::string& path);
  /// Ends a confirmation under way, as closing its window does.
  void endConfirmation() { forms_.endConfirmation(); }

 private:
  bool admits(const forms::Form& form, const forms::Control* control);
  void placeWindow(const forms::Form& form, QWidget& window) const;

  Work& work_;
  DialogPlace place_;
  forms_qt::QtMessageBoxes qtBoxes_;
  WorkBoxes boxes_;
  forms_qt::QtInputBoxes inputs_;
  forms_qt::QtForms qtForms_;
  DesktopForms forms_;
  WorkYielding yielding_;
  forms_qt::QtLauncher launcher_;
  std::unique_ptr<forms::Clock> clock_ = forms::machineClock();
  std::unique_ptr<dialog::RandomSource> random_ = dialog::machineRandomSource();
  dialog::clsProcessFind* engine_ = nullptr;
  word::StoryKinds stories_ = word::kMainTextAlone;
  errors::Context context_;
  std::shared_ptr<FolderRun> run_;
  dialog::clsOpenPLUVO opener_;
};

}  // namespace pluvo::desktop
