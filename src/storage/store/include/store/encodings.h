#pragma once

#include "files/file_system.h"
#include "plain/encodings.h"

#include <string>
#include <string_view>
#include <vector>

namespace pluvo::store {

using plain::encodingNamed;
using plain::LikelyEncoding;
using plain::likelyEncodings;

/// The facts about a text file by which a user chooses its encoding.
class EncodingSample {
 public:
  /// Reads the file. Throws errors::DocumentError.
  explicit EncodingSample(const std::string& path, files::FileSystem& system = files::machineFileSystem());
  /// How it reads in an encoding; a byte that means nothing there is U+FFFD. Throws errors::DocumentError.
  std::u16string in(std::string_view encoding) const;

 private:
  base::Bytes bytes_;
};

}  // namespace pluvo::store
