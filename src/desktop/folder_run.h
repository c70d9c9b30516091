#pragma once

#include "dialog/clsProcessFind.h"
#include "dialog/file_stepper.h"
#include "dialog/frmPassword.h"
#include "memory/application.h"
#include "pass_watch.h"
#include "pausing_thread.h"
#include "run_passwords.h"
#include "runs/face.h"
#include "runs/run.h"
#include "store/opener.h"
#include "store/store.h"
#include "work.h"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace pluvo::desktop {

/// How a run over files ended, for the window to tell.
struct RunOverFiles {
  const runs::Ended& ended;
  const std::string& trouble;  ///< why it did not begin, or ended before its time; else empty
  bool isBegun;
  const std::vector<std::string>& files;
};

/// A run over files as the dialog drives it, from the thread of its work: a run of runs/, which opens, saves
/// and journals documents.
///
/// In Quiet Mode without confirmation it makes the passes too, over several documents at once. Else it has a
/// thread of its own, and hands one document after the other to the word processor of the window. There the
/// dialog's engine makes the pass, in one call or block by block, while the run stands still.
class FolderRun final : public dialog::FileStepper, private runs::Face {
 public:
  /// The window's services. All of them outlive the run; but for answers, these are calls of no work.
  struct Place {
    std::shared_ptr<memory::MemoryApplication> application;
    Work& work;
    PassWatch& watch;
    /// Those that were right so far.
    std::shared_ptr<store::KnownPasswords> passwords;
    /// Where a document is to be saved that may not be replaced; the name must be free.
    std::function<std::optional<std::string>(const std::string& path)> freeName;
    /// The originals cannot be kept, for this reason; whether the run goes on without a way back.
    std::function<bool(const std::string& why)> goesOnWithoutOriginals;
    /// Called with the outcome of each document.
    std::function<void(const runs::Outcome& outcome)> told;
    /// The file has another version.
    std::function<void(const std::string& path)> saved;
    /// A document that the run is done with stays open, as its changes are in no file.
    std::function<void(const std::string& path)> leftOpen;
    std::function<void(const RunOverFiles& run)> ended;
  };

  /// Files and folders are found by the driver.
  FolderRun(std::shared_ptr<dialog::FileStepper> driver, Place place);
  ~FolderRun() override;

  std::vector<std::u16string> GetFiles(dialog::clsProcessFind& engine, bool subFolders,
                                       std::int16_t depth) override;
  void MultiPLUVO(dialog::clsProcessFind& engine, const std::vector<std::u16string>& files) override;
  bool MultiPLUVO_OpenNextFile(dialog::clsProcessFind& engine, const std::vector<std::u16string>& files,
                               std::int32_t& index) override;
  void MultiPLUVO_CloseFile(dialog::clsProcessFind& engine) override;
  void abandon(dialog::clsProcessFind& engine) override;
  std::u16string BrowseForFolder(dialog::clsProcessFind& engine, const std::u16string& start) override;
  std::shared_ptr<word::Document> currentDocument() override;

  /// The user wants an end: once, after the documents at hand; a second time, at once.
  void cancel() { ++cancels_; }
  /// Whether the document is open for the run.
  bool works(const memory::MemoryDocument& document) const {
    return current_ && current_->document().get() == &document;
  }

 private:
  // runs::Face, of the run's threads.
  void begins(std::size_t documents) override;
  bool answers(runs::Question question) const override;
  bool oneByOne() const override { return !passesItself_; }
  runs::Answer answer(const runs::Asked& asked) override;
  std::optional<engine::PassResult> pass(const runs::OpenForPass& open) override;
  void document(const runs::Outcome& outcome) override;
  runs::Cancelled cancelled() override;
  std::string sentenceFor(runs::Trouble trouble) const override;

  std::shared_ptr<store::StoredFile> fileOf(const std::shared_ptr<store::StoredDocument>& stored);

  // Of the work's thread.
  void begin(dialog::clsProcessFind& engine, const std::vector<std::u16string>& files);
  void start();
  void advance();
  bool goesOnWithout(const runs::CannotBegin& refused);

  // Of the window's thread, while others wait.
  runs::Answer answered(const runs::Asked& asked);
  runs::Answer passwordFor(const runs::Asked& asked);
  runs::Answer placeFor(const runs::Asked& asked);
  void tell(const runs::Outcome& outcome);
  void tellFailure(const runs::Outcome& outcome, const std::shared_ptr<store::StoredDocument>& was);

  std::shared_ptr<dialog::FileStepper> driver_;
  Place place_;
  PausingThread thread_;
  dialog::clsProcessFind* engine_ = nullptr;
  std::unique_ptr<dialog::frmPassword> prompt_;
  RunPasswords passwords_;

  runs::Plan plan_;
  runs::Ended ended_;
  bool passesItself_ = false;
  std::atomic<int> cancels_ = 0;
  std::size_t documents_ = 0;
  std::size_t done_ = 0;
  /// Documents that the user would not have worked on, who need not be told.
  std::set<std::string> declined_;
  std::u16string failures_;

  /// Why there is no report; else empty.
  std::string noReport_;

  // Handed over by the run, which pauses.
  std::shared_ptr<store::StoredDocument> awaited_;
  engine::PassObserver* watcher_ = nullptr;
  std::size_t number_ = 0;
  /// Handed back.
  engine::PassResult result_;

  /// From its pass until it is told what became of it.
  std::shared_ptr<store::StoredDocument> current_;
  bool isShown_ = false;    ///< in the word processor
  bool staysOpen_ = false;  ///< as the user has no other place for it yet
};

}  // namespace pluvo::desktop
