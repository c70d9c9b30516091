#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace pluvo::base {

/// Memory to be written once, front to back: not cleared, and taken from the system only as far as it is
/// written. A large block asks for large pages, since first touching small ones costs more than most work on
/// them.
std::shared_ptr<std::uint8_t[]> freshMemory(std::size_t size);

/// For a program at its start. Memory that one document gives back serves the next one without a call to the
/// system. A larger heap grows in large pages at first. Only a hint.
void prepareHeap();

/// For a program in which one thread does nearly all the work, before it begins another. The others take
/// their memory from the same heap. Making one for each takes longer than they live. Only a hint.
void shareHeap();

}  // namespace pluvo::base
