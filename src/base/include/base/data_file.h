#pragma once

#include <fstream>
#include <string_view>

namespace pluvo::base {

/// Opens a file of the program's own for writing, as bytes; a folder that is not there yet is made. Where
/// anything fails, so does the stream.
std::ofstream openDataFile(std::u16string_view path, std::ios::openmode mode = std::ios::trunc);

}  // namespace pluvo::base
