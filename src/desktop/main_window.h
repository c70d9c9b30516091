#pragma once

#include "choosers.h"
#include "dialog.h"
#include "help_window.h"
#include "memory/application.h"
#include "not_reached.h"
#include "open_document.h"
#include "pass_watch.h"
#include "places.h"
#include "runs_menu.h"
#include "working.h"

#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTimer>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pluvo::desktop {

/// The program's window: documents in tabs, and the dialog beside them.
///
/// While the engine works or a block awaits the user's decision, documents can be looked at, and nothing is
/// opened, closed or taken back. Closing the window then ends the pass first.
class MainWindow final : public QMainWindow, private memory::ApplicationObserver {
 public:
  MainWindow(const Places& places, Choosers choosers);
  ~MainWindow() override;

  /// Shows the dialog, and returns when the window has closed.
  void openDialog();
  /// Opens documents by their paths, bytes as the file system has them.
  void open(const std::vector<std::string>& paths);

  /// The keyboard goes to where a request begins.
  void goToPanel();

  const std::shared_ptr<memory::MemoryApplication>& application() const { return application_; }
  /// The one in front; null where none is open.
  OpenDocument* current() const;
  Working& working() { return working_; }
  Dialog& dialog() { return *dialog_; }

 protected:
  bool event(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  struct Actions;
  /// How long a message stays, in milliseconds.
  static constexpr int kMessageTime = 6000;

  // memory::ApplicationObserver
  void opened(const memory::OpenedFile& file) override;
  void activated(const std::shared_ptr<memory::MemoryDocument>& document) override;
  void closing(const std::shared_ptr<memory::MemoryDocument>& document) override;

  // Set-up.
  void buildDocuments();
  void buildPanel();
  void buildStatus();
  void buildMenus();
  QAction* action(QMenu& menu, const QString& text, const QKeySequence& keys, void (MainWindow::*done)());
  void restorePlace();

  // Documents.
  void chooseAndOpen();
  bool goesOnAfterRefusal();
  bool openOne(const std::string& path);
  std::optional<std::string> chooseEncoding(const std::string& path, const std::string& sentence);
  void reopenInEncoding();
  bool save(OpenDocument& document);
  bool saveAs(OpenDocument& document);
  bool saveBy(const std::function<void()>& saving, OpenDocument& document);
  bool mayReplace(const QString& path, bool keptExtension);
  bool tellNotSaved(OpenDocument& document, const errors::Fault& fault);
  bool mayClose(OpenDocument& document);
  bool closeDocument(OpenDocument& document);
  // Runs over files.
  enum class AboutUnsaved { save, leaveOut, stop };
  bool filesChosen(std::vector<std::u16string>& files);
  AboutUnsaved askAboutUnsaved(const std::vector<OpenDocument*>& unsaved);
  FolderRun::Place placeOfRuns();
  bool goesOnWithoutOriginals(const std::string& why);
  void savedByRun(const std::string& path);
  void leftOpenByRun(const std::string& path);
  void fileChanged(const std::string& path);
  void reload(OpenDocument& document);
  void runEnded(const RunOverFiles& run);
  void passBegins();
  std::u16string notReached();
  void undo();
  void redo();

  void saveCurrent();
  void saveCurrentAs();
  void closeCurrent();
  void openInstructions();
  /// Shows a document of the program's own. Throws Fault.
  void showHelp(const std::u16string& path);
  void about();

  // What is shown.
  OpenDocument* find(const memory::MemoryDocument& document) const;
  OpenDocument* inTab(int index) const;
  void syncTabs();
  void makeTab(OpenDocument& document, int index = -1);
  void showOneTabForEach();
  void tabChosen();
  void updateTitles();
  void updateActions();
  void updateRecent();
  void workChanged(bool underWay);
  void workEnded();
  void confirmingChanged();
  void blockAwaits();
  void nextTab(int step);
  QRect blockRect() const;
  void cancelWork();
  void buildViewMenu(QMenu& view);
  std::optional<std::string> freeName(const std::string& path);
  /// Whether a pass holds the documents: at work, or awaiting a decision. Tells the user.
  bool refusedNow();
  bool atWork() const;

  Working working_;
  PassWatch watch_{working_};
  NotReached notReached_{working_};
  Choosers choosers_;
  std::u16string component_;
  std::shared_ptr<store::StoreOpener> opener_;
  /// A run over files asks for no encodings.
  bool opensForUser_ = false;
  bool encodingDeclined_ = false;
  std::shared_ptr<memory::MemoryApplication> application_;
  std::vector<std::unique_ptr<OpenDocument>> documents_;
  /// What the engine brought to the front and no tab shows yet.
  std::weak_ptr<memory::MemoryDocument> wanted_;
  /// The program's own documents, by their paths.
  std::map<std::u16string, std::unique_ptr<HelpWindow>> help_;
  /// A run over files changed some on disk.
  bool filesChanged_ = false;
  bool syncing_ = false;
  bool closeWanted_ = false;
  bool closing_ = false;
  /// To be shown when the work under way has ended.
  QString note_;

  QStackedWidget* documentsOrWelcome_ = nullptr;
  QTabWidget* tabs_ = nullptr;
  QDockWidget* dock_ = nullptr;
  QWidget* panel_ = nullptr;
  QLabel* zoom_ = nullptr;
  QPushButton* cancel_ = nullptr;
  QMenu* recent_ = nullptr;
  QMenu* runsMenu_ = nullptr;
  QTimer titles_;
  QPointer<QWidget> focusBefore_;
  std::unique_ptr<Actions> actions_;
  std::unique_ptr<Dialog> dialog_;
  std::unique_ptr<RunsMenu> runs_;
};

}  // namespace pluvo::desktop
