#pragma once

#include "files/file_system.h"
#include "runs/listing.h"

#include <string>
#include <vector>

namespace pluvo::runs {

/// Writes documents into a new file, as a list whose names end with zero bytes, in the folder where PLUVO
/// keeps its state. Returns its path. Throws DocumentError (io).
std::string writeUnfinished(files::FileSystem& system, const std::vector<const NamedDocument*>& documents);

}  // namespace pluvo::runs
