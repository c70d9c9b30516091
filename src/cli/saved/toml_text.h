#pragma once

#include "options.h"
#include "request.h"

#include <string>

namespace pluvo::cli {

/// Whether an option gives the text of a request in a file.
bool namesTextFile(const Option& option);

/// Whether an option is kept with a request: what is looked for and what is done, not to which documents.
/// A text is kept itself, whatever file it came from.
bool isPartOfRequest(const Option& option);

/// The request as it stands in a file, with what is not as by default.
std::string tomlOf(const Request& request);

}  // namespace pluvo::cli
