#pragma once

#include "errors/document_error.h"

#include <string>
#include <system_error>

namespace pluvo::files {

/// The message on a failed call.
errors::DocumentError readingFailed(const std::system_error& failure);
/// The original is untouched.
errors::DocumentError savingFailed(const std::system_error& failure);

}  // namespace pluvo::files
