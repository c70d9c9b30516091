#pragma once

#include "word_file.h"

#include <string>

namespace pluvo::doc {

/// What of an original does not stand in the edited document as it must; empty where all does. Throws
/// DocumentError: damaged where a second information block cannot be read.
std::string firstMoved(const Text& original, const Text& edited);

}  // namespace pluvo::doc
