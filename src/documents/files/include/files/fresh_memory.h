#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace pluvo::files {

/// Memory to be written once, front to back: not cleared, and taken from the system only as far as it is
/// written. A large block asks for large pages, since first touching small ones costs more than most work on
/// them.
std::shared_ptr<std::uint8_t[]> freshMemory(std::size_t size);

}  // namespace pluvo::files
