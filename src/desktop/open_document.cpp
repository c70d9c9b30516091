#include "open_document.h"

#include <QCoreApplication>
#include <QThread>
#include <algorithm>
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
  made.view = view::DocumentView::prepare(made.document, std::move(appearances));
  prepared_ = std::move(made);
}

void OpenDocument::happened() {
  news_.isAny = true;
  if (QThread::currentThread() == QCoreApplication::instance()->thread()) changedHere();
}

void OpenDocument::aboutToChange() {
  if (awaitsChange_.exchange(false)) news_.before = document_->stories().snapshot();
  happened();
}

void OpenDocument::replaced(const document::Story& story, text::Span span, text::Position newLength) {
  news_.edits.push_back({numbers_.at(&story), span, newLength});
  happened();
}

void OpenDocument::highlighted(const document::Story& story, text::Span span) {
  news_.edits.push_back({numbers_.at(&story), span, std::nullopt});
  happened();
}

void OpenDocument::selected(const document::Story& story, text::Span span) {
  if (selecting_) return;
  news_.selection = {numbers_.at(&story), span};
  happened();
}

void OpenDocument::viewChanged() { happened(); }

void OpenDocument::publish() {
  if (!std::exchange(news_.isAny, false)) return;
  News news = std::exchange(news_, {});
  news.now = document_->stories().snapshot();
  const std::lock_guard lock(mutex_);
  if (!published_.isAny) {
    published_ = std::move(news);
  } else {
    if (!published_.before) published_.before = std::move(news.before);
    published_.now = std::move(news.now);
    published_.edits.insert(published_.edits.end(), news.edits.begin(), news.edits.end());
    if (news.selection) published_.selection = news.selection;
  }
  published_.isAny = true;
}

// The window's thread.

view::DocumentView* OpenDocument::makeView() {
  if (!prepared_) prepare();
  receive();
  Prepared made = *std::exchange(prepared_, std::nullopt);
  shown_ = std::move(made.document);
  view_ = new view::DocumentView(std::move(made.view));
  hasView_ = true;
  view_->userSelected = [this](text::Span selection) { userSelects(shown_->selectedStory(), selection); };
  view_->storyAsked = [this](std::size_t story) { lookAt(story); };
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
  if (shown_->selectedStory() == 0) selectionBefore_ = shown_->selection();
  const text::Position end = shown_->stories().story(story).length();
  const text::Span before = story == 0 ? selectionBefore_ : text::Span{};
  const text::Span selection{std::min(before.from, end), std::min(before.to, end)};
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
  if (news.isAny) show(std::move(news));
}

void OpenDocument::show(News news) {
  if (news.before) history_.keep(*std::move(news.before));
  shown_->stories().restore(std::move(news.now));
  if (view_) {
    for (const Edit& edit : news.edits) {
      if (edit.newLength) {
        view_->textReplaced(edit.story, edit.span, *edit.newLength);
      } else {
        view_->highlightChanged(edit.story, edit.span);
      }
    }
  }
  if (news.selection) {
    userSelected_ = false;
    const auto& [story, span] = *news.selection;
    shown_->select(story, span);
    if (view_) view_->selectionChanged(span);
  }
  edited();
}

void OpenDocument::takeBack() {
  publish();
  receive();
  if (shown_->path() != document_->path()) shown_->moveTo(document_->path());
  if (shown_->view() != document_->view()) {
    shown_->showFieldCodes(document_->view() == text::View::codes);
    if (view_) view_->viewChanged();
  }
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

void OpenDocument::move(void (History::*way)(document::Document&)) {
  awaitsChange_ = false;
  (history_.*way)(document_->stories());
  refresh();
}

}  // namespace pluvo::desktop
