#pragma once

#include "beside_runs.h"
#include "document_files.h"
#include "documents.h"

#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <QMenuBar>
#include <functional>
#include <string>
#include <vector>

namespace pluvo::desktop {

/// The window's menus, whose actions depend on open documents and work under way.
class Menus final : public QObject {
 public:
  /// The targets of the actions; all outlive the menus.
  struct Place {
    QWidget& window;
    Documents& documents;
    DocumentFiles& files;
    QAction& panel;   ///< shows and hides the panel
    QAction& places;  ///< the same of the list of places
    QAction& blocks;  ///< the same of the blocks found
    std::function<void()> undo;
    std::function<void()> redo;
    std::function<void()> cancel;
    std::function<void()> goToPanel;
    std::function<void()> instructions;
  };
  /// The work under way.
  struct State {
    bool works = false;
    bool confirms = false;
    /// There is nothing to take back here, but the user may look for it.
    bool filesChanged = false;
  };

  Menus(QMenuBar& bar, Place place);

  /// Of runs over files, to be filled.
  QMenu& runs() { return *runs_; }
  void update(const State& state);

 private:
  QAction* add(QMenu& menu, const QString& text, const QKeySequence& keys, std::function<void()> done);
  void buildFile(QMenu& file);
  void buildEdit(QMenu& edit);
  void buildView(QMenu& view);
  void buildColours(QMenu& themes);
  void updateRecent();
  void about();
  view::DocumentView& view() const { return *place_.documents.current()->view(); }

  Place place_;
  QAction* open_ = nullptr;
  QMenu* recent_ = nullptr;
  QAction* save_ = nullptr;
  QAction* saveAs_ = nullptr;
  QAction* reopen_ = nullptr;
  QAction* close_ = nullptr;
  QAction* undo_ = nullptr;
  QAction* redo_ = nullptr;
  QAction* copy_ = nullptr;
  QAction* selectAll_ = nullptr;
  QAction* cancel_ = nullptr;
  QAction* fieldCodes_ = nullptr;
  QAction* instructions_ = nullptr;
  QMenu* runs_ = nullptr;
  QActionGroup themes_{nullptr};
};

}  // namespace pluvo::desktop
