#pragma once

#include "base/bytes.h"

#include <cstddef>

namespace pluvo::files {

/// Maps the front of an open file for reading, with base::Bytes::kBehind after it.
///
/// Touching a page that is no longer in the file (it was cut short, or the disk failed) raises a bus error.
/// That would end the program. For these mappings, and only for them, the page then reads as zeros and the
/// bytes say that they vanished. Throws std::system_error.
base::Bytes mapFile(int descriptor, std::size_t size);

}  // namespace pluvo::files
