#include "main_window.h"

#include "base/names.h"
#include "document/place_names.h"
#include "errors/context.h"
#include "question.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFile>
#include <QMimeData>
#include <QScreen>
#include <QSettings>
#include <QStatusBar>
#include <QTimer>
#include <algorithm>
#include <utility>

namespace pluvo::desktop {

MainWindow::MainWindow(const Places& places, const Choosers& choosers) : component_(places.component) {
  setWindowTitle(QGuiApplication::applicationDisplayName());
  setAcceptDrops(true);
  buildDocuments(choosers);
  buildPanel();
  buildPlaces();
  buildFoundBlocks();
  buildStatus();
  buildMenus();
  work_.changed = [this](bool underWay) { workChanged(underWay); };
  work_.ended = [this] { workEnded(); };
  buildDialog(places);
  watch_.begun = [this] {
    // The window was closed in the pause before the run.
    if (closeWanted_) work_.cancel();
    found_->clear();
    beside_->passBegins();
  };
  restorePlace();
  updateActions();
}

MainWindow::~MainWindow() {
  work_.cancel();
  work_.wait();
  dialog_.reset();
  delete std::exchange(documents_, nullptr);
}

void MainWindow::buildDocuments(const Choosers& choosers) {
  const auto opener = std::make_shared<store::StoreOpener>(store::Store(), [this](const std::string& path) {
    std::optional<std::string> name;
    work_.inWindow([&] { name = files_->freeName(path); });
    return name;
  });
  application_ = std::make_shared<memory::MemoryApplication>(opener);
  documents_ = new Documents(application_, opener, work_);
  documents_->held = [this] { return atWork(); };
  documents_->titlesChanged = [this] { updateTitle(); };
  setCentralWidget(documents_);
  const auto noteNow = [this](const QString& message) { note(message); };
  files_ = std::make_unique<DocumentFiles>(
      choosers,
      DocumentFiles::Place{
          .window = *this,
          .work = work_,
          .documents = *documents_,
          .application = application_,
          .opener = opener,
          .refusedNow = [this] { return refusedNow(); },
          .note = noteNow,
          .password = [this](const auto& path, auto what) { return dialog_->passwordFor(what, path); },
          .opensAgain = [this] { return dialog_->opensAgain(); },
          .opensToRead = [this](const auto& path) { return dialog_->opensToRead(path); }});
  documents_->openAsked = [this] { files_->chooseAndOpen(); };
  documents_->closeAsked = [this](OpenDocument& document) { files_->close(document); };
  beside_ = std::make_unique<BesideRuns>(
      BesideRuns::Place{.window = *this,
                        .work = work_,
                        .watch = watch_,
                        .documents = *documents_,
                        .files = *files_,
                        .application = application_,
                        .note = noteNow,
                        .ended = [this](const RunOverFiles& run) { runs_->runEnded(run, closeWanted_); }});
}

void MainWindow::buildPanel() {
  dock_ = new QDockWidget(tr("Find & Operate"), this);
  dock_->setObjectName(QStringLiteral("panel"));
  dock_->setAllowedAreas(Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea | Qt::BottomDockWidgetArea);
  panel_ = new QWidget;
  dock_->setWidget(panel_);
  addDockWidget(Qt::RightDockWidgetArea, dock_);
}

void MainWindow::buildPlaces() {
  placeList_ = new PlaceList;
  placeList_->chosen = [this] { placesChosen(); };
  placesDock_ = new QDockWidget(tr("Places"), this);
  placesDock_->setObjectName(QStringLiteral("places"));
  placesDock_->setWidget(placeList_);
  addDockWidget(Qt::LeftDockWidgetArea, placesDock_);
}

void MainWindow::buildFoundBlocks() {
  found_ = new FoundBlocks(*documents_);
  // It is as wide as the documents.
  setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
  setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
  addDockWidget(Qt::BottomDockWidgetArea, found_);
}

void MainWindow::buildStatus() {
  cancel_ = new QPushButton(tr("Cancel"));
  cancel_->setToolTip(tr("Ends the work under way (Esc)"));
  cancel_->setFocusPolicy(Qt::NoFocus);
  cancel_->hide();
  connect(cancel_, &QPushButton::clicked, this, &MainWindow::cancelWork);
  zoom_ = new QLabel(QStringLiteral("100 %"));
  zoom_->setAccessibleName(tr("Zoom"));
  statusBar()->addPermanentWidget(cancel_);
  statusBar()->addPermanentWidget(zoom_);
}

void MainWindow::buildMenus() {
  menus_ = std::make_unique<Menus>(*menuBar(), Menus::Place{.window = *this,
                                                            .documents = *documents_,
                                                            .files = *files_,
                                                            .panel = *dock_->toggleViewAction(),
                                                            .places = *placesDock_->toggleViewAction(),
                                                            .blocks = *found_->toggleViewAction(),
                                                            .undo = [this] { undo(); },
                                                            .redo = [this] { redo(); },
                                                            .cancel = [this] { cancelWork(); },
                                                            .goToPanel = [this] { goToPanel(); },
                                                            .instructions = [this] { openInstructions(); }});
}

void MainWindow::buildDialog(const Places& places) {
  dialog_ = std::make_unique<Dialog>(
      application_, work_, watch_, places,
      DialogPlace{.window = *this,
                  .container = *panel_,
                  .run = beside_->placeOfRuns(),
                  // The window may have been closed in the pause before the run.
                  .filesChosen =
                      [this](auto& files, const auto& then) {
                        if (closeWanted_) return then(false);
                        beside_->filesChosen(files, then);
                      },
                  .notReached = [this](const auto& told) { beside_->notReached(told); },
                  .showDocument = [this](const auto& path) { showHelp(path); },
                  .shown = [this]() -> word::Application& { return shown(); },
                  .chooseFolder =
                      [this](const auto& folder) {
                        return files_->chooseFolder(QString::fromStdU16String(folder)).toStdU16String();
                      },
                  .blockAwaits = [this] { blockAwaits(); },
                  .confirmingChanged = [this] { confirmingChanged(); },
                  .blockRect = [this] { return documents_->selectionRect(); },
                  .left =
                      [this] {
                        if (current() != nullptr) current()->view()->setFocus();
                      }});
  documents_->runWorks = [this](const auto& document) { return dialog_->runWorks(document); };
  documents_->synced = [this] { dialog_->documentsChanged(); };
  runs_ = std::make_unique<RunsMenu>(
      menus_->runs(), RunsMenu::Place{.window = *this,
                                      .work = work_,
                                      .refusedNow = [this] { return refusedNow(); },
                                      .openFile = [this](const QString& path) { dialog_->openFile(path); },
                                      .listFiles = [this](const auto& files) { dialog_->listFiles(files); },
                                      .changed = [this](const auto& path) { beside_->fileChanged(path); },
                                      .note =
                                          [this](const QString& text) {
                                            note_ = text;
                                            if (!work_.underWay()) workEnded();
                                          }});
}

void MainWindow::restorePlace() {
  const QSettings settings;
  const bool restored = restoreGeometry(settings.value(QStringLiteral("window/geometry")).toByteArray());
  restoreState(settings.value(QStringLiteral("window/state")).toByteArray());
  found_->hide();
  if (restored) return;
  const QSize room = screen()->availableGeometry().size();
  resize(QSize(1360, 860).boundedTo(room));
  if (room.width() <= 1366) setWindowState(Qt::WindowMaximized);
  constexpr int kNarrow = 1000;
  if (room.width() < kNarrow) resizeDocks({dock_}, {room.width() / 2}, Qt::Horizontal);
}

// The window's own events.

bool MainWindow::event(QEvent* event) {
  if (event->type() == QEvent::WindowUnblocked && closeWanted_) QTimer::singleShot(0, this, &QWidget::close);
  return QMainWindow::event(event);
}

void MainWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  // The asker goes on with a document when the answer is there.
  if (QApplication::activeModalWidget() != nullptr) {
    closeWanted_ = true;
    return;
  }
  if (dialog_->confirming() && !work_.underWay()) dialog_->endConfirmation();
  if (work_.underWay()) {
    closeWanted_ = true;
    return cancelWork();
  }
  if (!std::exchange(closes_, false)) {
    closeWanted_ = false;
    // All questions first: who stays after all finds everything as it was.
    return files_->mayCloseAll([this](bool may) {
      closes_ = may;
      if (may) QTimer::singleShot(0, this, &QWidget::close);
    });
  }
  documents_->closeAll();
  QSettings settings;
  settings.setValue(QStringLiteral("window/geometry"), saveGeometry());
  settings.setValue(QStringLiteral("window/state"), saveState());
  dialog_->close();
  help_.clear();
  event->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls() && !atWork()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
  std::vector<std::string> paths;
  for (const QUrl& url : event->mimeData()->urls()) {
    if (url.isLocalFile()) paths.push_back(QFile::encodeName(url.toLocalFile()).toStdString());
  }
  event->acceptProposedAction();
  // After the drop, so that a question about a document does not hold up the other program.
  QTimer::singleShot(0, this, [this, paths] { open(paths); });
}

