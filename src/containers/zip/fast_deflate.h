#pragma once

#include "base/bytes.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace pluvo::zip {

/// Pieces deflated, and the CRC of what they were.
struct Deflated {
  std::vector<base::ByteSpan> bytes;
  std::shared_ptr<const void> owner;
  std::uint32_t crc = 0;
};

/// Deflates pieces in their order; several threads take stretches of large contents. Takes less than half of
/// libdeflate's time at its quickest, and makes about 5 % more bytes. None where the machine lacks ISA-L, or
/// it fails.
std::optional<Deflated> deflateFast(std::span<const base::ByteSpan> pieces);

}  // namespace pluvo::zip
