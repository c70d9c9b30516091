#pragma once

#include "errors/document_error.h"

#include <string>
#include <system_error>

namespace pluvo::files {

/// What a failed call means to the user.
errors::DocumentError readingFailed(const std::system_error& failure);
/// The original is untouched.
errors::DocumentError savingFailed(const std::system_error& failure);

}  // namespace pluvo::files
