#pragma once

#include <cstddef>
#include <functional>

namespace pluvo::base {

/// A thread that works on documents of its own, as long as this lives. Their parts are divided among the
/// processors that are left.
class Worker {
 public:
  Worker();
  ~Worker();
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;
};

/// How many parts work on so many bytes is divided into: large ones, and no more than there are processors
/// for each worker. A mere look over bytes is worth dividing from 16 MB on.
std::size_t partsOf(std::size_t bytes, std::size_t large = std::size_t{8} << 20U);

/// Calls work(i) for all i below count, at once where the machine has threads. Throws what the
/// first of those that threw did, when all have ended.
void atOnce(std::size_t count, const std::function<void(std::size_t)>& work);

}  // namespace pluvo::base
