#pragma once

#include "files/file_system.h"
#include "listing/listing.h"

#include <cstddef>
#include <string>
#include <vector>

namespace pluvo::cli {

/// Writes the documents from a place in the list on into a new file, as --files-from with --null takes them,
/// in the folder where PLUVO keeps its state. Returns its path. Throws DocumentError (io).
std::string writeUnfinished(files::FileSystem& system, const std::vector<NamedDocument>& documents,
                            std::size_t from);

}  // namespace pluvo::cli
