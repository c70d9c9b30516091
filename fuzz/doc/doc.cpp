// Word's binary documents of any bytes: every story read, looked at, looked through for what is elsewhere,
// written back unchanged, edited, written and read again. The first byte says whether the rest is a file, or
// its streams, and counts the edits, of five bytes each, that follow it. Of streams the next two bytes say
// how long the one with the text is, and two more how long that of tables is. A new version that the
// comparison with what was meant refuses is not saved, and so no fault here, unless PLUVO_FUZZ_STRICT is set.

#include "checks.h"
#include "containers/cfb/compound_builder.h"
#include "doc/doc_format.h"
#include "document/document.h"
#include "document/same_document.h"
#include "elsewhere/elsewhere.h"
#include "support/invariants.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace {

using namespace pluvo;
using fuzz::require;

std::string fileOf(std::string_view rest) {
  if (rest.size() < 4) return {};
  const base::ByteSpan sizes(reinterpret_cast<const std::uint8_t*>(rest.data()), 4);
  const std::string_view document = rest.substr(4, base::get16(sizes, 0));
  const std::string_view after = rest.substr(4 + document.size());
  const std::string_view tables = after.substr(0, base::get16(sizes, 2));
  return cfb::compoundFile({{"WordDocument", std::string(document)},
                            {"1Table", std::string(tables)},
                            {"Data", std::string(after.substr(tables.size()))}});
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::size_t edits = std::min<std::size_t>(data[0] / 2 % 8 * std::size_t{5}, size - 1);
  const std::string_view rest(reinterpret_cast<const char*>(data) + 1 + edits, size - 1 - edits);
  const std::string file = data[0] % 2 == 0 ? fileOf(rest) : std::string(rest);
  try {
    formats::Hint hint;
    hint.allStories = true;
    formats::Opened opened = doc::DocFormat().read(base::Bytes::of({file.begin(), file.end()}), hint);
    document::Document document(std::move(opened.stories), opened.source);
    for (std::size_t i = 0; i < document.count(); ++i)
      require(notation::damageOf(document.story(i)).empty(), "a sound story");
    fuzz::requireLooks(*opened.source, document);
    engine::Request request;
    request.begin = u"e";
    request.distance = 0;
    elsewhere::lookElsewhere(*opened.source, document, {&request, 1});
    base::MemoryOutput out;
    opened.source->write(document, out);
    require(
        std::ranges::equal(out.bytes(), file, {}, {}, [](char c) { return static_cast<std::uint8_t>(c); }),
        "written as read");

    fuzz::edit(document, {data + 1, edits});
    base::MemoryOutput edited;
    opened.source->write(document, edited);
    const formats::Opened read = doc::DocFormat().read(base::Bytes::of(edited.bytes()), hint);
    const auto what = document::differenceOf(document.snapshot(), read.stories, [] {});
    if (!what.empty()) return fuzz::refused(what);
    base::MemoryOutput again;
    read.source->write(document::Document(read.stories, read.source), again);
    require(again.bytes() == edited.bytes(), "written again as read again");
  } catch (const errors::DocumentError&) {
    // Refused: no document, or one that cannot be edited so.
  }
  return 0;
}
