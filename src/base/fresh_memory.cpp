// No program for Windows asks for this.
#ifndef _WIN32

#include "base/fresh_memory.h"

#include <malloc.h>
#include <sys/mman.h>

#include <climits>
#include <cstdlib>
#include <memory>

namespace pluvo::base {

namespace {

constexpr std::size_t kLargePage = std::size_t{2} << 20U;
/// Below, a large page would be mostly empty.
constexpr std::size_t kLarge = 2 * kLargePage;

}  // namespace

std::shared_ptr<std::uint8_t[]> freshMemory(std::size_t size) {
  auto memory = std::make_shared_for_overwrite<std::uint8_t[]>(size);
#ifdef MADV_HUGEPAGE
  // Not in whole large pages: those at its ends hold other memory, too.
  void* begin = memory.get();
  if (size >= kLarge && std::align(kLargePage, kLargePage, begin, size) != nullptr)
    madvise(begin, size / kLargePage * kLargePage, MADV_HUGEPAGE);  // where it fails, small pages serve
#endif
  return memory;
}

void prepareHeap() {
#if defined(__GLIBC__) && defined(MADV_HUGEPAGE)
  constexpr std::size_t kHeap = std::size_t{96} << 20U;
  constexpr std::size_t kLargest = std::size_t{32} << 20U;
  mallopt(M_MMAP_THRESHOLD, kLargest);
  mallopt(M_TRIM_THRESHOLD, INT_MAX);
  // Of addresses only; a page is taken when it is first written.
  mallopt(M_TOP_PAD, kHeap);
  // This piece is larger than the heap, which therefore grows. Malloc writes behind the piece, and a page
  // written before the advice below stays small.
  constexpr std::size_t kMore = std::size_t{256} << 10U;
  void* const first = std::malloc(kMore);
  if (first == nullptr) return;
  // A run on small documents takes less, and clears no large page. Beyond the end small pages serve: on some
  // virtual machines a new large page takes milliseconds, probably because the host took it back before.
  constexpr std::size_t kSmall = std::size_t{1} << 20U;
  constexpr std::size_t kEnd = std::size_t{64} << 20U;
  void* begin = static_cast<std::uint8_t*>(first) + kSmall;
  std::size_t size = kEnd - kSmall;
  if (std::align(kLargePage, kLargePage, begin, size) != nullptr)
    madvise(begin, size / kLargePage * kLargePage, MADV_HUGEPAGE);
  std::free(first);
#endif
}

void shareHeap() {
#ifdef __GLIBC__
  mallopt(M_ARENA_MAX, 1);
#endif
}

}  // namespace pluvo::base

#endif
