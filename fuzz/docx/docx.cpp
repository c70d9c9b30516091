// A Word document whose body is any markup: read, edited, written and read again. The input is a program of
// edits and the inside of w:body; the package around it is always the same.

#include "documents/docx/document_builder.h"
#include "documents/docx/random_edits.h"
#include "docx/docx_format.h"

#include <algorithm>
#include <cstdlib>

namespace {

using namespace pluvo;

std::u16string shownText(const model::Model& model) { return model.text().substring(0, model.length()); }

void edit(model::Model& model, files::ByteSpan program) {
  for (; program.size() >= 5; program = program.subspan(5)) {
    const auto place = static_cast<std::uint32_t>(program[0] | program[1] << 8U);
    docx::editBySeed(model, {place, program[2], program[3], program[4]});
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::size_t edits = std::min<std::size_t>(data[0] % 8 * std::size_t{5}, size - 1);
  const std::string_view body(reinterpret_cast<const char*>(data) + 1 + edits, size - 1 - edits);
  try {
    docx::Opened opened = docx::open(docx::documentOf(body));
    edit(opened.model, {data + 1, edits});
    const files::Bytes written = opened.written();
    if (shownText(docx::open(written).model) != shownText(opened.model)) std::abort();
  } catch (const files::DocumentError&) {
  }
  return 0;
}
