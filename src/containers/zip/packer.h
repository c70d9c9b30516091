#pragma once

#include "base/bytes.h"
#include "zip/archive.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace pluvo::zip {

/// New contents as they go into an archive.
struct Packed {
  std::uint64_t size = 0;  ///< before packing
  std::uint32_t crc = 0;
  std::uint64_t packedSize = 0;
  std::vector<base::ByteSpan> bytes;  ///< packedSize together, one after the other
  std::shared_ptr<const void> owner;
};

/// Stored contents are the pieces themselves; deflated ones are new bytes.
Packed pack(std::span<const base::ByteSpan> pieces, Method method, int level);

}  // namespace pluvo::zip
