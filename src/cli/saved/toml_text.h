#pragma once

#include "options.h"
#include "request.h"

#include <string>

namespace pluvo::cli {

/// Whether an option is kept with a request: what is looked for and what is done, not to which documents.
bool isPartOfRequest(const Option& option);

/// The request as it stands in a file, with what is not as by default.
std::string tomlOf(const Request& request);

}  // namespace pluvo::cli
