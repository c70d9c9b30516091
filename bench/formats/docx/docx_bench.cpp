#include "containers/zip/zip_builder.h"
#include "document/story.h"
#include "docx/docx_format.h"
#include "markup.h"

#include <benchmark/benchmark.h>

namespace {

using namespace pluvo;

/// A document of 80,000 runs.
const base::Bytes& document() {
  static const base::Bytes bytes = [] {
    zip::Zip zip;
    zip.entries.push_back(
        {"[Content_Types].xml",
         "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\"><Default "
         "Extension=\"xml\" ContentType=\"application/"
         "vnd.openxmlformats-officedocument.wordprocessingml.document.main+xml\"/></Types>"});
    zip.entries.push_back(
        {"_rels/.rels",
         "<Relationships "
         "xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\"><Relationship "
         "Id=\"r1\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships/"
         "officeDocument\" Target=\"word/document.xml\"/></Relationships>"});
    zip.entries.push_back({"word/document.xml", bench::markup(80'000)});
    const std::string built = zip::build(zip).bytes;
    return base::Bytes::of({built.begin(), built.end()});
  }();
  return bytes;
}

void read(benchmark::State& state) {
  const docx::DocxFormat format;
  const base::Bytes& bytes = document();
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(format.read(bytes).stories.front().text.length());
}
BENCHMARK(read)->Unit(benchmark::kMillisecond);

class CountingOutput : public base::Output {
 public:
  void write(base::ByteSpan bytes) override { size += bytes.size(); }
  std::size_t size = 0;
};

/// Writes a document in which so many places, evenly spread, went through an edit. The edits are not counted.
template <class Edit>
void save(benchmark::State& state, Edit edit) {
  const docx::DocxFormat format;
  formats::Opened opened = format.read(document());
  const std::shared_ptr<const formats::Source> source = std::move(opened.source);
  document::Document edited(std::move(opened.stories));
  document::Story& model = edited.mainText();
  const auto places = static_cast<text::Position>(state.range(0));
  constexpr text::Position kLength = 12;
  const text::Position step = model.length() / places;
  for (text::Position i = places; i-- > 0;) edit(model, text::Span{i * step, i * step + kLength});
  CountingOutput out;
  for ([[maybe_unused]] auto _ : state) source->write(edited, out);
  state.counters["bytes"] = static_cast<double>(out.size) / static_cast<double>(state.iterations());
}

void saveReplaced(benchmark::State& state) {
  save(state, [](document::Story& model, text::Span span) {
    model.replace(span, u"the parties", text::View::results);
  });
}
BENCHMARK(saveReplaced)->Arg(1'200)->Arg(50'000)->Unit(benchmark::kMillisecond);

void saveHighlighted(benchmark::State& state) {
  constexpr std::uint8_t kYellow = 7;
  save(state, [](document::Story& model, text::Span span) { model.highlight(span, kYellow); });
}
BENCHMARK(saveHighlighted)->Arg(1'200)->Arg(50'000)->Unit(benchmark::kMillisecond);

}  // namespace
