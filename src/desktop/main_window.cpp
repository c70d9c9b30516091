#include "main_window.h"

#include "main_window_actions.h"
#include "recent.h"
#include "theme.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFile>
#include <QMenuBar>
#include <QMimeData>
#include <QScreen>
#include <QSettings>
#include <QStatusBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace pluvo::desktop {

MainWindow::MainWindow(const Places& places, Choosers choosers)
    : choosers_(std::move(choosers)), component_(places.component), actions_(std::make_unique<Actions>()) {
  const auto chooseFreeName = [this](const std::string& path) { return freeName(path); };
  opener_ = std::make_shared<store::StoreOpener>(
      store::Store(), chooseFreeName, [this](const std::function<void()>& work) { working_.run(work); });
  opener_->encodingChooser([this](const std::string& path, const std::string& sentence) {
    return opensForUser_ ? chooseEncoding(path, sentence) : std::nullopt;
  });
  application_ = std::make_shared<memory::MemoryApplication>(opener_);
  application_->observer(this);
  setWindowTitle(QGuiApplication::applicationDisplayName());
  setAcceptDrops(true);
  buildDocuments();
  buildPanel();
  buildStatus();
  buildMenus();
  titles_.setSingleShot(true);
  titles_.setInterval(60);
  connect(&titles_, &QTimer::timeout, this, &MainWindow::updateTitles);
  working_.changed = [this](bool underWay) { workChanged(underWay); };
  working_.ended = [this] { workEnded(); };
  watch_.begun = [this] {
    // The window was closed in the pause before the run.
    if (closeWanted_) working_.cancel();
    passBegins();
  };
  watch_.goesOnAfterRefusal = [this] { return goesOnAfterRefusal(); };
  watch_.takeBack = [this] {
    OpenDocument* document = find(*application_->active());
    if (document != nullptr && document->passChanged()) document->undo();
  };
  dialog_ = std::make_unique<Dialog>(
      application_, working_, watch_, places,
      DialogPlace{.window = *this,
                  .container = *panel_,
                  .run = placeOfRuns(),
                  .filesChosen = [this](auto& files) { return filesChosen(files); },
                  .notReached = [this] { return notReached(); },
                  .showDocument = [this](const auto& path) { showHelp(path); },
                  .chooseFolder =
                      [this](const auto& folder) {
                        return choosers_.folder(this, QString::fromStdU16String(folder)).toStdU16String();
                      },
                  .blockAwaits = [this] { blockAwaits(); },
                  .confirmingChanged = [this] { confirmingChanged(); },
                  .blockRect = [this] { return blockRect(); },
                  .left =
                      [this] {
                        if (current() != nullptr) current()->view()->setFocus();
                      }});
  runs_ = std::make_unique<RunsMenu>(
      *runsMenu_, RunsMenu::Place{.window = *this,
                                  .working = working_,
                                  .refusedNow = [this] { return refusedNow(); },
                                  .openFile = [this](const QString& path) { dialog_->openFile(path); },
                                  .listFiles = [this](const auto& files) { dialog_->listFiles(files); },
                                  .changed = [this](const std::string& path) { fileChanged(path); },
                                  .note =
                                      [this](const QString& text) {
                                        note_ = text;
                                        if (!working_.underWay()) workEnded();
                                      }});
  restorePlace();
  updateActions();
}

MainWindow::~MainWindow() {
  dialog_.reset();
  application_->observer(nullptr);
  documents_.clear();
}

void MainWindow::openDialog() { dialog_->open(); }

void MainWindow::buildDocuments() {
  tabs_ = new QTabWidget;
  tabs_->setDocumentMode(true);
  tabs_->setTabsClosable(true);
  tabs_->setMovable(true);
  tabs_->setAccessibleName(tr("Documents"));
  connect(tabs_, &QTabWidget::currentChanged, this, &MainWindow::tabChosen);
  connect(tabs_, &QTabWidget::tabCloseRequested, this, [this](int index) {
    if (OpenDocument* document = inTab(index); document != nullptr && !refusedNow()) closeDocument(*document);
  });

  auto* welcome = new QWidget;
  auto* layout = new QVBoxLayout(welcome);
  auto* text = new QLabel(tr("Open a document, or drop one here."));
  text->setAlignment(Qt::AlignCenter);
  text->setWordWrap(true);
  // Without a key: Alt+O is the dialog's.
  auto* button = new QPushButton(tr("Open a Document …"));
  connect(button, &QPushButton::clicked, this, &MainWindow::chooseAndOpen);
  layout->addStretch(2);
  layout->addWidget(text);
  layout->addWidget(button, 0, Qt::AlignHCenter);
  layout->addStretch(3);

  documentsOrWelcome_ = new QStackedWidget;
  documentsOrWelcome_->addWidget(welcome);
  documentsOrWelcome_->addWidget(tabs_);
  setCentralWidget(documentsOrWelcome_);
}

