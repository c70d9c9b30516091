// Rich Text of any bytes: all its stories read, looked through for what is elsewhere, written back unchanged,
// edited, written and read again. The first byte counts the edits, of five bytes each, that follow it; then
// comes the file, to which the beginning that makes it one is added. A new version that the comparison with
// what was meant refuses is not saved, and so no fault here, unless PLUVO_FUZZ_STRICT is set.

#include "document/same_document.h"
#include "elsewhere/elsewhere.h"
#include "formats/docx/random_edits.h"
#include "formats/rtf/rtf_document.h"
#include "support/invariants.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace pluvo;

void require(bool condition, const char* what) {
  if (condition) return;
  std::fprintf(stderr, "not so: %s\n", what);
  std::abort();
}

/// Half of the edits are those of main text.
void edit(document::Document& document, base::ByteSpan program) {
  for (; program.size() >= 5; program = program.subspan(5)) {
    const auto place = static_cast<std::uint32_t>(program[0] | program[1] << 8U);
    const std::size_t story = program[4] < 0x80 ? 0 : program[4] / 5U % document.count();
    docx::editBySeed(document.story(story), {place, program[2], program[3], program[4]});
  }
}

int refused(std::string_view what) {
  require(std::getenv("PLUVO_FUZZ_STRICT") == nullptr, what.data());
  return 0;
}

std::vector<std::u16string> textsOf(const document::Document& document) {
  std::vector<std::u16string> texts;
  for (std::size_t i = 0; i < document.count(); ++i) {
    const document::Story& story = document.story(i);
    if (!document.isGone(i)) texts.push_back(story.text().substring(0, story.length()));
  }
  return texts;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::size_t edits = std::min<std::size_t>(data[0] % 8 * std::size_t{5}, size - 1);
  std::string file = rtf::head();
  file.append(reinterpret_cast<const char*>(data) + 1 + edits, size - 1 - edits);
  try {
    rtf::Opened opened = rtf::open(file);
    for (std::size_t i = 0; i < opened.document.count(); ++i)
      require(notation::damageOf(opened.document.story(i)).empty(), "a sound text");
    require(opened.written() == file, "written as read");
    require(opened.source->appearance().length() == opened.model.length(), "looks of all the text");
    engine::Request request;
    request.begin = u"e";
    request.distance = 0;
    elsewhere::lookElsewhere(*opened.source, opened.document, {&request, 1});
    edit(opened.document, {data + 1, edits});
    const std::string edited = opened.written();
    formats::Hint hint;
    hint.allStories = true;
    const formats::Opened read = rtf::RtfFormat().read(rtf::bytesOf(edited), hint);
    const auto what = document::differenceOf(opened.document.snapshot(), read.stories, [] {});
    if (!what.empty()) return refused(what);
    const rtf::Opened again = rtf::open(edited);
    require(textsOf(again.document) == textsOf(opened.document), "the texts that were meant");
    require(again.written() == edited, "written again as read again");
  } catch (const errors::DocumentError&) {
    // Refused: no whole document, or no place for a colour.
  }
  return 0;
}
