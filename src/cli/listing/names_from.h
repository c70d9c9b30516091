#pragma once

#include "listing/selection.h"

#include <string>
#include <vector>

namespace pluvo::cli {

/// The paths in the file that --files-from names. Empty ones are passed over. Throws UsageError.
std::vector<std::string> namesFrom(const Selection& selection);

}  // namespace pluvo::cli
