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
                     const std::shared_ptr<store::StoreOpener>& opener, Working& working)
    : application_(application), opener_(opener), working_(working), tabs_(new QTabWidget) {
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
  connect(&titles_, &QTimer::timeout, this, &Documents::updateTitles);
  application_->observer(this);
}

Documents::~Documents() {
  tabs_->disconnect(this);
  application_->observer(nullptr);
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
  documents_.push_back(std::make_unique<OpenDocument>(file));
  documents_.back()->edited = [this] {
    if (!titles_.isActive()) titles_.start();
  };
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

void Documents::reload(OpenDocument& document) {
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
  const bool wasSyncing = std::exchange(syncing_, true);
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
  syncing_ = wasSyncing;
  wanted_.reset();
  updateTitles();
}

void Documents::makeTab(OpenDocument& document, int index) {
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
