#pragma once

#include "engine/request.h"
#include "options.h"

namespace pluvo::cli {

/// The request that the options mean. Reads the files that hold texts and nothing
/// else. The command is one that works on blocks. Throws UsageError.
engine::Request requestFrom(Command command, const TypedOptions& typed);

}  // namespace pluvo::cli
