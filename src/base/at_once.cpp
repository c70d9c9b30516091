#include "base/at_once.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <thread>
#include <vector>

namespace pluvo::base {

namespace {

std::atomic<unsigned> workers = 0;

}  // namespace

Worker::Worker() { ++workers; }
Worker::~Worker() { --workers; }

std::size_t partsOf(std::size_t bytes, std::size_t large) {
  constexpr std::size_t kMost = 4;  // more would wait for memory
  if (bytes < 2 * large) return 1;
  const std::size_t free = std::thread::hardware_concurrency() / std::max(workers.load(), 1U);
  return std::clamp<std::size_t>(free, 1, std::min(bytes / large, kMost));
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
