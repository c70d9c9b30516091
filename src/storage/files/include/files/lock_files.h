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
/// ".~lock.", the name and "#". Nothing when there is none. One that may be of several documents is taken for
/// that of every one of them, unless one that is there has it by the word processor's rule and this one not.
std::optional<LockFile> lockFileOf(FileSystem& system, const OpenFolder& folder, const std::string& document);

}  // namespace pluvo::files
