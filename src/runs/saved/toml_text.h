#pragma once

#include "engine/request.h"

#include <string>

namespace pluvo::runs {

/// The request as it stands in a file, with what is not as by default.
std::string tomlOf(const engine::Request& request);

}  // namespace pluvo::runs
