#include "errors/data_file.h"

#include "errors/machine_path.h"

namespace pluvo::errors {

std::ofstream openDataFile(std::u16string_view path, std::ios::openmode mode) {
  const std::filesystem::path file = machinePath(path);
  std::error_code ignored;  // without its folder the file does not open
  std::filesystem::create_directories(file.parent_path(), ignored);
  return std::ofstream(file, mode | std::ios::out | std::ios::binary);
}

}  // namespace pluvo::errors