// Passes and runs.

bool MainWindow::atWork() const { return work_.underWay() || (dialog_ && dialog_->confirming()); }

bool MainWindow::refusedNow() {
  if (!atWork()) return false;
  note(tr("A pass is under way. Finish or cancel it first."));
  return true;
}

void MainWindow::cancelWork() {
  if (runs_->takesBack()) return statusBar()->showMessage(tr("An undo is finished once it has begun."));
  work_.cancel();
  statusBar()->showMessage(work_.cancels() == 1 && watch_.runsOverFiles()
                               ? tr("Cancelling. A run over files finishes the document at "
                                    "hand; Cancel again takes its changes back.")
                               : tr("Cancelling …"));
}

/// It has lasted so long that the user is to see it, or that has ended.
void MainWindow::workChanged(bool underWay) {
  cancel_->setVisible(underWay);
  QWidget* const focus = QApplication::focusWidget();
  if (underWay) {
    statusBar()->showMessage(tr("Working …"));
  } else {
    statusBar()->clearMessage();
  }
  dialog_->workChanged();
  if (underWay) {
    focusBefore_ = focus;
    focusMeanwhile_ = QApplication::focusWidget();
  } else if (focusBefore_ && focusMeanwhile_ != focusBefore_ && focus == focusMeanwhile_) {
    focusBefore_->setFocus();
  }
  updateActions();
}

