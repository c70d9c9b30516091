#include "main_window.h"

#include <QScopeGuard>
#include <QScrollBar>
#include <QTabBar>
#include <algorithm>
#include <utility>

/// Open documents and their tabs, and which is in front.
namespace pluvo::desktop {

OpenDocument* MainWindow::find(const memory::MemoryDocument& document) const {
  const auto found = std::find_if(documents_.begin(), documents_.end(),
                                  [&](const auto& open) { return open->document().get() == &document; });
  return found == documents_.end() ? nullptr : found->get();
}

OpenDocument* MainWindow::inTab(int index) const {
  const QWidget* const widget = tabs_->widget(index);
  const auto found = std::find_if(documents_.begin(), documents_.end(), [&](const auto& open) {
    return widget != nullptr && open->view() == widget;
  });
  return found == documents_.end() ? nullptr : found->get();
}

OpenDocument* MainWindow::current() const { return inTab(tabs_->currentIndex()); }

void MainWindow::opened(const memory::OpenedFile& file) {
  documents_.push_back(std::make_unique<OpenDocument>(file));
  documents_.back()->edited = [this] {
    if (!titles_.isActive()) titles_.start();
  };
  wanted_ = file.document;
}

void MainWindow::activated(const std::shared_ptr<memory::MemoryDocument>& document) {
  if (!syncing_) wanted_ = document;
}

void MainWindow::closing(const std::shared_ptr<memory::MemoryDocument>& document) {
  OpenDocument* const closed = find(*document);
  if (closed == nullptr) return;
  const QPointer<view::DocumentView> view = closed->view();
  std::erase_if(documents_, [&](const auto& open) { return open.get() == closed; });
  if (!view) return;
  tabs_->removeTab(tabs_->indexOf(view));
  view->deleteLater();
  for (int i = 0; i < tabs_->count(); ++i) {
    if (tabs_->isTabVisible(i)) continue;
    tabs_->setTabVisible(i, true);
    tabs_->setCurrentIndex(i);
  }
}

/// Of a document that a run has open, and the user, too, that of the run is shown.
void MainWindow::showOneTabForEach() {
  for (const auto& ofRun : documents_) {
    if (!dialog_ || !dialog_->runWorks(*ofRun->document())) continue;
    for (const auto& open : documents_) {
      if (open != ofRun && open->view() != nullptr && open->file().isAt(ofRun->document()->path()))
        tabs_->setTabVisible(tabs_->indexOf(open->view()), false);
    }
  }
}

/// Its file has another version: that is shown in its place.
void MainWindow::reload(OpenDocument& document) {
  const std::string path = document.document()->path();
  const bool inMainText = document.document()->selectedStory() == 0;
  const text::Span selected = inMainText ? document.document()->selection() : text::Span{};
  const int index = tabs_->indexOf(document.view());
  const bool isFront = tabs_->currentIndex() == index;
  const double zoom = document.view()->zoom();
  const int scrolled = document.view()->verticalScrollBar()->value();
  memory::OpenedFile again;
  try {
    opener_->readAs(document.file().stored().encoding());
    const auto noLonger = qScopeGuard([this] { opener_->readAs({}); });
    again = opener_->open(path);
  } catch (const errors::Fault&) {
    return;  // what was there is still to be read
  }
  const bool synced = std::exchange(syncing_, true);
  application_->close(document.document());
  application_->add(again.document, again.file);
  OpenDocument& now = *find(*again.document);
  makeTab(now, index);
  const text::Position end = again.document->mainText().length();
  again.document->select({std::min(selected.from, end), std::min(selected.to, end)});
  now.view()->setZoom(zoom);
  now.view()->verticalScrollBar()->setValue(scrolled);
  if (isFront) tabs_->setCurrentWidget(now.view());
  if (current() != nullptr) application_->activate(current()->document());
  syncing_ = synced;
  wanted_.reset();
  updateTitles();
}

/// Gives every open document a tab, and brings together which is in front here and in the engine's eyes. Not
/// while the engine works: it opens and closes documents that nobody needs to see.
void MainWindow::syncTabs() {
  if (std::exchange(syncing_, true)) return;
  for (std::size_t i = 0; i < documents_.size(); ++i) {
    if (documents_[i]->view() == nullptr) makeTab(*documents_[i]);
  }
  showOneTabForEach();
  const auto wanted = std::exchange(wanted_, {}).lock();
  const OpenDocument* const front = wanted ? find(*wanted) : nullptr;
  if (front != nullptr && front->view() != nullptr) tabs_->setCurrentWidget(front->view());
  if (current() != nullptr && !atWork()) application_->activate(current()->document());
  documentsOrWelcome_->setCurrentIndex(tabs_->count() > 0 ? 1 : 0);
  syncing_ = false;
  updateTitles();
  if (dialog_) dialog_->documentsChanged();
}

void MainWindow::makeTab(OpenDocument& document, int index) {
  text::RunMap<formats::Appearance> appearance;
  const formats::Source& source = document.file().stored().source();
  try {
    working_.run([&] { appearance = source.appearance(); });
  } catch (const std::exception&) {
    appearance = {};  // the text is shown without
  }
  auto* const view =
      new view::DocumentView(document.document(), std::move(appearance),
                             [this](const std::function<void()>& work) { working_.run(work); });
  view->zoomed = [this] { updateTitles(); };
  view->setAcceptDrops(false);
  document.shownBy(view);
  tabs_->insertTab(index, view, document.name());
}

void MainWindow::tabChosen() {
  if (syncing_) return;
  if (current() != nullptr && !atWork()) {
    syncing_ = true;
    application_->activate(current()->document());
    syncing_ = false;
  }
  updateTitles();
}

void MainWindow::updateTitles() {
  // A save in another thread is looking at the document.
  if (working_.breathing()) return titles_.start();
  for (int i = 0; i < tabs_->count(); ++i) {
    const OpenDocument* const document = inTab(i);
    if (document == nullptr) continue;
    QString title = document->name();
    title.replace(QLatin1Char('&'), QStringLiteral("&&"));
    tabs_->setTabText(i, document->changed() ? title + QLatin1Char('*') : title);
    tabs_->setTabToolTip(i, document->path());
    for (const auto side : {QTabBar::LeftSide, QTabBar::RightSide}) {
      if (QWidget* const close = tabs_->tabBar()->tabButton(i, side))
        close->setAccessibleName(tr("Close %1").arg(document->name()));
    }
  }
  OpenDocument* const shown = current();
  const QString program = QGuiApplication::applicationDisplayName();
  setWindowTitle(shown == nullptr ? program : shown->name() + QStringLiteral("[*] – ") + program);
  setWindowModified(shown != nullptr && shown->changed());
  const double zoom = shown == nullptr ? 1 : shown->view()->zoom();
  zoom_->setText(tr("%1 %").arg(qRound(zoom * 100)));
  updateActions();
}

void MainWindow::nextTab(int step) {
  const int count = tabs_->count();
  if (count > 0) tabs_->setCurrentIndex((tabs_->currentIndex() + step + count) % count);
}

}  // namespace pluvo::desktop
