#include "documents.h"

#include <QLabel>
#include <QPushButton>
#include <QScopeGuard>
#include <QScrollBar>
#include <QTabBar>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace pluvo::desktop {

Documents::Documents(const std::shared_ptr<memory::MemoryApplication>& application,
                     const std::shared_ptr<store::StoreOpener>& opener, Work& work)
    : application_(application), opener_(opener), work_(work), tabs_(new QTabWidget) {
  tabs_->setDocumentMode(true);
  tabs_->setTabsClosable(true);
  tabs_->setMovable(true);
  tabs_->setAccessibleName(tr("Documents"));
  connect(tabs_, &QTabWidget::currentChanged, this, &Documents::tabChosen);
  connect(tabs_, &QTabWidget::tabCloseRequested, this, [this](int index) {
    if (OpenDocument* document = inTab(index); document != nullptr) closeAsked(*document);
  });
  addWidget(welcome());
  addWidget(tabs_);
  titles_.setSingleShot(true);
  titles_.setInterval(60);
  connect(&titles_, &QTimer::timeout, this, [this] {
    if (!work_.underWay())
      for (const auto& open : documents_) open->refresh();
    updateTitles();
  });
  work_.done = [this] { workDone(); };
  work_.showing = [this] { showNow(); };
  work_.finishing = [this] { finish(); };
  application_->observer(this);
}

Documents::~Documents() {
  tabs_->disconnect(this);
  application_->observer(nullptr);
  work_.done = work_.showing = work_.finishing = [] {};
  documents_.clear();
}

QWidget* Documents::welcome() {
  auto* const welcome = new QWidget;
  auto* layout = new QVBoxLayout(welcome);
  auto* text = new QLabel(tr("Open a document, or drop one here."));
  text->setAlignment(Qt::AlignCenter);
  text->setWordWrap(true);
  // Without a key: Alt+O is the dialog's.
  auto* button = new QPushButton(tr("Open a Document …"));
  connect(button, &QPushButton::clicked, this, [this] { openAsked(); });
  layout->addStretch(2);
  layout->addWidget(text);
  layout->addWidget(button, 0, Qt::AlignHCenter);
  layout->addStretch(3);
  return welcome;
}

OpenDocument* Documents::find(const memory::MemoryDocument& document) const {
  const auto found = std::find_if(documents_.begin(), documents_.end(),
                                  [&](const auto& open) { return open->document().get() == &document; });
  return found == documents_.end() ? nullptr : found->get();
}

OpenDocument* Documents::inTab(int index) const {
  const QWidget* const widget = tabs_->widget(index);
  const auto found = std::find_if(documents_.begin(), documents_.end(), [&](const auto& open) {
    return widget != nullptr && open->view() == widget;
  });
  return found == documents_.end() ? nullptr : found->get();
}

void Documents::closeAll() {
  while (!documents_.empty()) application_->close(documents_.back()->document());
}

// What happens to the application.

void Documents::opened(const memory::OpenedFile& file) {
  const auto later = [this] {
    if (!titles_.isActive()) titles_.start();
  };
  documents_.push_back(added_ ? std::move(added_) : std::make_unique<OpenDocument>(file));
  documents_.back()->edited = later;
  documents_.back()->changedHere = later;
  documents_.back()->isWorkedOn = [this] { return work_.underWay(); };
  wanted_ = file.document;
}

void Documents::activated(const std::shared_ptr<memory::MemoryDocument>& document) {
  if (!syncing_) wanted_ = document;
}

