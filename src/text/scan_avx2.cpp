// Compiled with -mavx2; see CMakeLists.txt.

#include "scan.h"

#if defined(__AVX2__)

#include "scan_kernel.h"

namespace pluvo::text {

Hits nextHitsAvx2(const std::uint8_t* text, std::size_t from, std::size_t end,
                  const ProbePair<std::uint8_t>& probes) {
  return scan(text, from, end, probes);
}

Hits nextHitsAvx2(const char16_t* text, std::size_t from, std::size_t end,
                  const ProbePair<char16_t>& probes) {
  return scan(text, from, end, probes);
}

}  // namespace pluvo::text

#endif
