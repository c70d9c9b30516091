#pragma once

#include <cstddef>
#include <functional>

namespace pluvo::base {

/// How many parts a look over so many bytes is divided into: large ones, and no more than there are
/// processors.
std::size_t partsOf(std::size_t bytes);

/// Calls work(i) for all i below count, at once where the machine has threads. Throws what the
/// first of those that threw did, when all have ended.
void atOnce(std::size_t count, const std::function<void(std::size_t)>& work);

}  // namespace pluvo::base
