#pragma once

#include "document_files.h"
#include "documents.h"
#include "folder_run.h"
#include "not_reached.h"
#include "pass_watch.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace pluvo::desktop {

/// Passes and runs over files beside the documents that the user has open: what both mean for each other, and
/// the questions of that.
class BesideRuns {
 public:
  /// The window's services. The window outlives it.
  struct Place {
    QWidget& window;
    Work& work;
    PassWatch& watch;
    Documents& documents;
    DocumentFiles& files;
    std::shared_ptr<memory::MemoryApplication> application;
    /// Shows a message for a while.
    std::function<void(const QString& message)> note;
    /// A run over files has ended.
    std::function<void(const RunOverFiles& run)> ended;
  };

  explicit BesideRuns(Place place);

  FolderRun::Place placeOfRuns();
  /// A run neither saves half-done work in a document nor loses it: the user decides before it begins. Then
  /// is told whether it begins.
  void filesChosen(std::vector<std::u16string>& files, const DocumentFiles::Then& then);
  void passBegins();
  /// Tells what the run that has just ended did not reach, over one document or over files.
  void notReached(const std::function<void(const std::u16string& sentence)>& told);
  /// The file has another version.
  void fileChanged(const std::string& path);
  /// Whether a run changed some on disk.
  bool filesChanged() const { return filesChanged_; }

 private:
  enum class AboutUnsaved { save, leaveOut, stop };
  AboutUnsaved askAboutUnsaved(const std::vector<OpenDocument*>& unsaved);
  void saveAll(std::vector<std::shared_ptr<memory::MemoryDocument>> unsaved, const DocumentFiles::Then& then);
  bool goesOnAfterRefusal();
  bool goesOnWithoutOriginals(const std::string& why);
  void saved(const std::string& path);
  void leftOpen(const std::string& path);

  Place place_;
  NotReached notReached_;
  bool filesChanged_ = false;
};

}  // namespace pluvo::desktop
