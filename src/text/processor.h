#pragma once

#if defined(__x86_64__) && __has_include(<sys/platform/x86.h>) && !defined(__clang__)
#include <sys/platform/x86.h>
// The C library asked the processor when the program was loaded. Asking takes long on a virtual machine.
// Its header is not for clang.
#define PLUVO_PROCESSOR_HAS(FEATURE, name) CPU_FEATURE_ACTIVE(FEATURE)
#elif defined(__x86_64__)
#define PLUVO_PROCESSOR_HAS(FEATURE, name) (__builtin_cpu_supports(name) != 0)
#else
#define PLUVO_PROCESSOR_HAS(FEATURE, name) false
#endif

namespace pluvo::text {

inline bool hasAvx2() {
  static const bool has = PLUVO_PROCESSOR_HAS(AVX2, "avx2") && PLUVO_PROCESSOR_HAS(POPCNT, "popcnt");
  return has;
}
inline bool hasAvx512() {
  static const bool has = hasAvx2() && PLUVO_PROCESSOR_HAS(AVX512F, "avx512f") &&
                          PLUVO_PROCESSOR_HAS(AVX512BW, "avx512bw") &&
                          PLUVO_PROCESSOR_HAS(AVX512VL, "avx512vl");
  return has;
}
/// Bytes are looked up in tables of 128.
inline bool hasAvx512Tables() {
  static const bool has = hasAvx512() && PLUVO_PROCESSOR_HAS(AVX512_VBMI, "avx512vbmi");
  return has;
}
/// Chosen units are moved to the front of a vector.
inline bool hasAvx512Compress() {
  static const bool has = hasAvx512() && PLUVO_PROCESSOR_HAS(AVX512_VBMI2, "avx512vbmi2");
  return has;
}

}  // namespace pluvo::text

#undef PLUVO_PROCESSOR_HAS
