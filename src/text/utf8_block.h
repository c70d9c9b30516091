#pragma once

// 64 bytes of UTF-8 at a time, for one set of vector instructions; see vectors.h.

#include "vectors.h"

namespace pluvo::text {
namespace {

constexpr std::size_t kBlock = 64;

/// One bit for each byte of a block that meets a condition.
using Mask = std::uint64_t;

struct Bytes64 {
  static constexpr std::size_t kVectors = kBlock / sizeof(Vector);
  Vector vectors[kVectors];

  explicit Bytes64(const std::uint8_t* bytes) {
    for (std::size_t i = 0; i < kVectors; ++i) vectors[i] = load(bytes + i * sizeof(Vector));
  }
  template <class Test>
  Mask where(Test test) const {
    Mask mask = 0;
    for (std::size_t i = 0; i < kVectors; ++i) mask |= bits(test(vectors[i])) << i * sizeof(Vector);
    return mask;
  }
  Mask high() const {
    return where([](Vector v) { return v; });
  }
  Mask equalTo(std::uint8_t byte) const {
    return where([&](Vector v) { return equal(v, byte); });
  }
  /// Bytes from 80 to FF, and from 00 to byte - 1.
  Mask below(std::uint8_t byte) const { return highBelow(byte); }
  /// Bytes from 80 to byte - 1.
  Mask highBelow(std::uint8_t byte) const {
    return where([&](Vector v) { return greater(byte, v); });
  }
};

}  // namespace
}  // namespace pluvo::text
