#include "archive/archive.h"
#include "archive/rewrite.h"
#include "documents/archive/zip_builder.h"
#include "documents/markup.h"

#include <benchmark/benchmark.h>

namespace {

using namespace pluvo;

/// A main part of 80,000 runs and a hundred pictures.
const archive::Archive& document() {
  static const archive::Archive opened = [] {
    archive::Zip zip;
    zip.entries.push_back({"word/document.xml", bench::markup(80'000)});
    for (int i = 0; i < 100; ++i)
      zip.entries.push_back({"word/media/" + std::to_string(i) + ".png", std::string(100'000, 'p'), false});
    const std::string bytes = archive::build(zip).bytes;
    return archive::Archive::open(files::Bytes::of({bytes.begin(), bytes.end()}));
  }();
  return opened;
}

void open(benchmark::State& state) {
  const auto view = document().bytes();
  for (auto _ : state) benchmark::DoNotOptimize(archive::Archive::open({view, nullptr, nullptr}));
}
BENCHMARK(open)->Unit(benchmark::kMicrosecond);

void inflate(benchmark::State& state) {
  const archive::Member& member = *document().find("word/document.xml");
  for (auto _ : state) benchmark::DoNotOptimize(document().read(member));
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * member.size));
}
BENCHMARK(inflate)->Unit(benchmark::kMillisecond);

class CountingOutput : public files::Output {
 public:
  void write(files::ByteSpan bytes) override { size += bytes.size(); }
  std::size_t size = 0;
};

/// The main part in 160,000 pieces, deflated at the level of the argument; the pictures are copied.
void rewrite(benchmark::State& state) {
  const archive::Member& member = *document().find("word/document.xml");
  const files::Bytes contents = document().read(member);
  archive::Change change{member.name, {}};
  for (std::size_t at = 0, size = contents.view.size() / 160'000; at < contents.view.size(); at += size)
    change.pieces.push_back(contents.view.subspan(at, std::min(size, contents.view.size() - at)));
  CountingOutput out;
  for (auto _ : state) archive::rewrite(document(), {&change, 1}, out, static_cast<int>(state.range(0)));
  state.counters["bytes"] = static_cast<double>(out.size) / static_cast<double>(state.iterations());
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * member.size));
}
BENCHMARK(rewrite)->Arg(0)->Arg(1)->Arg(4)->Arg(6)->Unit(benchmark::kMillisecond);

}  // namespace
