#pragma once

#include "processor.h"

#include <cstddef>
#include <cstdint>

namespace pluvo::text {

/// A quick test of one unit of a text: it passes when (unit | mask) is value or other. Most pairs of upper
/// and lower case differ in one bit, so that a mask serves both.
template <class Unit>
struct Probe {
  std::size_t offset = 0;  ///< of the unit tested, from the place where a match may start
  Unit mask = 0;
  Unit value = 0;
  Unit other = 0;
};

template <class Unit>
struct ProbePair {
  Probe<Unit> first;
  Probe<Unit> second;
};

/// Places where both probes pass, 64 at a time: bit i of places stands for start + i.
struct Hits {
  std::size_t start = 0;
  std::uint64_t places = 0;
};

inline constexpr std::size_t kHitsWidth = 64;

/// The first hits at or after from among the places [from, end). All probed units must lie in the text. start
/// is end or more where there are none. The places after the hits begin at start + kHitsWidth.
Hits nextHits(const std::uint8_t* text, std::size_t from, std::size_t end,
              const ProbePair<std::uint8_t>& probes);
Hits nextHits(const char16_t* text, std::size_t from, std::size_t end, const ProbePair<char16_t>& probes);

/// The same, for every processor and for those with AVX2; nextHits chooses.
Hits nextHitsAnywhere(const std::uint8_t* text, std::size_t from, std::size_t end,
                      const ProbePair<std::uint8_t>& probes);
Hits nextHitsAnywhere(const char16_t* text, std::size_t from, std::size_t end,
                      const ProbePair<char16_t>& probes);
Hits nextHitsAvx2(const std::uint8_t* text, std::size_t from, std::size_t end,
                  const ProbePair<std::uint8_t>& probes);
Hits nextHitsAvx2(const char16_t* text, std::size_t from, std::size_t end, const ProbePair<char16_t>& probes);

}  // namespace pluvo::text
