#include "text/pieces.h"
#include "text/run_map.h"
#include "texts.h"

#include <benchmark/benchmark.h>

namespace pluvo::text::bench {
namespace {

constexpr Position kLength = 3'200'000;

void replaceForward(benchmark::State& state) {
  const std::u16string units = prose(kLength);
  for ([[maybe_unused]] auto _ : state) {
    PieceText text{OriginalText(units)};
    for (Position at = 0; at + 64 < text.length(); at += 64) {
      text.replace(at, at + 5, u"replaced", text.anchorAt(at, false));
    }
    benchmark::DoNotOptimize(text.length());
    state.SetItemsProcessed(state.items_processed() + kLength / 64);
  }
}

void highlightForward(benchmark::State& state) {
  for ([[maybe_unused]] auto _ : state) {
    RunMap<std::uint8_t> map(kLength, 0);
    for (Position at = 0; at + 32 < kLength; at += 32) map.set(at, at + 5, 7);
    benchmark::DoNotOptimize(map.runCount());
  }
}

void lookUp(benchmark::State& state) {
  RunMap<std::uint8_t> map;
  for (Position i = 0; i < 80'000; ++i) map.append(40, static_cast<std::uint8_t>(i % 3));
  Position at = 0;
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(map.valueAt(at));
    at = (at + 99'991) % map.length();
  }
}

BENCHMARK(replaceForward)->Unit(benchmark::kMillisecond);
BENCHMARK(highlightForward)->Unit(benchmark::kMillisecond);
BENCHMARK(lookUp);

}  // namespace
}  // namespace pluvo::text::bench
