#pragma once

#include "files/file_system.h"
#include "outcome.h"

#include <optional>
#include <string>
#include <vector>

namespace pluvo::cli {

/// A document to work on, or why there is none under that name.
struct NamedDocument {
  std::string path;  ///< as typed
  std::optional<Failure> failure;
};

/// The documents behind the paths, in their order, each once however often and under whatever names it is
/// given.
std::vector<NamedDocument> documentsNamed(files::FileSystem& system, const std::vector<std::string>& paths);

}  // namespace pluvo::cli
