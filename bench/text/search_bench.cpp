#include "text/search.h"
#include "texts.h"

#include <benchmark/benchmark.h>

#include <cstring>

namespace pluvo::text::bench {
namespace {

constexpr Position kLength = 32 << 20;
constexpr std::u16string_view kAbsent = u"shall deliver pursuant to any Notice";

const PieceText& narrowText() {
  static const PieceText text(narrow(prose(kLength)));
  return text;
}
const PieceText& wideText() {
  static const PieceText text{OriginalText(prose(kLength))};
  return text;
}

void search(benchmark::State& state, const PieceText& text, std::u16string_view needle, SearchFlags flags) {
  const RunMap<Visibility> visibility(text.length(), kEverywhere);
  for ([[maybe_unused]] auto _ : state) {
    const Search search(needle, flags);
    benchmark::DoNotOptimize(search.find(text, visibility, View::results, 0, text.length()));
  }
  const auto bytes =
      static_cast<std::int64_t>(text.length()) * (text.original().stretch(0, 1).wide != nullptr ? 2 : 1);
  state.SetBytesProcessed(state.iterations() * bytes);
}

void narrowExact(benchmark::State& state) { search(state, narrowText(), kAbsent, {true, false}); }
void narrowFolded(benchmark::State& state) { search(state, narrowText(), kAbsent, {false, false}); }
void narrowCommonUnits(benchmark::State& state) { search(state, narrowText(), u"the then", {false, false}); }
void narrowWords(benchmark::State& state) { search(state, narrowText(), u"pursuan", {false, true}); }
void wideExact(benchmark::State& state) { search(state, wideText(), kAbsent, {true, false}); }
void wideFolded(benchmark::State& state) { search(state, wideText(), kAbsent, {false, false}); }
void repetitive(benchmark::State& state) {
  const PieceText text(narrow(std::u16string(1 << 20, u'a')));
  search(state, text, std::u16string(1000, u'a') + u'b', {false, false});
}
/// What reading the memory alone takes.
void narrowLibraryByte(benchmark::State& state) {
  const Stretch all = narrowText().original().stretch(0, kLength);
  for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(std::memchr(all.narrow, '#', kLength));
  state.SetBytesProcessed(state.iterations() * kLength);
}

/// An edit every forty characters: everything is gathered.
void manyPieces(benchmark::State& state) {
  PieceText text(narrow(prose(3'200'000)));
  for (Position p = 0; p < text.length(); p += 40) text.replace(p, p + 1, u"~", {});
  search(state, text, kAbsent, {false, false});
}

/// All of 100,000 matches, one find each.
void everyMatch(benchmark::State& state) {
  std::u16string units = prose(3'200'000);
  for (std::size_t p = 0; p + 32 < units.size(); p += 32) units.replace(p, 5, u"BEGIN");
  const PieceText text{OriginalText(units)};
  const RunMap<Visibility> visibility(text.length(), kEverywhere);
  const Search search(u"begin", {false, true});
  Position found = 0;
  for ([[maybe_unused]] auto _ : state) {
    Position from = 0;
    while (const auto match = search.find(text, visibility, View::results, from, text.length())) {
      from = match->to;
      ++found;
    }
  }
  state.SetItemsProcessed(found);
}

BENCHMARK(narrowLibraryByte)->Unit(benchmark::kMillisecond);
BENCHMARK(narrowExact)->Unit(benchmark::kMillisecond);
BENCHMARK(narrowFolded)->Unit(benchmark::kMillisecond);
BENCHMARK(narrowCommonUnits)->Unit(benchmark::kMillisecond);
BENCHMARK(narrowWords)->Unit(benchmark::kMillisecond);
BENCHMARK(wideExact)->Unit(benchmark::kMillisecond);
BENCHMARK(wideFolded)->Unit(benchmark::kMillisecond);
BENCHMARK(repetitive)->Unit(benchmark::kMillisecond);
BENCHMARK(manyPieces)->Unit(benchmark::kMillisecond);
BENCHMARK(everyMatch)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace pluvo::text::bench
