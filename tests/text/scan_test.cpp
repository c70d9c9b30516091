#include "scan.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace pluvo::text {
namespace {

template <class Unit>
bool passes(const Probe<Unit>& probe, const std::vector<Unit>& text, std::size_t place) {
  const auto masked = static_cast<Unit>(text[place + probe.offset] | probe.mask);
  return masked == probe.value || masked == probe.other;
}

template <class Unit>
using Scan = Hits (*)(const Unit*, std::size_t, std::size_t, const ProbePair<Unit>&);

template <class Unit>
std::vector<bool> everyHit(Scan<Unit> scan, const std::vector<Unit>& text, std::size_t end,
                           const ProbePair<Unit>& probes) {
  std::vector<bool> hits(end, false);
  for (std::size_t from = 0; from < end; from += kHitsWidth) {
    const Hits found = scan(text.data(), from, end, probes);
    for (std::size_t i = 0; i < kHitsWidth; ++i) {
      if ((found.places >> i & 1) != 0) hits.at(found.start + i) = true;
    }
    from = found.start;
  }
  return hits;
}

template <class Unit>
void compareWithEveryPlace(std::vector<Scan<Unit>> scans, Unit large) {
  std::mt19937 random(5);
  const auto some = [&] { return static_cast<Unit>(random() % 3 + (random() % 2) * large); };
  for (int round = 0; round < 2000; ++round) {
    std::vector<Unit> text(1 + random() % 400);
    for (Unit& unit : text) unit = random() % 8 == 0 ? some() : Unit{9};
    const auto probe = [&](std::size_t offset) {
      Probe<Unit> made{offset, static_cast<Unit>(random() % 2), some(), some()};
      if (random() % 2 == 0) made.other = made.value;
      return made;
    };
    const std::size_t reach = random() % std::min<std::size_t>(text.size(), 20);
    const ProbePair<Unit> probes{probe(0), probe(reach)};
    const std::size_t end = text.size() - reach;
    std::vector<bool> expected(end);
    for (std::size_t i = 0; i < end; ++i) {
      expected[i] = passes(probes.first, text, i) && passes(probes.second, text, i);
    }
    for (const auto scan : scans) ASSERT_EQ(everyHit(scan, text, end, probes), expected) << round;
  }
}

TEST(Scan, EveryKindOfProcessorFindsTheSamePlaces) {
  std::vector<Scan<std::uint8_t>> narrow{nextHitsAnywhere};
  std::vector<Scan<char16_t>> wide{nextHitsAnywhere};
  if (hasAvx2()) {
    narrow.push_back(nextHitsAvx2);
    wide.push_back(nextHitsAvx2);
  }
  compareWithEveryPlace<std::uint8_t>(narrow, 0xF0);
  compareWithEveryPlace<char16_t>(wide, 0xFF00);
}

}  // namespace
}  // namespace pluvo::text
