#pragma once

#include "folder_run.h"
#include "runs/kept.h"
#include "runs/past_runs.h"
#include "work.h"

#include <QAction>
#include <QMenu>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace pluvo::desktop {

/// The menu of past runs over files: their originals, so that the last run can be taken back; its
/// report; and unfinished documents. All of it outlives the program, and is that of the command line,
/// too.
class RunsMenu final : public QObject {
 public:
  /// The window's services. The window outlives it.
  struct Place {
    QWidget& window;
    Work& work;
    /// Whether a pass is under way, which the user is told.
    std::function<bool()> refusedNow;
    /// Opens a file with the program for it. Throws Fault.
    std::function<void(const QString& path)> openFile;
    /// Has the dialog show these files, for a run over them.
    std::function<void(const std::vector<std::u16string>& files)> listFiles;
    /// The file has another version.
    std::function<void(const std::string& path)> changed;
    /// Shows a message for a while.
    std::function<void(const QString& message)> note;
  };

  RunsMenu(QMenu& menu, Place place);

  /// The journal may have changed; while something is under way all is off.
  void update(bool held);
  /// A run has ended: what of that the user has to know. Silent where the window closes.
  void runEnded(const RunOverFiles& run, bool silently);
  /// Whether an undo is under way, which nothing ends.
  bool takesBack() const { return takesBack_; }

 private:
  void undoLast();
  bool confirmsUndo(const runs::PastRun& run);
  void takeBack(const std::shared_ptr<runs::PastRuns>& past, const std::string& run);
  void tellTakenBack(std::size_t restored, std::size_t asBefore, const QStringList& left);
  void showReport();
  void showUnfinished();
  void goOn(const runs::UnfinishedList& list);
  void forget(const runs::UnfinishedList& list);
  void forgetIfDone(const std::vector<std::string>& files);
  void look();
  void show();
  void tell(const QString& what, const QString& more);

  Place place_;
  bool takesBack_ = false;
  QAction* undo_ = nullptr;
  QAction* report_ = nullptr;
  QAction* unfinished_ = nullptr;
  bool held_ = false;
  bool canUndo_ = false;
  bool hasReport_ = false;
  bool hasUnfinished_ = false;
  /// The list that the user goes on with.
  std::optional<runs::UnfinishedList> wanted_;
};

}  // namespace pluvo::desktop
