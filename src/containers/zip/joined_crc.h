#pragma once

#include <cstdint>

namespace pluvo::zip {

/// The CRC-32 of bytes that are followed by others, from the CRC-32 of each.
std::uint32_t crcOfBoth(std::uint32_t first, std::uint32_t second, std::uint64_t sizeOfSecond);

}  // namespace pluvo::zip