void MainWindow::buildPanel() {
  dock_ = new QDockWidget(tr("Find & Operate"), this);
  dock_->setObjectName(QStringLiteral("panel"));
  dock_->setAllowedAreas(Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea | Qt::BottomDockWidgetArea);
  panel_ = new QWidget;
  dock_->setWidget(panel_);
  addDockWidget(Qt::RightDockWidgetArea, dock_);
}

void MainWindow::buildStatus() {
  cancel_ = new QPushButton(tr("Cancel"));
  cancel_->setToolTip(tr("Ends what is under way (Esc)"));
  cancel_->setFocusPolicy(Qt::NoFocus);
  cancel_->hide();
  connect(cancel_, &QPushButton::clicked, this, &MainWindow::cancelWork);
  zoom_ = new QLabel(QStringLiteral("100 %"));
  zoom_->setAccessibleName(tr("Zoom"));
  statusBar()->addPermanentWidget(cancel_);
  statusBar()->addPermanentWidget(zoom_);
}

void MainWindow::restorePlace() {
  const QSettings settings;
  const bool restored = restoreGeometry(settings.value(QStringLiteral("window/geometry")).toByteArray());
  restoreState(settings.value(QStringLiteral("window/state")).toByteArray());
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
  // Whoever asks something goes on with a document when the answer is there.
  if (QApplication::activeModalWidget() != nullptr) {
    closeWanted_ = true;
    return;
  }
  if (working_.breathing()) {
    closeWanted_ = true;
    cancelWork();
    return;
  }
  if (dialog_->pauses()) {
    closeWanted_ = true;
    return;
  }
  closeWanted_ = false;
  closing_ = true;
  dialog_->endConfirmation();
  closing_ = false;
  // All questions first: who stays after all finds everything as it was.
  for (std::size_t i = 0; i < documents_.size(); ++i) {
    if (!mayClose(*documents_[i])) return;
  }
  while (!documents_.empty()) application_->close(documents_.back()->document());
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
  // Behind the drop, so that a question about a document does not hold up the other program.
  QTimer::singleShot(0, this, [this, paths] { open(paths); });
}

// Work and confirmation.

bool MainWindow::atWork() const { return working_.breathing() || (dialog_ && dialog_->confirming()); }

bool MainWindow::refusedNow() {
  if (!atWork()) return false;
  statusBar()->showMessage(tr("A pass is under way. Finish or cancel it first."), kMessageTime);
  return true;
}

void MainWindow::cancelWork() {
  if (runs_->takesBack()) return statusBar()->showMessage(tr("An undo is finished once it has begun."));
  working_.cancel();
  statusBar()->showMessage(working_.cancels() == 1 && watch_.runsOverFiles()
                               ? tr("Cancelling. A run over files finishes the document at "
                                    "hand; Cancel again takes its changes back.")
                               : tr("Cancelling …"));
}

void MainWindow::workChanged(bool underWay) {
  cancel_->setVisible(underWay);
  if (underWay) {
    focusBefore_ = QApplication::focusWidget();
    statusBar()->showMessage(tr("Working …"));
  } else {
    statusBar()->clearMessage();
  }
  panel_->setEnabled(!underWay && !dialog_->confirming());
  updateActions();
  if (!underWay && focusBefore_ && focusBefore_->isVisible() && QApplication::focusWidget() == nullptr)
    focusBefore_->setFocus();
}

void MainWindow::workEnded() {
  syncTabs();
  if (!note_.isEmpty()) statusBar()->showMessage(std::exchange(note_, {}), kMessageTime);
  if (closeWanted_) QTimer::singleShot(0, this, &QWidget::close);
}

void MainWindow::confirmingChanged() {
  panel_->setEnabled(!dialog_->confirming());
  if (!dialog_->confirming()) syncTabs();
  updateActions();
}

/// A block awaits the user's decision: its document comes to the front, and the block into sight.
void MainWindow::blockAwaits() {
  wanted_ = application_->active();
  syncTabs();
  const OpenDocument* const document = find(*application_->active());
  if (document == nullptr || document->view() == nullptr) return;
  tabs_->setCurrentWidget(document->view());
  document->view()->reveal(document->document()->selection());
}

QRect MainWindow::blockRect() const {
  const OpenDocument* const document = current();
  if (document == nullptr) return {};
  const QRect rect = document->view()->selectionRect();
  return rect.isEmpty() ? rect : rect.translated(document->view()->viewport()->mapToGlobal(QPoint(0, 0)));
}

}  // namespace pluvo::desktop
