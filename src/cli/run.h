#pragma once

#include "files/file_system.h"
#include "request.h"

namespace pluvo::cli {

/// Status with which the program ends.
enum ExitStatus : int { kFound = 0, kNoneFound = 1, kFailed = 2 };

/// Works on every document of the request, one after the other, and prints what came of it. A document that
/// fails is reported and the rest go on. Throws UsageError before anything is opened, std::system_error when
/// standard output takes no more.
ExitStatus run(const Request& request, files::FileSystem& system);

}  // namespace pluvo::cli