void MainWindow::workEnded() {
  documents_->reloadStale();
  if (work_.underWay()) return;
  dialog_->workChanged();
  documents_->sync();
  listFoundBlocks();
  if (!note_.isEmpty()) note(std::exchange(note_, {}));
  if (closeWanted_) QTimer::singleShot(0, this, &QWidget::close);
}

/// A find has nothing to show but the list; an operation has changed the document in sight.
void MainWindow::listFoundBlocks() {
  if (dialog_->confirming() || current() == nullptr) return;
  auto blocks = watch_.takeBlocks();
  if (!blocks) return;
  found_->list(*current(), *std::move(blocks), watch_.request().operation == engine::kNone);
}

void MainWindow::confirmingChanged() {
  panel_->setEnabled(!dialog_->confirming());
  dialog_->workChanged();
  if (!dialog_->confirming()) documents_->sync();
  updateActions();
}

word::Application& MainWindow::shown() {
  while (shown_.count() > 0) shown_.remove(shown_.active());
  OpenDocument* const document = current();
  if (document == nullptr) return shown_;
  if (!work_.underWay()) document->refresh();
  shown_.add(document->shown().shared_from_this());
  return shown_;
}

/// A block awaits the user's decision: its document comes to the front, and the block into sight.
void MainWindow::blockAwaits() {
  documents_->want(application_->active());
  documents_->sync();
  const OpenDocument* const document = documents_->find(*application_->active());
  if (document == nullptr || document->view() == nullptr) return;
  documents_->bringToFront(*document);
  document->view()->reveal(document->shown().selection());
}

/// The first text of the place comes into sight.
void MainWindow::placesChosen() {
  const document::Places& places = placeList_->places();
  dialog_->worksIn(document::kindsIn(places));
  if (current() == nullptr) return;
  if (const auto first = current()->shown().nextStory(document::kindsIn(places), 0))
    current()->lookAt(static_cast<std::size_t>(*first));
}

void MainWindow::undo() {
  if (refusedNow()) return;
  if (current() == nullptr || !current()->canUndo()) {
    if (beside_->filesChanged())
      note(
          tr("Nothing was taken back. What the run over files changed is taken back by "
             "Runs > Undo Last Run."));
    return;
  }
  found_->clear();
  current()->undo(work_, [this] { note_ = tr("The last pass was taken back."); });
}

void MainWindow::redo() {
  if (current() == nullptr || refusedNow() || !current()->canRedo()) return;
  found_->clear();
  current()->redo(work_, [this] { note_ = tr("The pass was made again."); });
}

// The program's own documents, and the window's messages.

void MainWindow::showHelp(const std::u16string& path) {
  auto& window = help_[path];
  if (window == nullptr) window = std::make_unique<HelpWindow>(base::nameBytes(path));
  window->show();
  window->raise();
  window->activateWindow();
}

void MainWindow::openInstructions() {
  errors::Fault fault;
  try {
    return showHelp(component_ + u"/Instructions.doc");
  } catch (...) {
    fault = errors::faultInFlight();
  }
  Question(this, tr("The instructions could not be opened."), QString::fromStdU16String(fault.description))
      .exec();
}

void MainWindow::updateTitle() {
  const OpenDocument* const shown = current();
  const QString program = QGuiApplication::applicationDisplayName();
  setWindowTitle(shown == nullptr ? program
                                  : shown->name() + QStringLiteral("[*]") + shown->kind() +
                                        QStringLiteral(" – ") + program);
  setWindowModified(shown != nullptr && shown->changed());
  const double zoom = shown == nullptr ? 1 : shown->view()->zoom();
  zoom_->setText(tr("%1 %").arg(qRound(zoom * 100)));
  placeList_->update(shown == nullptr ? nullptr : &shown->shown().stories());
  updateActions();
}

void MainWindow::updateActions() {
  if (!runs_) return;
  const bool works = work_.underWay();
  const bool confirms = dialog_->confirming();
  placeList_->setEnabled(!works && !confirms);
  menus_->update({.works = works, .confirms = confirms, .filesChanged = beside_->filesChanged()});
  runs_->update(works || confirms);
}

void MainWindow::note(const QString& message) {
  constexpr int kMilliseconds = 6000;
  statusBar()->showMessage(message, kMilliseconds);
}

void MainWindow::goToPanel() {
  dock_->show();
  dialog_->goToBeginning();
}

}  // namespace pluvo::desktop
