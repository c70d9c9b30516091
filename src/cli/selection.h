#pragma once

#include "options.h"
#include "runs/selection.h"

#include <string>
#include <vector>

namespace pluvo::cli {

/// Throws UsageError.
runs::Selection selectionFrom(const TypedOptions& typed, std::vector<std::string> paths);

}  // namespace pluvo::cli
