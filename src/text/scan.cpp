#include "scan.h"

#include "scan_kernel.h"

namespace pluvo::text {

Hits nextHitsAnywhere(const std::uint8_t* text, std::size_t from, std::size_t end,
                      const ProbePair<std::uint8_t>& probes) {
  return scan(text, from, end, probes);
}

Hits nextHitsAnywhere(const char16_t* text, std::size_t from, std::size_t end,
                      const ProbePair<char16_t>& probes) {
  return scan(text, from, end, probes);
}

#if !defined(__x86_64__)

Hits nextHitsAvx2(const std::uint8_t* text, std::size_t from, std::size_t end,
                  const ProbePair<std::uint8_t>& probes) {
  return scan(text, from, end, probes);
}
Hits nextHitsAvx2(const char16_t* text, std::size_t from, std::size_t end,
                  const ProbePair<char16_t>& probes) {
  return scan(text, from, end, probes);
}

#endif

Hits nextHits(const std::uint8_t* text, std::size_t from, std::size_t end,
              const ProbePair<std::uint8_t>& probes) {
  return hasAvx2() ? nextHitsAvx2(text, from, end, probes) : nextHitsAnywhere(text, from, end, probes);
}

Hits nextHits(const char16_t* text, std::size_t from, std::size_t end, const ProbePair<char16_t>& probes) {
  return hasAvx2() ? nextHitsAvx2(text, from, end, probes) : nextHitsAnywhere(text, from, end, probes);
}

}  // namespace pluvo::text
