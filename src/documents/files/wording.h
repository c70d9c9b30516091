#pragma once

#include "files/problem.h"

#include <string>
#include <system_error>

namespace pluvo::files {

/// What a failed call means to the user.
DocumentError readingFailed(const std::system_error& failure);
/// The original is untouched.
DocumentError savingFailed(const std::system_error& failure);

}  // namespace pluvo::files
