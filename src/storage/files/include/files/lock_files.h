#pragma once

#include "files/file_system.h"

#include <optional>
#include <string>

namespace pluvo::files {

/// A file by which a word processor says that it has a document open.
struct LockFile {
  std::string name;  ///< in the document's folder
  std::string
      owner;  ///< who has the document open, in UTF-8 without control characters; empty where not told
};

/// The lock file of a document of that name in the folder: "~$" and the name without its first characters, or
/// ".~lock.", the name and "#". Nothing when there is none. One that may be of several documents counts for
/// each of them, unless the word processor's rule gives it to one that is there.
std::optional<LockFile> lockFileOf(FileSystem& system, const OpenFolder& folder, const std::string& document);

}  // namespace pluvo::files
