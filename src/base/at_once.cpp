#include "base/at_once.h"

#include <algorithm>
#include <exception>
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
  std::vector<std::exception_ptr> thrown(count);
  const auto guarded = [&](std::size_t i) {
    try {
      work(i);
    } catch (...) {
      thrown[i] = std::current_exception();
    }
  };
  {
    std::vector<std::jthread> threads;
    threads.reserve(count);
    std::size_t begun = 1;
    try {
      for (; begun < count; ++begun) threads.emplace_back(guarded, begun);
    } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): the rest is done here
    }
    guarded(0);
    for (; begun < count; ++begun) guarded(begun);
  }
  for (const std::exception_ptr& each : thrown)
    if (each) std::rethrow_exception(each);
}

}  // namespace pluvo::base
