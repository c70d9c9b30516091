#pragma once

#include "errors/document_error.h"
#include "files/file_system.h"
#include "record.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace pluvo::journal {

std::string pathIn(const std::string& folder, const std::string& name);

/// A folder of the journal, held open. It is the user's, and nobody else may write in it: what it says is
/// done, with the user's rights.
class OwnFolder {
 public:
  /// Throws DocumentError where it is another's or a link, std::system_error where it cannot be opened.
  OwnFolder(files::FileSystem& system, const files::Place& place, std::string path);

  const std::string& path() const { return path_; }  ///< for the user
  std::uint64_t device() const { return device_; }
  files::Handle handle() const { return folder_.handle(); }
  files::Place at(std::string name) const { return folder_.at(std::move(name)); }

 private:
  std::string path_;
  files::OpenFolder folder_;
  std::uint64_t device_;
};

/// A missing folder is an error (std::system_error), or is made together with those it lies in.
enum class Missing { fails, isMade };
/// The folder of runs, and one in it.
OwnFolder openRuns(files::FileSystem& system, const std::string& folder, Missing missing = Missing::fails);
OwnFolder openRun(files::FileSystem& system, const OwnFolder& runs, const std::string& name);
/// Nothing where another program has removed the run since it was listed.
std::optional<OwnFolder> openRunIfThere(files::FileSystem& system, const OwnFolder& runs,
                                        const std::string& name);

/// The folder of the runs with names, beside the folder of runs, and one in it.
OwnFolder openAllNamed(files::FileSystem& system, const std::string& folder,
                       Missing missing = Missing::fails);
OwnFolder openNamed(files::FileSystem& system, const OwnFolder& named, const std::string& name,
                    Missing missing = Missing::fails);

/// The names of files in a run's folder.
inline constexpr const char* kJournal = "journal";
inline constexpr const char* kLock = "lock";
inline std::string originalName(std::uint64_t number) { return std::to_string(number); }

/// Whether runs have such names.
bool isRunName(std::string_view name);

/// The names of the runs, the oldest first.
std::vector<std::string> runNames(files::FileSystem& system, const OwnFolder& runs);

/// The run's records, in order; none where it did not begin its journal. Nothing where the
/// journal cannot be read: of such a run nothing may be removed. Throws DocumentError where the journal is
/// another's.
std::optional<std::vector<Record>> recordsIn(files::FileSystem& system, const OwnFolder& run);

/// The same, record by record. Throws DocumentError also where the journal cannot be read.
void forEachRecordIn(files::FileSystem& system, const OwnFolder& run,
                     const std::function<void(Record)>& visit);

/// The lock of a run that no other program holds, now held here. Nothing while the run is going on, and where
/// another program has just removed it.
std::unique_ptr<files::OpenFile> lockRun(files::FileSystem& system, const OwnFolder& run);

/// Whether the file is that version. Its inode may be another one: a copy puts back bytes, not inodes.
bool isVersion(const files::Stamp& found, const files::Stamp& version);

/// Whether it is the very file that the run put there. Its disk may have another number since.
bool isFileOf(const files::Stamp& found, const files::Stamp& version);

/// Whether the run's folder has the original, whole. A copy on another disk than the document
/// may have another time.
bool isOriginal(files::FileSystem& system, const OwnFolder& run, const files::FileStatus& found,
                const Record& kept, const files::Stamp& document);

/// The same of a file beside the document, where others may have put it. Only files of the journal's own
/// disk come to lie there.
bool isOriginalBeside(const OwnFolder& run, const files::FileStatus& found, const Record& kept);

/// The folder of the document; nothing where there is none.
std::optional<files::OpenFolder> folderOf(files::FileSystem& system, const Record& kept);

/// Clears a killed program's files beside the document: the original goes into the run's folder,
/// all else goes. Where that fails it stays.
void clearBeside(files::FileSystem& system, const OwnFolder& run, const Record& kept,
                 const std::optional<files::OpenFolder>& folder);

/// The same for all documents of a run that is not going on, if it did not come to its end.
void clearUp(files::FileSystem& system, const OwnFolder& run, const std::vector<Record>& kept);

/// Nothing hangs on it any more.
void removeIfPossible(files::FileSystem& system, const files::Place& place);

/// Forgets the run. Its journal goes last of its files, so that the rest of an interrupted call is seen.
void removeRun(files::FileSystem& system, const OwnFolder& runs, const std::string& name,
               const OwnFolder& run);

/// Of the folder of runs.
errors::DocumentError journalFailed(const std::system_error& failure, const std::string& folder);

}  // namespace pluvo::journal
