#pragma once

#include "files/file_system.h"

#include <optional>
#include <string>
#include <vector>

/// Files that runs leave in PLUVO's state folder, beside the originals for undo.
namespace pluvo::runs {

/// The report of a run without a file for it, in a folder that is made where it is
/// missing. Throws DocumentError.
std::string placeOfLastReport(files::FileSystem& system);
/// The same, where there is one.
std::optional<std::string> lastReport(files::FileSystem& system);

/// The documents that an interrupted run did not work on.
struct UnfinishedList {
  std::string path;
  std::vector<std::string> documents;  ///< as the user named them: paths may begin in the folder of then
};

/// The list written last; nothing where there is none. Throws DocumentError where it cannot be read.
std::optional<UnfinishedList> lastUnfinished(files::FileSystem& system);
/// Whether there is such a list.
bool hasUnfinished(files::FileSystem& system);
/// Removes the list; one that is gone already is no fault. Throws DocumentError.
void forget(files::FileSystem& system, const UnfinishedList& list);

}  // namespace pluvo::runs
