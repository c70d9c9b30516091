#pragma once

// Blocks of 64 bytes of other encodings than UTF-8, for one set of vector instructions; see vectors.h.

#include "coded_scan.h"
#include "utf8_block.h"

namespace pluvo::text {
namespace {

#if defined(__AVX512VBMI__)

/// A block, and what is known of each byte of it.
struct Block : Bytes64 {
  __m512i facts;

  Block(const std::uint8_t* bytes, const CodingTables& tables) : Bytes64(bytes) {
    const __m512i all = _mm512_loadu_si512(bytes);
    const __m512i lower = _mm512_permutex2var_epi8(part(tables.facts), all, part(tables.facts + 64));
    const __m512i upper = _mm512_permutex2var_epi8(part(tables.facts + 128), all, part(tables.facts + 192));
    facts = _mm512_mask_blend_epi8(_mm512_movepi8_mask(all), lower, upper);
  }
  Mask which(const CodingTables&, Fact fact) const {
    return _mm512_test_epi8_mask(facts, _mm512_set1_epi8(static_cast<char>(fact)));
  }
  Mask doubtful(const std::uint8_t* bytes, const CodingTables& tables, Mask seconds) const {
    const __m512i before = _mm512_loadu_si512(bytes - 1);
    const __m512i doubts = _mm512_permutex2var_epi8(part(tables.doubts), before, part(tables.doubts + 64));
    return _mm512_mask_test_epi8_mask(seconds, facts, doubts);
  }

 private:
  static __m512i part(const std::uint8_t* table) { return _mm512_loadu_si512(table); }
};

#elif defined(__AVX2__)

constexpr std::uint8_t kLowerBits[32] = {1, 2, 4, 8, 16, 32, 64, 128, 0, 0, 0, 0, 0, 0, 0, 0,
                                         1, 2, 4, 8, 16, 32, 64, 128, 0, 0, 0, 0, 0, 0, 0, 0};
constexpr std::uint8_t kUpperBits[32] = {0, 0, 0, 0, 0, 0, 0, 0, 1, 2, 4, 8, 16, 32, 64, 128,
                                         0, 0, 0, 0, 0, 0, 0, 0, 1, 2, 4, 8, 16, 32, 64, 128};

/// A block, and for each byte of it what sets are asked by.
struct Block : Bytes64 {
  Vector low[kVectors], lowerBit[kVectors], upperBit[kVectors];

  Block(const std::uint8_t* bytes, const CodingTables&) : Bytes64(bytes) {
    const Vector lowerBits = load(kLowerBits);
    const Vector upperBits = load(kUpperBits);
    for (std::size_t i = 0; i < kVectors; ++i) {
      low[i] = lowNibbles(vectors[i]);
      const Vector high = highNibbles(vectors[i]);
      lowerBit[i] = lookUp(lowerBits, high);
      upperBit[i] = lookUp(upperBits, high);
    }
  }
  Mask which(const CodingTables& tables, Fact fact) const {
    const ByteSet& set = fact == kLead ? tables.leads : fact == kUnclear ? tables.unclear : tables.nothing;
    const Vector upper = load(set.upper);
    return notZero([&](std::size_t i) { return both(lookUp(upper, low[i]), upperBit[i]); });
  }
  Mask doubtful(const std::uint8_t* bytes, const CodingTables& tables, Mask seconds) const {
    return seconds & notZero([&](std::size_t i) {
             const Vector before = load(bytes + i * sizeof(Vector) - 1);
             Vector lower = lookUp(tables.doubtful.lower, low[i]);
             Vector upper = lookUp(tables.doubtful.upper, low[i]);
             for (const CodingTables::Row& row : tables.rows) {
               const Vector isAfter = equal(before, row.lead);
               lower = either(lower, both(isAfter, lookUp(row.doubtful.lower, low[i])));
               upper = either(upper, both(isAfter, lookUp(row.doubtful.upper, low[i])));
             }
             return either(both(lower, lowerBit[i]), both(upper, upperBit[i]));
           });
  }

 private:
  template <class VectorAt>
  static Mask notZero(VectorAt vectorAt) {
    Mask zero = 0;
    for (std::size_t i = 0; i < kVectors; ++i) zero |= bits(equal(vectorAt(i), 0)) << i * sizeof(Vector);
    return ~zero;
  }
};

#else

struct Block : Bytes64 {
  const std::uint8_t* bytes;

  Block(const std::uint8_t* block, const CodingTables&) : Bytes64(block), bytes(block) {}
  /// Of these facts only bytes from 80 on have any.
  Mask which(const CodingTables& tables, Fact fact) const {
    Mask mask = 0;
    for (Mask rest = high(); rest != 0; rest &= rest - 1)
      if ((tables.facts[bytes[__builtin_ctzll(rest)]] & fact) != 0) mask |= rest & -rest;
    return mask;
  }
  Mask doubtful(const std::uint8_t*, const CodingTables&, Mask seconds) const { return seconds; }
};

#endif

}  // namespace
}  // namespace pluvo::text
