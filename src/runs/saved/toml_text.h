#pragma once

#include "engine/request.h"

#include <string>

namespace pluvo::runs {

/// The request as it stands in a file, omitting defaults.
std::string tomlOf(const engine::Request& request);

}  // namespace pluvo::runs
