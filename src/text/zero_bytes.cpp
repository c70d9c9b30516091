#include "text/zero_bytes.h"

#include "base/at_once.h"

#include <algorithm>
#include <atomic>
#include <cstring>

namespace pluvo::text {

bool holdsZero(std::span<const std::uint8_t> bytes) {
  const auto holds = [](std::span<const std::uint8_t> some) {
    return !some.empty() && std::memchr(some.data(), 0, some.size()) != nullptr;
  };
  constexpr std::size_t kFirst = 4096;  // where most files that hold one have one
  if (holds(bytes.first(std::min(bytes.size(), kFirst)))) return true;
  const std::size_t parts = base::partsOf(bytes.size());
  std::atomic<bool> found = false;
  base::atOnce(parts, [&](std::size_t part) {
    const std::size_t from = bytes.size() / parts * part;
    const std::size_t to = part + 1 == parts ? bytes.size() : bytes.size() / parts * (part + 1);
    if (holds(bytes.subspan(from, to - from))) found = true;
  });
  return found;
}

}  // namespace pluvo::text
