#pragma once

// The bits of blocks of 64 bytes, for one set of vector instructions; see vectors.h.

#include "utf8_block.h"

namespace pluvo::text {
namespace {

/// The bytes after the last whole block, filled up with zeros.
struct Rest {
  std::uint8_t bytes[kBlock];
  Mask inside;  ///< the bits of bytes that are there

  Rest(const std::uint8_t* from, std::size_t left) : inside((Mask{1} << left) - 1) {
    for (std::size_t i = 0; i < left; ++i) bytes[i] = from[i];
    for (std::size_t i = left; i < kBlock; ++i) bytes[i] = 0;
  }
};

std::size_t ones(Mask mask) { return static_cast<std::size_t>(__builtin_popcountll(mask)); }

/// Of each byte the places of its bits that are set.
struct BitPlaces {
  std::uint8_t of[256][8] = {};
  constexpr BitPlaces() {
    for (unsigned byte = 0; byte < 256; ++byte) {
      unsigned count = 0;
      for (std::uint8_t place = 0; place < 8; ++place)
        if ((byte >> place & 1) != 0) of[byte][count++] = place;
    }
  }
};
constexpr BitPlaces kBitPlaces;

/// The place of the n-th bit, from 0, of those that are set. Without branches, which nothing could foretell,
/// and with few steps that wait for each other. A call, so that the survey stays in one piece.
__attribute__((noinline)) std::size_t placeOfBit(Mask mask, std::size_t n) {
  if (mask == ~Mask{0}) return n;
  constexpr Mask kOnes = ~Mask{0} / 0xFF;
  Mask sums = mask - (mask >> 1 & kOnes * 0x55);
  sums = (sums & kOnes * 0x33) + (sums >> 2 & kOnes * 0x33);
  sums = ((sums + (sums >> 4)) & kOnes * 0x0F) * kOnes;  // in each byte the bits up to its end
  const Mask passed = ((kOnes * n | kOnes * 0x80) - sums) & kOnes * 0x80;
  const std::size_t at = 8 * ones(passed);
  return at + kBitPlaces.of[mask >> at & 0xFF][n - (sums << 8 >> at & 0xFF)];
}

}  // namespace
}  // namespace pluvo::text
