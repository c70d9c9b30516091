#pragma once

// Vectors of bytes or units for one set of vector instructions: that of the source file that includes this,
// as its compiler flags say. Everything here has internal linkage and calls nothing inline of the standard
// library. So no code made for a newer processor is linked into the rest.

#include <cstddef>
#include <cstdint>

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
inline bool isZero(Vector a) { return _mm256_testz_si256(a, a) != 0; }
inline Vector fill(std::uint8_t unit) { return _mm256_set1_epi8(static_cast<char>(unit)); }
inline Vector fill(char16_t unit) { return _mm256_set1_epi16(static_cast<short>(unit)); }
inline Vector equal(Vector a, Vector b, std::uint8_t) { return _mm256_cmpeq_epi8(a, b); }
inline Vector equal(Vector a, Vector b, char16_t) { return _mm256_cmpeq_epi16(a, b); }
inline Vector greater(Vector a, Vector b) { return _mm256_cmpgt_epi8(a, b); }
inline std::uint64_t bits(Vector a) { return static_cast<std::uint32_t>(_mm256_movemask_epi8(a)); }
/// One byte for every 16-bit unit of two vectors.
inline Vector narrowed(Vector a, Vector b) {
  return _mm256_permute4x64_epi64(_mm256_packs_epi16(a, b), 0xD8);
}

#elif defined(__SSE2__)

using Vector = __m128i;

inline Vector load(const void* place) { return _mm_loadu_si128(static_cast<const __m128i*>(place)); }
inline Vector both(Vector a, Vector b) { return _mm_and_si128(a, b); }
inline Vector either(Vector a, Vector b) { return _mm_or_si128(a, b); }
inline bool isZero(Vector a) { return _mm_movemask_epi8(a) == 0; }
inline Vector fill(std::uint8_t unit) { return _mm_set1_epi8(static_cast<char>(unit)); }
inline Vector fill(char16_t unit) { return _mm_set1_epi16(static_cast<short>(unit)); }
inline Vector equal(Vector a, Vector b, std::uint8_t) { return _mm_cmpeq_epi8(a, b); }
inline Vector equal(Vector a, Vector b, char16_t) { return _mm_cmpeq_epi16(a, b); }
inline Vector greater(Vector a, Vector b) { return _mm_cmpgt_epi8(a, b); }
inline std::uint64_t bits(Vector a) { return static_cast<std::uint32_t>(_mm_movemask_epi8(a)); }
inline Vector narrowed(Vector a, Vector b) { return _mm_packs_epi16(a, b); }

#endif

}  // namespace
}  // namespace pluvo::text
