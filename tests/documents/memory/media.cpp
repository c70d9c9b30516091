#include "documents/memory/media.h"

#include "documents/docx/body_builder.h"
#include "documents/docx/document_builder.h"
#include "documents/docx/package_check.h"
#include "documents/support/notation_parser.h"
#include "docx/docx_format.h"

namespace pluvo::memory {

Kept keptIn(Medium medium, std::string_view notation) {
  if (medium == Medium::memory) return {{}, nullptr, notation::Sample(notation)};
  docx::BodyBuilder builder;
  notation::Ranges ranges = notation::Parser(notation, builder).parse();
  const files::Bytes file = docx::documentOf(builder.body());
  formats::Opened opened = docx::DocxFormat().read(file);
  std::shared_ptr<const formats::Source> source = std::move(opened.source);
  return {file, source, notation::Sample({std::move(opened.content), std::move(ranges)}, source)};
}

void expectToSurviveASave(Kept& kept) {
  if (kept.source == nullptr) return;
  files::MemoryOutput out;
  kept.source->write(kept.sample.model(), out);
  const files::Bytes written = files::Bytes::of(std::move(out.bytes()));
  const docx::Opened again = docx::open(written);
  EXPECT_EQ(notation::print(again.model), notation::print(kept.sample.model()));
  EXPECT_EQ(docx::worsened(docx::faultsOf(kept.file), docx::faultsOf(written)), "");
}

}  // namespace pluvo::memory
