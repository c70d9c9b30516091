// No program for Windows asks for this.
#ifndef _WIN32

#include "base/fresh_memory.h"

#include <malloc.h>
#include <sys/mman.h>

#include <climits>
#include <cstdlib>
#include <memory>
#include <new>

namespace pluvo::base {

namespace {

constexpr std::size_t kLargePage = std::size_t{2} << 20U;
/// Below, a large page would be mostly empty.
constexpr std::size_t kLarge = 2 * kLargePage;

}  // namespace

std::shared_ptr<std::uint8_t[]> freshMemory(std::size_t size) {
  if (size < kLarge || size > SIZE_MAX - kLargePage)
    return std::make_shared_for_overwrite<std::uint8_t[]>(size);
  const std::size_t rounded = (size + kLargePage - 1) / kLargePage * kLargePage;
  void* const memory = std::aligned_alloc(kLargePage, rounded);
  if (memory == nullptr) throw std::bad_alloc();
#ifdef MADV_HUGEPAGE
  madvise(memory, rounded, MADV_HUGEPAGE);  // where it fails, small pages serve
#endif
  return {static_cast<std::uint8_t*>(memory), [](std::uint8_t* block) { std::free(block); }};
}

void prepareHeap() {
#if defined(__GLIBC__) && defined(MADV_HUGEPAGE)
  constexpr std::size_t kHeap = std::size_t{96} << 20U;
  constexpr std::size_t kLargest = std::size_t{32} << 20U;
  mallopt(M_MMAP_THRESHOLD, kLargest);
  mallopt(M_TRIM_THRESHOLD, INT_MAX);
  // Of addresses only; a page is taken when it is first written.
  mallopt(M_TOP_PAD, kHeap);
  void* const first = std::malloc(kLargePage);
  if (first == nullptr) return;
  void* begin = first;
  std::size_t size = kHeap;
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
