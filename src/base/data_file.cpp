#include "base/data_file.h"

#include "base/names.h"

namespace pluvo::base {

std::ofstream openDataFile(std::u16string_view path, std::ios::openmode mode) {
  const std::filesystem::path file = machinePath(path);
  std::error_code ignored;  // without its folder the file does not open
  std::filesystem::create_directories(file.parent_path(), ignored);
  return std::ofstream(file, mode | std::ios::out | std::ios::binary);
}

}  // namespace pluvo::base
