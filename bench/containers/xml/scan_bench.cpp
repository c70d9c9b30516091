#include "markup.h"
#include "xml/scanner.h"

#include <benchmark/benchmark.h>
#include <expat.h>

namespace {

using namespace pluvo::xml;

constexpr KnownNamespace kNamespaces[] = {
    {"http://schemas.openxmlformats.org/wordprocessingml/2006/main", 2}};
constexpr KnownName kNames[] = {{2, "p", 1},   {2, "r", 2}, {2, "t", 3},   {2, "rPr", 4},
                                {2, "pPr", 5}, {2, "b", 6}, {2, "val", 7}, {2, "body", 8}};

const std::string& part() {
  static const std::string made = pluvo::bench::markup(80'000);
  return made;
}

void scan(benchmark::State& state) {
  const Vocabulary vocabulary(kNamespaces, kNames);
  std::size_t runs = 0;
  for ([[maybe_unused]] auto _ : state) {
    Scanner scanner({reinterpret_cast<const std::uint8_t*>(part().data()), part().size()}, vocabulary,
                    "part");
    for (Token token = scanner.next(); token != Token::finish; token = scanner.next())
      runs += token == Token::start && scanner.name() == 2 ? 1U : 0U;
  }
  benchmark::DoNotOptimize(runs);
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(part().size()));
}
BENCHMARK(scan)->Unit(benchmark::kMillisecond);

/// What could cost more than its size: names looked up anew after many declarations, brackets that may end a
/// section, elements with many attributes.
std::string worst(int kind, int size) {
  std::string text = "<a";
  if (kind == 0) {
    for (int i = 0; i < 250; ++i) text += " xmlns:p" + std::to_string(i) + "='u" + std::to_string(i) + "'";
    text += ">";
    for (int i = 0; i < size; ++i) text += "<p0:b xmlns:q='v' p0:c='' p0:d=''/>";
  } else if (kind == 1) {
    text += ">" + std::string(static_cast<std::size_t>(size) * 40, ']');
  } else {
    text += ">";
    for (int tag = 0; tag < size / 500; ++tag) {
      text += "<b";
      for (int i = 0; i < 1000; ++i) text += " c" + std::to_string(i) + "=''";
      text += "/>";
    }
  }
  return text + "</a>";
}

void worstCase(benchmark::State& state) {
  const std::string text = worst(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  const Vocabulary vocabulary(kNamespaces, kNames);
  for ([[maybe_unused]] auto _ : state) {
    Scanner scanner({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}, vocabulary, "part");
    while (scanner.next() != Token::finish) {
    }
  }
  state.SetComplexityN(state.range(1));
}
BENCHMARK(worstCase)
    ->ArgsProduct({{0}, {12'500, 50'000, 200'000}})
    ->Unit(benchmark::kMillisecond)
    ->Complexity();
BENCHMARK(worstCase)
    ->ArgsProduct({{1}, {12'500, 50'000, 200'000}})
    ->Unit(benchmark::kMillisecond)
    ->Complexity();
BENCHMARK(worstCase)
    ->ArgsProduct({{2}, {12'500, 50'000, 200'000}})
    ->Unit(benchmark::kMillisecond)
    ->Complexity();

/// What a library does for the same: elements with their namespaces, and text.
void expat(benchmark::State& state) {
  std::size_t elements = 0;
  for ([[maybe_unused]] auto _ : state) {
    XML_Parser parser = XML_ParserCreateNS("UTF-8", '#');
    XML_SetUserData(parser, &elements);
    XML_SetElementHandler(
        parser, [](void* user, const char*, const char**) { ++*static_cast<std::size_t*>(user); },
        [](void*, const char*) {});
    XML_SetCharacterDataHandler(parser, [](void*, const char*, int) {});
    XML_Parse(parser, part().data(), static_cast<int>(part().size()), XML_TRUE);
    XML_ParserFree(parser);
  }
  benchmark::DoNotOptimize(elements);
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(part().size()));
}
BENCHMARK(expat)->Unit(benchmark::kMillisecond);

}  // namespace
