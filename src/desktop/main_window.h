#pragma once

#include "beside_runs.h"
#include "choosers.h"
#include "dialog.h"
#include "document_files.h"
#include "documents.h"
#include "found_blocks.h"
#include "help_window.h"
#include "memory/application.h"
#include "menus.h"
#include "pass_watch.h"
#include "place_list.h"
#include "places.h"
#include "runs_menu.h"
#include "work.h"

#include <QDockWidget>
#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace pluvo::desktop {

/// The program's window: documents in tabs, and beside them the dialog and the places where it works.
///
/// While the engine works or a block awaits the user's decision, documents can be looked at, and nothing is
/// opened, closed or taken back. Closing the window then ends the pass first.
class MainWindow final : public QMainWindow {
 public:
  MainWindow(const Places& places, const Choosers& choosers);
  ~MainWindow() override;

  /// Shows the dialog, and returns when the window has closed.
  void openDialog() { dialog_->open(); }
  /// Opens documents by their paths, bytes as the file system has them.
  void open(const std::vector<std::string>& paths) { files_->open(paths); }
  /// The keyboard goes to where a request begins.
  void goToPanel();

  const std::shared_ptr<memory::MemoryApplication>& application() const { return application_; }
  /// The one in front; null where none is open.
  OpenDocument* current() const { return documents_->current(); }
  Work& work() { return work_; }
  PassWatch& watch() { return watch_; }
  Dialog& dialog() { return *dialog_; }

 protected:
  bool event(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  // Set-up.
  void buildDocuments(const Choosers& choosers);
  void buildPanel();
  void buildPlaces();
  void buildFoundBlocks();
  void buildStatus();
  void buildMenus();
  void buildDialog(const Places& places);
  void restorePlace();

  // Passes and runs.
  void blockAwaits();
  void confirmingChanged();
  void workChanged(bool underWay);
  void workEnded();
  void listFoundBlocks();
  void cancelWork();
  void placesChosen();
  void undo();
  void redo();
  /// Whether a pass holds the documents: at work, or awaiting a decision.
  bool atWork() const;
  /// That, and the user is told.
  bool refusedNow();

  /// Shows a document of the program's own. Throws Fault.
  void showHelp(const std::u16string& path);
  void openInstructions();
  word::Application& shown();
  void updateTitle();
  void updateActions();
  void note(const QString& message);

  Work work_;
  PassWatch watch_{work_};
  std::u16string component_;
  std::shared_ptr<memory::MemoryApplication> application_;
  Documents* documents_ = nullptr;
  std::unique_ptr<DocumentFiles> files_;
  std::unique_ptr<BesideRuns> beside_;
  std::unique_ptr<Menus> menus_;
  /// The program's own documents, by their paths.
  std::map<std::u16string, std::unique_ptr<HelpWindow>> help_;
  /// The document in front as the window shows it, in a word processor of its own: its selection is read
  /// here.
  memory::MemoryApplication shown_;
  bool closeWanted_ = false;
  bool closes_ = false;
  /// To be shown when the work under way has ended.
  QString note_;

  PlaceList* placeList_ = nullptr;
  QDockWidget* placesDock_ = nullptr;
  FoundBlocks* found_ = nullptr;
  QDockWidget* dock_ = nullptr;
  QWidget* panel_ = nullptr;
  QLabel* zoom_ = nullptr;
  QPushButton* cancel_ = nullptr;
  /// Where the keyboard was before buttons went off, and where it went.
  QPointer<QWidget> focusBefore_;
  QPointer<QWidget> focusMeanwhile_;
  std::unique_ptr<Dialog> dialog_;
  std::unique_ptr<RunsMenu> runs_;
};

}  // namespace pluvo::desktop
