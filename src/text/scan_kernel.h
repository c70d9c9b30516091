#pragma once

// The scan for one set of vector instructions: that of the source file that includes this, as its compiler
// flags say. Everything here has internal linkage and calls nothing inline of the standard library. So no
// code made for a newer processor is linked into the rest.

#include "scan.h"
#include "vectors.h"

namespace pluvo::text {
namespace {

template <class Unit>
bool passes(const Probe<Unit>& probe, const Unit* place) {
  const auto masked = static_cast<Unit>(place[probe.offset] | probe.mask);
  return masked == probe.value || masked == probe.other;
}

template <class Unit>
std::uint64_t plainHits(const Unit* text, std::size_t count, const ProbePair<Unit>& probes) {
  std::uint64_t places = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const bool hit = passes(probes.first, text + i) && passes(probes.second, text + i);
    places |= static_cast<std::uint64_t>(hit) << i;
  }
  return places;
}

#if defined(__SSE2__)

/// How much of a probe is needed.
enum class Test { unit, masked, either };

template <Test test, class Unit>
struct VectorProbe {
  Vector mask;
  Vector value;
  Vector other;

  explicit VectorProbe(const Probe<Unit>& probe)
      : mask(fill(probe.mask)), value(fill(probe.value)), other(fill(probe.other)) {}

  Vector passes(const Unit* place) const {
    Vector units = load(place);
    if constexpr (test != Test::unit) units = either(units, mask);
    const Vector same = equal(units, value, Unit{});
    if constexpr (test == Test::either) return either(same, equal(units, other, Unit{}));
    return same;
  }
};

constexpr std::size_t kVectorBytes = sizeof(Vector);

std::uint64_t collect(const Vector* found, std::uint8_t) {
  std::uint64_t places = 0;
  for (std::size_t i = 0; i < kHitsWidth / kVectorBytes; ++i) places |= bits(found[i]) << i * kVectorBytes;
  return places;
}
std::uint64_t collect(const Vector* found, char16_t) {
  std::uint64_t places = 0;
  for (std::size_t i = 0; i < kHitsWidth / kVectorBytes; ++i) {
    places |= bits(narrowed(found[2 * i], found[2 * i + 1])) << i * kVectorBytes;
  }
  return places;
}

template <Test test, class Unit>
Hits vectorHits(const Unit* text, std::size_t from, std::size_t end, const ProbePair<Unit>& probes) {
  constexpr std::size_t kUnits = kVectorBytes / sizeof(Unit);
  constexpr std::size_t kVectors = kHitsWidth / kUnits;
  const VectorProbe<test, Unit> first(probes.first);
  const VectorProbe<test, Unit> second(probes.second);
  const Unit* firstText = text + probes.first.offset;
  const Unit* secondText = text + probes.second.offset;
  for (; from + kHitsWidth <= end; from += kHitsWidth) {
    Vector found[kVectors];
    Vector any = fill(std::uint8_t{0});
    for (std::size_t i = 0; i < kVectors; ++i) {
      const std::size_t place = from + i * kUnits;
      found[i] = both(first.passes(firstText + place), second.passes(secondText + place));
      any = either(any, found[i]);
    }
    if (!isZero(any)) return {from, collect(found, Unit{})};
  }
  return {from, 0};
}

#endif

template <class Unit>
Hits scan(const Unit* text, std::size_t from, std::size_t end, const ProbePair<Unit>& probes) {
#if defined(__SSE2__)
  const bool masked = probes.first.mask != 0 || probes.second.mask != 0;
  const bool two = probes.first.value != probes.first.other || probes.second.value != probes.second.other;
  Hits hits = two      ? vectorHits<Test::either>(text, from, end, probes)
              : masked ? vectorHits<Test::masked>(text, from, end, probes)
                       : vectorHits<Test::unit>(text, from, end, probes);
#else
  Hits hits{from, 0};
#endif
  while (hits.places == 0 && hits.start < end) {
    const std::size_t left = end - hits.start;
    hits.places = plainHits(text + hits.start, left < kHitsWidth ? left : kHitsWidth, probes);
    if (hits.places == 0) hits.start += kHitsWidth;
  }
  return hits;
}

}  // namespace
}  // namespace pluvo::text
