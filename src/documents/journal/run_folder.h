#pragma once

#include "files/file_system.h"
#include "files/problem.h"
#include "record.h"

#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace pluvo::journal {

std::string pathIn(const std::string& folder, const std::string& name);

/// Paths inside a run's folder.
std::string journalIn(const std::string& run);
std::string lockIn(const std::string& run);
std::string originalIn(const std::string& run, std::uint64_t number);

/// The names of the runs, the oldest first; nothing where there is no folder yet.
std::vector<std::string> runNames(files::FileSystem& system, const std::string& folder);

/// What the run recorded, in order; none where it did not come to begin its journal. Nothing where the
/// journal cannot be read: of such a run nothing may be removed.
std::optional<std::vector<Record>> recordsIn(files::FileSystem& system, const std::string& run);

/// The lock of a run that no program holds, now held here; nothing while it is going on, and
/// where another program has just removed it.
std::unique_ptr<files::OpenFile> lockRun(files::FileSystem& system, const std::string& run);

/// Whether the file is that version. Its inode may be another one: a copy puts back bytes, not inodes.
bool isVersion(const files::Stamp& found, const files::Stamp& version);

/// Whether it is the very file that the run put there. Its disk may have another number since.
bool isFileOf(const files::Stamp& found, const files::Stamp& version);

/// Whether what is kept is the original, whole. A copy on another disk than the document may have another
/// time.
bool isOriginal(const files::Stamp& found, const Record& kept, const files::Stamp& document);

/// What a killed program left beside the document: the original goes into the run's folder, all else goes.
/// Where that fails it stays.
void clearBeside(files::FileSystem& system, const std::string& run, const Record& kept);

/// The same for all documents of a run that is not going on, if it did not come to its end.
void clearUp(files::FileSystem& system, const std::string& run, const std::vector<Record>& kept);

/// Nothing hangs on it any more.
void removeIfPossible(files::FileSystem& system, const std::string& path);

/// Forgets the run. Its journal goes last of its files, so that what is left of an interrupted call is seen.
void removeRun(files::FileSystem& system, const std::string& run);

/// Makes the folder and those it lies in.
void makeFolders(files::FileSystem& system, const std::string& folder);

/// Returns when the folder's names are on disk.
void flushNames(files::FileSystem& system, const std::string& folder);

/// Of the folder of runs.
files::DocumentError journalFailed(const std::system_error& failure, const std::string& folder);

}  // namespace pluvo::journal
