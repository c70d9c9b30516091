#pragma once

#include "files/file_system.h"
#include "request.h"

#include <string>
#include <vector>

namespace pluvo::cli {

/// The requests of a file in TOML: a table [[request]] for each, with a command and the options of the block,
/// the change and the matching as keys. Throws UsageError, with the line, for whatever is wrong with it.
std::vector<Request> savedRequests(const std::string& path);

/// Adds a request to the file, which is made where it is missing; what is there stays as it is, comments
/// included. Throws UsageError.
void saveRequest(files::FileSystem& system, const std::string& path, const Request& request);

}  // namespace pluvo::cli
