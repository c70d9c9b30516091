#pragma once

#include "history.h"
#include "memory/application.h"
#include "store/opener.h"
#include "view/changes.h"
#include "view/document_view.h"
#include "work.h"

#include <QPointer>
#include <QString>
#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <unordered_map>
#include <vector>

namespace pluvo::desktop {

/// One open document in two copies. Work in another thread edits the first and publishes it now and then. The
/// window's thread alone has the second, its view, and the states that undo goes back to.
class OpenDocument final : public memory::DocumentObserver {
 public:
  explicit OpenDocument(const memory::OpenedFile& opened);
  ~OpenDocument() override;

  /// That of the work, or of the window where none is under way.
  const std::shared_ptr<memory::MemoryDocument>& document() const { return document_; }
  store::StoredFile& file() const { return *file_; }
  const std::shared_ptr<store::StoredFile>& sharedFile() const { return file_; }

  // Of the window's thread: as it is shown.
  memory::MemoryDocument& shown() const { return *shown_; }
  QString name() const;
  /// For people; a byte that is no character shows as one that stands for it.
  QString path() const;
  bool changed() const { return changed_; }
  /// " (template)" for one; else empty.
  QString kind() const;

  view::DocumentView* view() const { return view_; }
  /// Makes its view, out of what prepare() made where that was called.
  view::DocumentView* makeView();

  /// The published version is shown.
  void receive();
  /// The same when the work has ended; the document is the window's again.
  void takeBack();
  /// A change by the window itself is shown.
  void refresh();

  void passBegins();
  /// Whether the pass that began last has changed the document; refresh() tells of the latest.
  bool passChanged() const { return history_.passChanged(); }
  bool canUndo() const { return history_.canUndo(); }
  bool canRedo() const { return history_.canRedo(); }
  void forgetPasses();
  /// The user goes to the story of that number: to its top, in main text to where the selection was.
  void lookAt(std::size_t story);
  /// The user goes to that text of a story, which is selected.
  void goTo(std::size_t story, text::Span selection);
  /// To main text, where the story in sight went with the text that it stood in.
  void leaveGoneStory();
  /// Takes the last pass back, or makes it again, as work, and tells when that is done. One of the two above
  /// holds, and no work is under way.
  void undo(Work& work, std::function<void()> then) { move(work, History::Way::back, std::move(then)); }
  void redo(Work& work, std::function<void()> then) { move(work, History::Way::forth, std::move(then)); }
  /// Takes the last pass back at once; the work under way waits.
  void undoNow();

  /// Called where the document that is shown has changed.
  std::function<void()> edited = [] {};
  /// Called where the window's thread itself has changed the document, before that is shown.
  std::function<void()> changedHere = [] {};
  /// Whether work has the document.
  std::function<bool()> isWorkedOn = [] { return false; };

  // Of the thread that works on it.
  /// Looks through it for a view, which is what takes time.
  void prepare();
  bool hasView() const { return hasView_; }
  /// Its present state can be shown.
  void publish();

  // memory::DocumentObserver
  void aboutToChange() override;
  void replaced(const document::Story& story, text::Span span, text::Position newLength) override;
  void highlighted(const document::Story& story, text::Span span) override;
  void selected(const document::Story& story, text::Span span) override;
  void viewChanged() override;

 private:
  struct News {
    std::optional<History::Snapshot> before;  ///< the pass changed it
    std::shared_ptr<memory::MemoryDocument> now;
    std::vector<view::Changes> changes;  ///< which made this of the one that was published last; for the view
    std::optional<std::pair<std::size_t, text::Span>> selection;
  };

  void happened();
  void show(News news);
  void keepSelection(memory::MemoryDocument& before, const std::vector<view::Changes>& changes);
  void move(Work& work, History::Way way, std::function<void()> then);
  void exchange(History::Snapshot& state);
  void userSelects(std::size_t story, text::Span selection);

  std::shared_ptr<memory::MemoryDocument> document_;
  std::unordered_map<const document::Story*, std::size_t> numbers_;  ///< of its stories
  std::shared_ptr<store::StoredFile> file_;
  std::atomic<bool> awaitsChange_ = false;
  std::atomic<bool> hasView_ = false;
  // Of the thread that works on it.
  News news_;
  bool isNews_ = false;
  std::optional<view::ChangeLog> log_;  ///< for a view that was prepared
  struct Prepared {
    std::shared_ptr<memory::MemoryDocument> document;
    view::DocumentView::Prepared view;
  };
  std::optional<Prepared> prepared_;

  std::mutex mutex_;
  News published_;  ///< from one thread to the other

  std::shared_ptr<memory::MemoryDocument> shown_;
  QPointer<view::DocumentView> view_;
  History history_;
  bool changed_ = false;
  /// Meanwhile the user has selected something in the copy shown.
  bool userSelected_ = false;
  bool selecting_ = false;
  /// In main text, as it was when the user left that.
  text::Span selectionBefore_;
};

}  // namespace pluvo::desktop
