#pragma once

#include "word_file.h"

#include <string>

namespace pluvo::doc {

/// The first part of an original that is not in the edited document as it must; empty if none is. Throws
/// DocumentError: damaged where a second information block cannot be read.
std::string firstMoved(const Text& original, const Text& edited);

}  // namespace pluvo::doc
