#include "open_document.h"

namespace pluvo::desktop {

OpenDocument::OpenDocument(const memory::OpenedFile& opened)
    : document_(opened.document), file_(std::dynamic_pointer_cast<store::StoredFile>(opened.file)) {
  document_->observer(this);
}

OpenDocument::~OpenDocument() {
  document_->observer(nullptr);
  if (view_) view_->detach();
}

QString OpenDocument::name() const { return QString::fromStdU16String(document_->Name()); }

QString OpenDocument::path() const { return QString::fromStdString(document_->path()); }

void OpenDocument::undo() { history_.undo(document_->stories()); }

void OpenDocument::redo() { history_.redo(document_->stories()); }

void OpenDocument::replaced(const document::Story& story, text::Span span, text::Position newLength) {
  if (isShown(story)) view_->textReplaced(span, newLength);
  edited();
}

void OpenDocument::highlighted(const document::Story& story, text::Span span) {
  if (isShown(story)) view_->highlightChanged(span);
  edited();
}

void OpenDocument::selected(const document::Story& story, text::Span span) {
  if (isShown(story)) view_->selectionChanged(span);
}

void OpenDocument::viewChanged() {
  if (view_) view_->viewChanged();
}

}  // namespace pluvo::desktop
