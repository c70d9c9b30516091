#pragma once

// 64 bytes of UTF-8 at a time, for one set of vector instructions; see vectors.h.

#include "vectors.h"

namespace pluvo::text {
namespace {

constexpr std::size_t kBlock = 64;

/// One bit for each byte of a block that meets a condition.
using Mask = std::uint64_t;

struct Bytes64 {
#if defined(__SSE2__)
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
    const Vector wanted = fill(byte);
    return where([&](Vector v) { return equal(v, wanted, std::uint8_t{}); });
  }
  /// Bytes from 80 to FF, and from 00 to byte - 1.
  Mask below(std::uint8_t byte) const { return highBelow(byte); }
  /// Bytes from 80 to byte - 1.
  Mask highBelow(std::uint8_t byte) const {
    const Vector bound = fill(byte);
    return where(
        [&](Vector v) { return greater(bound, v); });  // as signed numbers, high bytes are below zero
  }
#else
  const std::uint8_t* bytes;

  explicit Bytes64(const std::uint8_t* at) : bytes(at) {}
  template <class Test>
  Mask where(Test test) const {
    Mask mask = 0;
    for (std::size_t i = 0; i < kBlock; ++i) mask |= static_cast<Mask>(test(bytes[i])) << i;
    return mask;
  }
  Mask high() const {
    return where([](std::uint8_t b) { return b >= 0x80; });
  }
  Mask equalTo(std::uint8_t byte) const {
    return where([=](std::uint8_t b) { return b == byte; });
  }
  Mask below(std::uint8_t byte) const {
    return where([=](std::uint8_t b) { return b >= 0x80 || b < byte; });
  }
  Mask highBelow(std::uint8_t byte) const {
    return where([=](std::uint8_t b) { return b >= 0x80 && b < byte; });
  }
#endif
};

}  // namespace
}  // namespace pluvo::text
