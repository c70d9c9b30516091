#pragma once

#include "zip/archive.h"

#include <string_view>

namespace pluvo::zip {

/// Orders names as packages compare them: ASCII letters of either case alike, a backslash like a slash, one
/// slash in front not counted. Below, at or above 0.
int compareNames(std::string_view a, std::string_view b);

/// Reads the directory and every local header, and checks them as the archive promises.
Archive openArchive(base::Bytes bytes, const Limits& limits);

}  // namespace pluvo::zip
