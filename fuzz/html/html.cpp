// A web page of any bytes: read, looked through for what is elsewhere, written back unchanged, edited,
// written and read again. The first byte counts the edits, of five bytes each, that follow it; then comes the
// file. A new version that the comparison with what was meant refuses is not saved, and so no fault here,
// unless PLUVO_FUZZ_STRICT is set.

#include "checks.h"
#include "document/same_document.h"
#include "elsewhere/elsewhere.h"
#include "errors/document_error.h"
#include "formats/html/html_document.h"
#include "support/invariants.h"

#include <algorithm>
#include <string_view>

using namespace pluvo;
using namespace pluvo::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::size_t edits = std::min<std::size_t>(data[0] % 8 * std::size_t{5}, size - 1);
  const std::string file(reinterpret_cast<const char*>(data) + 1 + edits, size - 1 - edits);
  try {
    formats::OpenedFile opened = formats::html::open(file);
    require(notation::damageOf(opened.model).empty(), "a sound text");
    require(opened.written() == file, "written as read");
    requireLooks(*opened.source, opened.document);
    engine::Request request;
    request.begin = u"e";
    request.distance = 0;
    elsewhere::lookElsewhere(*opened.source, opened.document, {&request, 1});
    edit(opened.document, {data + 1, edits});
    const std::string edited = opened.written();
    formats::Hint all;
    all.allStories = true;
    const formats::Opened read = formats::html::HtmlFormat().read(formats::bytesOf(edited), all);
    const auto what = document::differenceOf(opened.document.snapshot(), read.stories, [] {});
    if (!what.empty()) return refused(what);
    const formats::OpenedFile again = formats::html::open(edited);
    require(textsOf(again.document) == textsOf(opened.document), "the text that was meant");
    require(again.written() == edited, "written again as read again");
  } catch (const errors::DocumentError&) {
    // Refused: an encoding, a depth, half of a character.
  }
  return 0;
}
