#pragma once

#include "files/file_system.h"

#include <string>

namespace pluvo::cli {

/// Makes the folder and those it lies in, as far as they are missing. Throws DocumentError (io).
void makeFolders(files::FileSystem& system, const std::string& folder);

}  // namespace pluvo::cli
