#pragma once

#include <cstdint>
#include <span>

namespace pluvo::text {

/// Whether any of the bytes is zero. Many are looked over in parts, at once.
bool holdsZero(std::span<const std::uint8_t> bytes);

}  // namespace pluvo::text
