// Rich Text of any bytes: read, looked through for what is elsewhere, written back unchanged, edited, written
// and read again. The first byte counts the edits, of five bytes each, that follow it; then comes the file,
// to which the beginning that makes it one is added.

#include "elsewhere/elsewhere.h"
#include "formats/docx/random_edits.h"
#include "formats/rtf/rtf_document.h"

#include <algorithm>
#include <cstdlib>

namespace {

using namespace pluvo;

void require(bool condition) {
  if (!condition) std::abort();
}

void edit(document::Story& story, base::ByteSpan program) {
  for (; program.size() >= 5; program = program.subspan(5)) {
    const auto place = static_cast<std::uint32_t>(program[0] | program[1] << 8U);
    docx::editBySeed(story, {place, program[2], program[3], program[4]});
  }
}

std::u16string textOf(const document::Story& story) { return story.text().substring(0, story.length()); }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::size_t edits = std::min<std::size_t>(data[0] % 8 * std::size_t{5}, size - 1);
  std::string file = rtf::head();
  file.append(reinterpret_cast<const char*>(data) + 1 + edits, size - 1 - edits);
  try {
    rtf::Opened opened = rtf::open(file);
    require(opened.written() == file);
    require(opened.source->appearance().length() == opened.model.length());
    engine::Request request;
    request.begin = u"e";
    request.distance = 0;
    elsewhere::lookElsewhere(*opened.source, opened.model, {&request, 1});
    edit(opened.model, {data + 1, edits});
    const std::string edited = opened.written();
    require(textOf(rtf::open(edited).model) == textOf(opened.model));
  } catch (const errors::DocumentError&) {
    // Refused: no whole document, or no place for a colour.
  }
  return 0;
}
