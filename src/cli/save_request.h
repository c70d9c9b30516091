#pragma once

#include "files/file_system.h"
#include "parse.h"

namespace pluvo::cli {

/// pluvo save FILE COMMAND ...: adds the request to the file. Throws UsageError.
void saveRequest(const TypedCommandLine& line, files::FileSystem& system);

}  // namespace pluvo::cli
