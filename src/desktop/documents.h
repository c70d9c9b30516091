#pragma once

#include "memory/application.h"
#include "open_document.h"
#include "store/opener.h"
#include "work.h"

#include <QRect>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTimer>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace pluvo::desktop {

/// Open documents in tabs, and which of them is in front, here and in the engine's eyes. Where none is open
/// it shows how to open one.
class Documents final : public QStackedWidget, private memory::ApplicationObserver {
 public:
  Documents(const std::shared_ptr<memory::MemoryApplication>& application,
            const std::shared_ptr<store::StoreOpener>& opener, Work& work);
  ~Documents() override;

  const std::vector<std::unique_ptr<OpenDocument>>& all() const { return documents_; }
  OpenDocument* find(const memory::MemoryDocument& document) const;
  /// The one in front; null where none is open.
  OpenDocument* current() const { return inTab(tabs_->currentIndex()); }

  /// Gives every open document a tab, and brings together which is in front here and in the engine's eyes.
  /// Not while the engine works: it opens and closes documents that need not be shown.
  void sync();
  /// A document that was opened, and looked through in whichever thread.
  void add(std::unique_ptr<OpenDocument> opened);
  /// The next sync() brings this one to the front.
  void want(const std::shared_ptr<memory::MemoryDocument>& document) { wanted_ = document; }
  void bringToFront(const OpenDocument& document) { tabs_->setCurrentWidget(document.view()); }
  void next(int step);
  /// Its file has another version, which is shown in its place once no work is under way.
  void reload(const OpenDocument& document);
  /// No work is under way.
  void reloadStale();
  /// Tabs show names, and mark documents with unsaved changes.
  void updateTitles();
  /// Where on the screen the selection of the one in front is; empty when it is out of sight.
  QRect selectionRect() const;
  /// Closes all, without a question.
  void closeAll();

  // Of the thread that works.
  /// The pass has come some way, which the window may show.
  void progress();
  /// Shows the work of the pass so far.
  void showNow();
  /// The work is done but for this.
  void finish();

  /// Whether a pass holds the documents.
  std::function<bool()> held = [] { return false; };
  /// Whether a run over files has a document open.
  std::function<bool(const memory::MemoryDocument& document)> runWorks = [](const auto&) { return false; };
  /// The user wants to open one, and to close one.
  std::function<void()> openAsked = [] {};
  std::function<void(OpenDocument& document)> closeAsked = [](auto&) {};
  /// Which one is in front has changed, or its name, changes or zoom.
  std::function<void()> titlesChanged = [] {};
  /// Documents were opened or closed.
  std::function<void()> synced = [] {};

 private:
  // memory::ApplicationObserver
  void opened(const memory::OpenedFile& file) override;
  void activated(const std::shared_ptr<memory::MemoryDocument>& document) override;
  void closing(const std::shared_ptr<memory::MemoryDocument>& document) override;

  QWidget* welcome();
  OpenDocument* inTab(int index) const;
  void makeTab(OpenDocument& document, int index = -1);
  void workDone();
  void put(OpenDocument& old, std::unique_ptr<OpenDocument> now);
  void showOneTabForEach();
  void tabChosen();

  std::shared_ptr<memory::MemoryApplication> application_;
  std::shared_ptr<store::StoreOpener> opener_;
  Work& work_;
  std::vector<std::unique_ptr<OpenDocument>> documents_;
  /// The document that the engine brought to the front and no tab shows yet.
  std::weak_ptr<memory::MemoryDocument> wanted_;
  bool syncing_ = false;
  /// Paths of those whose files have other versions.
  std::vector<std::string> stale_;
  /// The one that the application is about to tell of.
  std::unique_ptr<OpenDocument> added_;
  std::chrono::steady_clock::time_point progressed_;
  QTabWidget* tabs_;
  QTimer titles_;
};

}  // namespace pluvo::desktop