void Documents::closing(const std::shared_ptr<memory::MemoryDocument>& document) {
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

// Tabs.

void Documents::sync() {
  if (std::exchange(syncing_, true)) return;
  for (std::size_t i = 0; i < documents_.size(); ++i) {
    if (documents_[i]->view() == nullptr) makeTab(*documents_[i]);
  }
  showOneTabForEach();
  const auto wanted = std::exchange(wanted_, {}).lock();
  const OpenDocument* const front = wanted ? find(*wanted) : nullptr;
  if (front != nullptr && front->view() != nullptr) tabs_->setCurrentWidget(front->view());
  if (current() != nullptr && !held()) application_->activate(current()->document());
  setCurrentIndex(tabs_->count() > 0 ? 1 : 0);
  syncing_ = false;
  updateTitles();
  synced();
}

/// Of a document that a run has open, and the user, too, that of the run is shown.
void Documents::showOneTabForEach() {
  for (const auto& ofRun : documents_) {
    if (!runWorks(*ofRun->document())) continue;
    for (const auto& open : documents_) {
      if (open != ofRun && open->view() != nullptr && open->file().isAt(ofRun->document()->path()))
        tabs_->setTabVisible(tabs_->indexOf(open->view()), false);
    }
  }
}

void Documents::add(std::unique_ptr<OpenDocument> opened) {
  const auto document = opened->document();
  const auto file = opened->sharedFile();
  added_ = std::move(opened);
  application_->add(document, file);
}

void Documents::makeTab(OpenDocument& document, int index) {
  view::DocumentView* const view = document.makeView();
  view->zoomed = [this] { updateTitles(); };
  view->setAcceptDrops(false);
  tabs_->insertTab(index, view, document.name());
}

// Other versions of files.

void Documents::reload(const OpenDocument& document) {
  stale_.push_back(document.document()->path());
  if (!work_.underWay()) reloadStale();
}

void Documents::reloadStale() {
  while (!stale_.empty()) {
    const std::string path = std::move(stale_.back());
    stale_.pop_back();
    const auto old = std::ranges::find_if(documents_, [&](const auto& open) {
      return open->view() != nullptr && !open->changed() && open->document()->path() == path;
    });
    if (old == documents_.end()) continue;
    const auto read = std::make_shared<std::unique_ptr<OpenDocument>>();
    const auto encoding = (*old)->file().stored().encoding();
    return work_.run(
        [this, read, path, encoding] {
          opener_->readAs(encoding);
          const auto noLonger = qScopeGuard([this] { opener_->readAs({}); });
          *read = std::make_unique<OpenDocument>(opener_->open(path));
          (*read)->prepare();
        },
        [this, read, was = (*old)->document()](const std::exception_ptr& thrown) {
          // The old contents can still be read where the file is gone.
          if (OpenDocument* const open = find(*was); !thrown && open != nullptr) put(*open, std::move(*read));
          reloadStale();
        });
  }
}

/// In the place of the tab that shows an earlier version.
void Documents::put(OpenDocument& old, std::unique_ptr<OpenDocument> now) {
  const std::size_t story = old.shown().selectedStory();
  const text::Span selected = story == 0 ? old.shown().selection() : text::Span{};
  const int index = tabs_->indexOf(old.view());
  const bool isFront = tabs_->currentIndex() == index;
  const double zoom = old.view()->zoom();
  const int scrolled = old.view()->verticalScrollBar()->value();
  const bool wasSyncing = std::exchange(syncing_, true);
  application_->close(old.document());
  OpenDocument& open = *now;
  add(std::move(now));
  makeTab(open, index);
  const text::Position end = open.document()->mainText().length();
  open.document()->select({std::min(selected.from, end), std::min(selected.to, end)});
  open.refresh();
  if (story < open.shown().stories().count()) open.lookAt(story);
  open.view()->setZoom(zoom);
  open.view()->verticalScrollBar()->setValue(scrolled);
  if (isFront) tabs_->setCurrentWidget(open.view());
  if (current() != nullptr) application_->activate(current()->document());
  syncing_ = wasSyncing;
  wanted_.reset();
  updateTitles();
}

// Work.

/// A copy is as large as what was edited: it is made the more seldom.
void Documents::progress() {
  const auto now = std::chrono::steady_clock::now();
  if (now < progressed_) return;
  showNow();
  const auto took = std::chrono::steady_clock::now() - now;
  progressed_ =
      now + std::max<std::chrono::steady_clock::duration>(std::chrono::milliseconds(100), 20 * took);
}

void Documents::showNow() {
  if (application_->count() == 0) return;
  OpenDocument* const open = find(*application_->active());
  if (open == nullptr || !open->hasView()) return;
  open->publish();
  work_.tell([this] {
    for (const auto& each : documents_) each->receive();
  });
}

void Documents::finish() {
  for (const auto& open : documents_) {
    if (!open->hasView()) open->prepare();
    open->publish();
  }
}

void Documents::workDone() {
  for (const auto& open : documents_) open->takeBack();
}

void Documents::tabChosen() {
  if (syncing_) return;
  if (current() != nullptr && !held()) {
    syncing_ = true;
    application_->activate(current()->document());
    syncing_ = false;
  }
  updateTitles();
}

void Documents::updateTitles() {
  for (int i = 0; i < tabs_->count(); ++i) {
    OpenDocument* const document = inTab(i);
    if (document == nullptr) continue;
    document->leaveGoneStory();
    QString title = document->name();
    title.replace(QLatin1Char('&'), QStringLiteral("&&"));
    tabs_->setTabText(i, document->changed() ? title + QLatin1Char('*') : title);
    tabs_->setTabToolTip(i, document->path() + document->kind());
    for (const auto side : {QTabBar::LeftSide, QTabBar::RightSide}) {
      if (QWidget* const close = tabs_->tabBar()->tabButton(i, side))
        close->setAccessibleName(tr("Close %1").arg(document->name()));
    }
  }
  titlesChanged();
}

void Documents::next(int step) {
  const int count = tabs_->count();
  if (count > 0) tabs_->setCurrentIndex((tabs_->currentIndex() + step + count) % count);
}

QRect Documents::selectionRect() const {
  const OpenDocument* const document = current();
  if (document == nullptr) return {};
  const QRect rect = document->view()->selectionRect();
  return rect.isEmpty() ? rect : rect.translated(document->view()->viewport()->mapToGlobal(QPoint(0, 0)));
}

}  // namespace pluvo::desktop
