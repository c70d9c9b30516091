#pragma once

#include "archive/archive.h"
#include "files/bytes.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace pluvo::archive {

/// New contents as they go into an archive.
struct Packed {
  std::uint64_t size = 0;  ///< before packing
  std::uint32_t crc = 0;
  std::uint64_t packedSize = 0;
  std::vector<files::ByteSpan> bytes;  ///< packedSize together, one after the other
  std::shared_ptr<std::uint8_t[]> owner;
};

/// Stored contents are the pieces themselves; deflated ones are new bytes.
Packed pack(std::span<const files::ByteSpan> pieces, Method method, int level);

}  // namespace pluvo::archive
