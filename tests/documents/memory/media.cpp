#include "documents/memory/media.h"

#ifdef PLUVO_TESTS_DOCX
#include "documents/docx/body_builder.h"
#include "documents/docx/document_builder.h"
#include "documents/docx/package_check.h"
#include "documents/support/notation_parser.h"
#include "docx/docx_format.h"
#endif

namespace pluvo::memory {

namespace {

Kept inMemory(std::string_view notation) { return {notation::Sample(notation)}; }

#ifdef PLUVO_TESTS_DOCX
Kept asDocx(std::string_view notation) {
  docx::BodyBuilder builder;
  notation::Ranges ranges = notation::Parser(notation, builder).parse();
  const files::Bytes file = docx::documentOf(builder.body());
  formats::Opened opened = docx::DocxFormat().read(file);
  const std::shared_ptr<const formats::Source> source = std::move(opened.source);
  const auto save = [file, source](const model::Model& model) {
    files::MemoryOutput out;
    source->write(model, out);
    const files::Bytes written = files::Bytes::of(std::move(out.bytes()));
    EXPECT_EQ(notation::print(docx::open(written).model), notation::print(model));
    EXPECT_EQ(docx::worsened(docx::faultsOf(file), docx::faultsOf(written)), "");
  };
  return {notation::Sample({std::move(opened.content), std::move(ranges)}, source), save};
}
#endif

}  // namespace

const std::vector<Medium>& media() {
#ifdef PLUVO_TESTS_DOCX
  static const std::vector<Medium> all = {inMemory, asDocx};
#else
  static const std::vector<Medium> all = {inMemory};
#endif
  return all;
}

}  // namespace pluvo::memory
