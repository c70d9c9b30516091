#include "containers/zip/zip_builder.h"
#include "markup.h"
#include "zip/archive.h"
#include "zip/rewrite.h"

#include <benchmark/benchmark.h>

namespace {

using namespace pluvo;

/// A main part of 80,000 runs and a hundred pictures.
const zip::Archive& document() {
  static const zip::Archive opened = [] {
    zip::Zip zip;
    zip.entries.push_back({"word/document.xml", bench::markup(80'000)});
    for (int i = 0; i < 100; ++i)
      zip.entries.push_back({"word/media/" + std::to_string(i) + ".png", std::string(100'000, 'p'), false});
    const std::string bytes = zip::build(zip).bytes;
    return zip::Archive::open(base::Bytes::of({bytes.begin(), bytes.end()}));
  }();
  return opened;
}

void open(benchmark::State& state) {
  const auto view = document().bytes();
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(zip::Archive::open({view, nullptr, nullptr}));
}
BENCHMARK(open)->Unit(benchmark::kMicrosecond);

void inflate(benchmark::State& state) {
  const zip::Member& member = *document().find("word/document.xml");
  for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(document().read(member));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(member.size));
}
BENCHMARK(inflate)->Unit(benchmark::kMillisecond);

class CountingOutput : public base::Output {
 public:
  void write(base::ByteSpan bytes) override { size += bytes.size(); }
  std::size_t size = 0;
};

/// The main part in 160,000 pieces, deflated at the level of the argument; the pictures are copied.
void rewrite(benchmark::State& state) {
  const zip::Member& member = *document().find("word/document.xml");
  const base::Bytes contents = document().read(member);
  zip::Change change{member.name, {}};
  for (std::size_t at = 0, size = contents.view.size() / 160'000; at < contents.view.size(); at += size)
    change.pieces.push_back(contents.view.subspan(at, std::min(size, contents.view.size() - at)));
  CountingOutput out;
  for ([[maybe_unused]] auto _ : state)
    zip::rewrite(document(), {&change, 1}, out, static_cast<int>(state.range(0)));
  state.counters["bytes"] = static_cast<double>(out.size) / static_cast<double>(state.iterations());
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(member.size));
}
BENCHMARK(rewrite)->Arg(0)->Arg(1)->Arg(4)->Arg(6)->Unit(benchmark::kMillisecond);

}  // namespace
