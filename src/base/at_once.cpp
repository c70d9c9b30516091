#include "base/at_once.h"

#include <algorithm>
#include <exception>
#include <functional>
#include <thread>
#include <vector>

namespace pluvo::base {

std::size_t partsOf(std::size_t bytes) {
  constexpr std::size_t kLarge = std::size_t{8} << 20U;
  constexpr std::size_t kMost = 4;  // more would wait for memory
  if (bytes < 2 * kLarge) return 1;
  return std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, std::min(bytes / kLarge, kMost));
}

void atOnce(std::size_t count, const std::function<void(std::size_t)>& work) {
  std::vector<std::jthread> threads;
  threads.reserve(count);
  std::size_t begun = 1;
  try {
    for (; begun < count; ++begun) threads.emplace_back(std::cref(work), begun);
  } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): the rest is done here
  }
  work(0);
  for (; begun < count; ++begun) work(begun);
}

}  // namespace pluvo::base
