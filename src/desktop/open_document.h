#pragma once

#include "history.h"
#include "memory/application.h"
#include "store/opener.h"
#include "view/document_view.h"

#include <QPointer>
#include <QString>
#include <functional>
#include <memory>

namespace pluvo::desktop {

/// One open document: its file, its view where it is shown, and what its passes can be taken back to.
class OpenDocument final : public memory::DocumentObserver {
 public:
  explicit OpenDocument(const memory::OpenedFile& opened);
  ~OpenDocument() override;

  const std::shared_ptr<memory::MemoryDocument>& document() const { return document_; }
  store::StoredFile& file() const { return *file_; }
  QString name() const;
  /// For people; a byte that is no character shows as one that stands for it.
  QString path() const;
  bool changed() const { return document_->stories().changed(); }

  view::DocumentView* view() const { return view_; }
  void shownBy(view::DocumentView* view) { view_ = view; }

  void passBegins() { history_.passBegins(); }
  /// Whether the pass that began last has changed the document.
  bool passChanged() const { return history_.passChanged(); }
  bool canUndo() const { return history_.canUndo(); }
  bool canRedo() const { return history_.canRedo(); }
  void forgetPasses() { history_ = {}; }
  void undo();
  void redo();

  /// Called where the document has changed.
  std::function<void()> edited = [] {};

  void aboutToChange() override { history_.keep(document_->stories()); }
  void replaced(const document::Story& story, text::Span span, text::Position newLength) override;
  void highlighted(const document::Story& story, text::Span span) override;
  void selected(const document::Story& story, text::Span span) override;
  void viewChanged() override;

 private:
  /// Whether the view shows it.
  bool isShown(const document::Story& story) const { return view_ && &story == &document_->mainText(); }

  std::shared_ptr<memory::MemoryDocument> document_;
  std::shared_ptr<store::StoredFile> file_;
  QPointer<view::DocumentView> view_;
  History history_;
};

}  // namespace pluvo::desktop
