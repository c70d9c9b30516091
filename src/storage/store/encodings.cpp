#include "store/encodings.h"

#include "files/reading.h"

namespace pluvo::store {

EncodingSample::EncodingSample(const std::string& path, files::FileSystem& system)
    : bytes_(files::readFile(system, path).bytes) {}

std::u16string EncodingSample::in(std::string_view encoding) const {
  return plain::sampleOf(bytes_.view, encoding);
}

}  // namespace pluvo::store
