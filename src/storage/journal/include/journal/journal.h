#pragma once

#include "files/saving.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// Makes a run undoable: it keeps the bytes of every document replaced, and which version took its place.
///
/// A journal is a folder of runs, each a folder named after the time it began. It holds "journal", a text of
/// one record a line; "lock", held while the run lasts; and the originals, numbered. Only the user may enter:
/// a journal that belongs to another user, or that others may write, is refused. On the journal's disk an
/// original is the document's own file: swapped with the new version, then moved here. Its record also says
/// where it lies between the two. From another disk it is a copy. Record and copy are on disk before the
/// document is replaced. So an undo puts back exactly the version that was replaced, at whatever moment a run
/// or an undo was killed. Files beside a document are on record as well. The undo, or the next run that
/// changes something, removes those that a killed program left.
namespace pluvo::journal {

/// Where the journal is: "pluvo/runs" in $XDG_STATE_HOME, by default in ~/.local/state. Nothing where neither
/// that variable nor HOME is set.
std::optional<std::string> defaultFolder();

/// The same in a folder of the user's choice, as an absolute path.
std::string folderBelow(const std::string& folder);

/// A new file beside the folder of runs, in a folder that is made where it is missing and refused as a
/// journal is. Throws DocumentError (io) and std::system_error.
files::Handle createBeside(files::FileSystem& system, const std::string& folder, const std::string& name);

/// The folder that the folder of runs lies in, and that is the user's alone; made where it is missing, if so
/// wanted. Throws DocumentError (io) and std::system_error.
std::string folderBeside(files::FileSystem& system, const std::string& folder, bool isMade);

/// The originals of all runs together take no more than this. The oldest runs go first, and a run that needs
/// more by itself keeps what fits.
inline constexpr std::uint64_t kDefaultLimit = std::uint64_t{4} * 1024 * 1024 * 1024;

class OriginalsLimit;
struct RunUnderWay;

/// The journal of the run that is going on. May be used from several threads.
class Recorder {
 public:
  /// Makes the folder where it is missing. The command is what undo's list shows. Throws DocumentError (io).
  Recorder(files::FileSystem& system, std::string folder, std::string command,
           std::uint64_t limit = kDefaultLimit);
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;
  /// A run that replaced nothing leaves nothing, unless it is a slice.
  virtual ~Recorder();

  /// To be called before each document is replaced (files::NewVersion::beforeReplacing). Throws DocumentError
  /// where the original cannot be kept, so that the document is not replaced. The result must not
  /// outlive this. In a slice the outcome, which is on disk before then, is what will have come of it.
  std::unique_ptr<files::Keeping> keep(const files::Replacement& replacement,
                                       const std::string& outcome = {});
  /// Records the intended outcome of a slice's document that is saved elsewhere. Throws std::system_error.
  void intend(const std::string& key, const std::string& outcome);

  /// The name of the run, by which it is taken back; empty while no original is kept.
  std::string name() const;
  /// Documents replaced without being kept, since the limit was reached.
  std::uint64_t notKept() const;

 protected:
  explicit Recorder(std::unique_ptr<RunUnderWay> slice);
  RunUnderWay& underWay() { return *run_; }

 private:
  bool isSlice() const { return limit_ == nullptr; }

  std::unique_ptr<RunUnderWay> run_;
  std::unique_ptr<OriginalsLimit> limit_;  ///< none where this is a slice
};

/// A run as undo's list shows it.
struct Run {
  std::string name;  ///< "20261121-142233-0": the time it began (UTC), and a number among those of one second
  std::string command;
  std::uint64_t documents = 0;
  std::uint64_t notKept = 0;
  std::uint64_t bytes = 0;
  bool going = false;  ///< still running
  /// undo refuses it, since its folder or journal is not the user's alone; nothing else is known of it.
  bool refused = false;
};

/// The runs that can be taken back, or are refused, the oldest first.
std::vector<Run> runs(files::FileSystem& system, const std::string& folder);

enum class Outcome {
  restored,
  asBefore,  ///< the run never came to replace it, or an earlier undo put it back
  failed,
};

struct Undone {
  std::string path;
  Outcome outcome = Outcome::restored;
  std::optional<errors::DocumentError> problem = std::nullopt;  ///< where it failed
};

/// Takes a run back, the last document first: bytes, permissions and time of last change; the document's own
/// file comes back where it was kept. A document that changed since is left as it is (DocumentError changed).
/// A run that was taken back whole is forgotten; only documents that could not be put back can be tried
/// again.
void undo(files::FileSystem& system, const std::string& folder, const std::string& run,
          const std::function<void(const Undone&)>& report);

}  // namespace pluvo::journal
