#pragma once

// Vectors of bytes or units for one set of vector instructions: that of the source file that includes this,
// as its compiler flags say. Everything here has internal linkage and calls nothing inline of the standard
// library. So no code made for a newer processor is linked into the rest.

#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace pluvo::text {
namespace {

#if defined(__AVX2__)

using Vector = __m256i;

inline Vector load(const void* place) { return _mm256_loadu_si256(static_cast<const __m256i*>(place)); }
inline Vector both(Vector a, Vector b) { return _mm256_and_si256(a, b); }
inline Vector either(Vector a, Vector b) { return _mm256_or_si256(a, b); }
inline Vector unlike(Vector a, Vector b) { return _mm256_xor_si256(a, b); }
inline Vector plus(Vector a, Vector b) { return _mm256_add_epi8(a, b); }
inline Vector minus(Vector a, Vector b) { return _mm256_sub_epi8(a, b); }
inline Vector beyond(Vector a, Vector b) { return _mm256_subs_epu8(a, b); }
inline Vector smaller(Vector a, Vector b) { return _mm256_min_epu8(a, b); }
inline Vector lowNibbles(Vector a) { return both(a, _mm256_set1_epi8(15)); }
inline Vector highNibbles(Vector a) { return lowNibbles(_mm256_srli_epi16(a, 4)); }
/// For each nibble the byte of a table, which holds the same 16 bytes twice.
inline Vector lookUp(Vector table, Vector nibbles) { return _mm256_shuffle_epi8(table, nibbles); }
inline Vector lookUp(const std::uint8_t* table, Vector nibbles) { return lookUp(load(table), nibbles); }
inline bool isZero(Vector a) { return _mm256_testz_si256(a, a) != 0; }
inline Vector fill(std::uint8_t unit) { return _mm256_set1_epi8(static_cast<char>(unit)); }
inline Vector fill(char16_t unit) { return _mm256_set1_epi16(static_cast<short>(unit)); }
inline Vector equal(Vector a, Vector b, std::uint8_t) { return _mm256_cmpeq_epi8(a, b); }
inline Vector equal(Vector a, Vector b, char16_t) { return _mm256_cmpeq_epi16(a, b); }
inline Vector greater(Vector a, Vector b) { return _mm256_cmpgt_epi8(a, b); }
inline std::uint64_t bits(Vector a) { return static_cast<std::uint32_t>(_mm256_movemask_epi8(a)); }
inline std::uint64_t sum(Vector a) {
  const __m256i sums = _mm256_sad_epu8(a, _mm256_setzero_si256());
  const __m128i both = _mm_add_epi64(_mm256_castsi256_si128(sums), _mm256_extracti128_si256(sums, 1));
  return static_cast<std::uint64_t>(_mm_cvtsi128_si64(both) + _mm_extract_epi64(both, 1));
}
/// One byte for every 16-bit unit of two vectors.
inline Vector narrowed(Vector a, Vector b) {
  return _mm256_permute4x64_epi64(_mm256_packs_epi16(a, b), 0xD8);
}

#elif defined(__SSE2__)

using Vector = __m128i;

inline Vector load(const void* place) { return _mm_loadu_si128(static_cast<const __m128i*>(place)); }
inline Vector both(Vector a, Vector b) { return _mm_and_si128(a, b); }
inline Vector either(Vector a, Vector b) { return _mm_or_si128(a, b); }
inline Vector unlike(Vector a, Vector b) { return _mm_xor_si128(a, b); }
inline Vector plus(Vector a, Vector b) { return _mm_add_epi8(a, b); }
inline Vector minus(Vector a, Vector b) { return _mm_sub_epi8(a, b); }
inline Vector beyond(Vector a, Vector b) { return _mm_subs_epu8(a, b); }
inline Vector smaller(Vector a, Vector b) { return _mm_min_epu8(a, b); }
inline bool isZero(Vector a) { return _mm_movemask_epi8(_mm_cmpeq_epi8(a, _mm_setzero_si128())) == 0xFFFF; }
inline Vector fill(std::uint8_t unit) { return _mm_set1_epi8(static_cast<char>(unit)); }
inline Vector fill(char16_t unit) { return _mm_set1_epi16(static_cast<short>(unit)); }
inline Vector equal(Vector a, Vector b, std::uint8_t) { return _mm_cmpeq_epi8(a, b); }
inline Vector equal(Vector a, Vector b, char16_t) { return _mm_cmpeq_epi16(a, b); }
inline Vector greater(Vector a, Vector b) { return _mm_cmpgt_epi8(a, b); }
inline std::uint64_t bits(Vector a) { return static_cast<std::uint32_t>(_mm_movemask_epi8(a)); }
inline std::uint64_t sum(Vector a) {
  const __m128i sums = _mm_sad_epu8(a, _mm_setzero_si128());
  return static_cast<std::uint64_t>(_mm_cvtsi128_si64(sums) +
                                    _mm_cvtsi128_si64(_mm_unpackhi_epi64(sums, sums)));
}
inline Vector narrowed(Vector a, Vector b) { return _mm_packs_epi16(a, b); }

#else

// How such vectors are handed to other files does not matter: no function here is seen there.
#pragma GCC diagnostic ignored "-Wpsabi"

/// Of bytes only, as the compiler has them.
using Vector = std::uint8_t __attribute__((vector_size(16)));
using SignedVector = std::int8_t __attribute__((vector_size(16)));

inline Vector load(const void* place) {
  Vector bytes;
  std::memcpy(&bytes, place, sizeof bytes);
  return bytes;
}
inline Vector both(Vector a, Vector b) { return a & b; }
inline Vector either(Vector a, Vector b) { return a | b; }
inline Vector unlike(Vector a, Vector b) { return a ^ b; }
inline Vector plus(Vector a, Vector b) { return a + b; }
inline Vector minus(Vector a, Vector b) { return a - b; }
inline Vector beyond(Vector a, Vector b) { return (a - b) & reinterpret_cast<Vector>(a > b); }
inline Vector smaller(Vector a, Vector b) { return a - beyond(a, b); }
inline Vector fill(std::uint8_t unit) { return Vector{} + unit; }
inline Vector equal(Vector a, Vector b, std::uint8_t) { return reinterpret_cast<Vector>(a == b); }
inline Vector greater(Vector a, Vector b) {
  return reinterpret_cast<Vector>(reinterpret_cast<SignedVector>(a) > reinterpret_cast<SignedVector>(b));
}
inline bool isZero(Vector a) {
  std::uint64_t halves[2];
  std::memcpy(halves, &a, sizeof a);
  return (halves[0] | halves[1]) == 0;
}
inline std::uint64_t bits(Vector a) {
  std::uint64_t set = 0;
  for (std::size_t i = 0; i < sizeof a; ++i) set |= static_cast<std::uint64_t>(a[i] >> 7) << i;
  return set;
}
inline std::uint64_t sum(Vector a) {
  std::uint64_t all = 0;
  for (std::size_t i = 0; i < sizeof a; ++i) all += a[i];
  return all;
}

#endif

inline Vector equal(Vector a, std::uint8_t byte) { return equal(a, fill(byte), byte); }
/// As signed numbers: bytes from 80 on are below zero.
inline Vector greater(Vector a, std::uint8_t byte) { return greater(a, fill(byte)); }
inline Vector greater(std::uint8_t byte, Vector a) { return greater(fill(byte), a); }
/// By how much bytes are larger; zero where they are not.
inline Vector beyond(Vector a, std::uint8_t byte) { return beyond(a, fill(byte)); }

}  // namespace
}  // namespace pluvo::text
