#pragma once

#include "files/file_system.h"

#include <optional>
#include <string>

namespace pluvo::files {

/// The name of the file by which a word processor says that it has the document open: "~$" and the name
/// without its first characters, or ".~lock.", the name and "#". Nothing when there is none.
std::optional<std::string> lockFileOf(FileSystem& system, const std::string& document);

}  // namespace pluvo::files
