#pragma once

#include "files/file_system.h"
#include "runs/written_request.h"

#include <string>
#include <vector>

namespace pluvo::runs {

/// The requests in a text in TOML: a table [[request]] for each, with a command and the words of a
/// WrittenRequest as keys. The path is for messages. Throws RequestError, whose
/// sentence begins with the path and the line.
std::vector<engine::Request> savedRequests(const std::string& toml, const std::string& path);

/// Adds a request to the file, which is made where it is missing; the rest stays as it is, comments
/// included. Throws errors::DocumentError and std::system_error.
void addRequest(files::FileSystem& system, const std::string& path, const engine::Request& request);

}  // namespace pluvo::runs
