#pragma once

#include "base/bytes.h"

#include <cstdint>

namespace pluvo::zip {

/// The record at the end of an archive. Offsets count bytes of the archive.
struct EndRecord {
  std::uint64_t entries = 0;
  std::uint64_t directory = 0;
  std::uint64_t directorySize = 0;
  std::uint64_t begin =
      0;  ///< of the ZIP64 record where there is one, else of the end record; the directory's end
  std::uint64_t record = 0;  ///< the end record; the archive's comment after it ends the file
  bool zip64 = false;
};

/// Throws errors::DocumentError: damaged (cut off, contradictory, over several disks).
EndRecord findEndRecord(base::ByteSpan archive);

}  // namespace pluvo::zip
