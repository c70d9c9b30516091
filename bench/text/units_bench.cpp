#include "text/units.h"
#include "texts.h"

#include <benchmark/benchmark.h>

namespace pluvo::text::bench {
namespace {

constexpr Position kLength = 3'200'000;
constexpr Position kCandidates = 100'000;

bool endsParagraph(Position) { return true; }

std::u16string blanks() {
  std::u16string text(kLength, u' ');
  text.front() = u'.';
  text.back() = kParagraphMark;
  return text;
}

/// A hundred thousand spans that all end at the end of the text.
void countToTheEnd(benchmark::State& state, const std::u16string& units) {
  const PieceText text{OriginalText(units)};
  const auto unit = static_cast<Unit>(state.range(0));
  for ([[maybe_unused]] auto _ : state) {
    const Units of(text, endsParagraph);
    for (Position i = 0; i < kCandidates; ++i) {
      benchmark::DoNotOptimize(of.count(unit, i * (kLength / kCandidates), kLength));
    }
  }
}
void countProse(benchmark::State& state) { countToTheEnd(state, prose(kLength)); }
void countBlanks(benchmark::State& state) { countToTheEnd(state, blanks()); }
void countOneParagraph(benchmark::State& state) {
  std::u16string text = prose(kLength);
  std::replace(text.begin(), text.end() - 1, kParagraphMark, u' ');
  countToTheEnd(state, text);
}

/// The same, with an insertion after each count.
void countBetweenEdits(benchmark::State& state) {
  const std::u16string units = prose(kLength);
  const auto unit = static_cast<Unit>(state.range(0));
  for ([[maybe_unused]] auto _ : state) {
    PieceText text{OriginalText(units)};
    Units of(text, endsParagraph);
    for (Position i = 0; i < kCandidates; ++i) {
      const Position at = i * (kLength / kCandidates + 5);
      benchmark::DoNotOptimize(of.count(unit, at, text.length()));
      text.replace(at, at, u"word ", {});
      of.edited(at, at, 5);
    }
  }
}

void countNearby(benchmark::State& state) {
  const PieceText text{OriginalText(prose(kLength))};
  const auto unit = static_cast<Unit>(state.range(0));
  const Units of(text, endsParagraph);
  Position at = 0;
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(of.count(unit, at, at + 300));
    at = (at + 997) % (kLength - 300);
  }
}

void countOnce(benchmark::State& state) {
  const PieceText text(narrow(prose(10 * kLength)));
  const auto unit = static_cast<Unit>(state.range(0));
  for ([[maybe_unused]] auto _ : state) {
    const Units of(text, endsParagraph);
    benchmark::DoNotOptimize(of.count(unit, 0, text.length()));
  }
  state.SetBytesProcessed(state.iterations() * text.length());
}

/// Moves by as many characters as their positions tell, over 80,000 runs.
void moveOverRuns(benchmark::State& state) {
  RunMap<Visibility> visibility;
  for (Position i = 0; i < 80'000; ++i) visibility.append(40, i % 2 == 0 ? kEverywhere : kInCodes);
  for ([[maybe_unused]] auto _ : state) {
    const VisibleCharacters characters(visibility, View::results);
    for (Position i = 0; i < kCandidates; ++i) {
      benchmark::DoNotOptimize(characters.forward(i * 16, i * 16));
    }
  }
}

BENCHMARK(countProse)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
BENCHMARK(countBlanks)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
BENCHMARK(countOneParagraph)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
BENCHMARK(countBetweenEdits)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
BENCHMARK(countNearby)->DenseRange(0, 2);
BENCHMARK(countOnce)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
BENCHMARK(moveOverRuns)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace pluvo::text::bench
