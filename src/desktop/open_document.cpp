#include "open_document.h"

#include <QCoreApplication>
#include <QThread>
#include <algorithm>
#include <iterator>
#include <utility>

namespace pluvo::desktop {

OpenDocument::OpenDocument(const memory::OpenedFile& opened)
    : document_(opened.document),
      file_(std::dynamic_pointer_cast<store::StoredFile>(opened.file)),
      shown_(document_->copy()),
      changed_(document_->stories().changed()) {
  document::Document& stories = document_->stories();
  for (std::size_t i = 0; i < stories.count(); ++i) numbers_.emplace(&stories.story(i), i);
  document_->observer(this);
}

OpenDocument::~OpenDocument() {
  document_->observer(nullptr);
  if (view_) view_->detach();
}

QString OpenDocument::name() const { return QString::fromStdU16String(shown_->Name()); }

QString OpenDocument::path() const { return QString::fromStdString(shown_->path()); }

QString OpenDocument::kind() const {
  return file_ && file_->stored().isTemplate() ? QObject::tr(" (template)") : QString();
}

// The thread that works on it.

void OpenDocument::prepare() {
  publish();
  Prepared made{document_->copy(), {}};
  view::DocumentView::Appearances appearances;
  try {
    appearances = file_->stored().source().appearance();
  } catch (const std::exception&) {
    appearances = {};  // the text is shown without
  }
  log_.emplace(document_->stories());
  {
    // It includes changes published before.
    const std::lock_guard lock(mutex_);
    published_.changes.clear();
  }
  made.view = view::DocumentView::prepare(made.document, *log_, std::move(appearances));
  prepared_ = std::move(made);
}

void OpenDocument::happened() {
  isNews_ = true;
  if (QThread::currentThread() == QCoreApplication::instance()->thread()) changedHere();
}

void OpenDocument::aboutToChange() {
  if (awaitsChange_.exchange(false)) news_.before = document_->stories().snapshot();
  happened();
}

void OpenDocument::replaced(const document::Story& story, text::Span span, text::Position newLength) {
  if (log_) log_->replaced(numbers_.at(&story), span, newLength);
  happened();
}

void OpenDocument::highlighted(const document::Story& story, text::Span span) {
  if (log_) log_->highlighted(numbers_.at(&story), span);
  happened();
}

void OpenDocument::selected(const document::Story& story, text::Span span) {
  if (selecting_) return;
  news_.selection = {numbers_.at(&story), span};
  happened();
}

void OpenDocument::viewChanged() { happened(); }

void OpenDocument::publish() {
  if (!std::exchange(isNews_, false)) return;
  News news = std::exchange(news_, {});
  news.now = document_->copy();
  if (log_) news.changes.push_back(log_->take());
  const std::lock_guard lock(mutex_);
  if (published_.now == nullptr) {
    published_ = std::move(news);
    return;
  }
  if (!published_.before) published_.before = std::move(news.before);
  published_.now = std::move(news.now);
  std::ranges::move(news.changes, std::back_inserter(published_.changes));
  if (news.selection) published_.selection = news.selection;
}

// The window's thread.

view::DocumentView* OpenDocument::makeView() {
  if (!prepared_) prepare();
  Prepared made = *std::exchange(prepared_, std::nullopt);
  shown_ = std::move(made.document);
  view_ = new view::DocumentView(std::move(made.view));
  hasView_ = true;
  view_->userSelected = [this](text::Span selection) { userSelects(shown_->selectedStory(), selection); };
  view_->storyAsked = [this](std::size_t story) { lookAt(story); };
  receive();
  return view_;
}

void OpenDocument::userSelects(std::size_t story, text::Span selection) {
  if (isWorkedOn()) {
    userSelected_ = true;
    return;
  }
  selecting_ = true;
  document_->select(story, selection);
  selecting_ = false;
}

void OpenDocument::lookAt(std::size_t story) {
  if (story == shown_->selectedStory()) return;
  const text::Position end = shown_->stories().story(story).length();
  const text::Span before = story == 0 ? selectionBefore_ : text::Span{};
  goTo(story, {std::min(before.from, end), std::min(before.to, end)});
}

void OpenDocument::goTo(std::size_t story, text::Span selection) {
  if (shown_->selectedStory() == 0) selectionBefore_ = shown_->selection();
  shown_->select(story, selection);
  if (view_) view_->selectionChanged(selection);
  userSelects(story, selection);
}

void OpenDocument::leaveGoneStory() {
  if (shown_->stories().isGone(shown_->selectedStory())) lookAt(0);
}

void OpenDocument::receive() {
  News news;
  {
    const std::lock_guard lock(mutex_);
    news = std::exchange(published_, {});
  }
  if (news.now != nullptr) show(std::move(news));
}

void OpenDocument::show(News news) {
  if (news.before) history_.keep(*std::move(news.before));
  const auto before = std::exchange(shown_, std::move(news.now));
  if (userSelected_) keepSelection(*before, news.changes);
  if (view_) view_->take(shown_, news.changes);
  if (view_ && before->view() != shown_->view()) view_->viewChanged();
  if (news.selection) {
    userSelected_ = false;
    const auto& [story, span] = *news.selection;
    shown_->select(story, span);
    if (view_) view_->selectionChanged(span);
  }
  edited();
}

/// The user's selection meanwhile stays, and moves with the text.
void OpenDocument::keepSelection(memory::MemoryDocument& before, const std::vector<view::Changes>& changes) {
  const std::size_t story = before.selectedStory();
  text::Span selection = before.selection();
  for (const view::Changes& those : changes) {
    const auto change = std::ranges::find(those, story, &view::StoryChange::story);
    if (change == those.end()) continue;
    selection.from = positionAfter(change->touched, selection.from);
    selection.to = positionAfter(change->touched, selection.to);
  }
  shown_->select(story, selection);
}

void OpenDocument::takeBack() {
  publish();
  receive();
  if (shown_->path() != document_->path()) shown_->moveTo(document_->path());
  if (const bool now = document_->stories().changed(); std::exchange(changed_, now) != now) edited();
  if (!std::exchange(userSelected_, false)) return;
  selecting_ = true;
  document_->select(shown_->selectedStory(), shown_->selection());
  selecting_ = false;
}

void OpenDocument::refresh() { takeBack(); }

void OpenDocument::passBegins() {
  history_.passBegins();
  awaitsChange_ = true;
}

void OpenDocument::forgetPasses() {
  history_ = {};
  awaitsChange_ = false;
}

void OpenDocument::undoNow() {
  awaitsChange_ = false;
  History::Snapshot state = history_.take(History::Way::back);
  exchange(state);
  history_.put(History::Way::forth, std::move(state));
  refresh();
}

void OpenDocument::move(Work& work, History::Way way, std::function<void()> then) {
  awaitsChange_ = false;
  const auto state = std::make_shared<History::Snapshot>(history_.take(way));
  work.run([this, state] { exchange(*state); },
           [this, state, way, then = std::move(then)](const std::exception_ptr& thrown) {
             if (thrown) std::rethrow_exception(thrown);
             history_.put(way == History::Way::back ? History::Way::forth : History::Way::back,
                          std::move(*state));
             then();
           });
}

/// The document is as the state was, and the state as the document was.
void OpenDocument::exchange(History::Snapshot& state) {
  document::Document& stories = document_->stories();
  History::Snapshot now = stories.snapshot();
  stories.restore(std::move(state));
  state = std::move(now);
}

}  // namespace pluvo::desktop
