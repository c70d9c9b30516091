#include "documents/docx/document_builder.h"
#include "documents/docx/package_check.h"
#include "documents/docx/random_edits.h"
#include "documents/support/invariants.h"
#include "documents/support/notation.h"

#include <fstream>
#include <iterator>
#include <random>

namespace pluvo::docx {
namespace {

using text::View;

files::Bytes sample(const std::string& name) {
  std::ifstream in(std::string(PLUVO_SAMPLES) + "/" + name, std::ios::binary);
  EXPECT_TRUE(in) << name;
  return files::Bytes::of(std::vector<std::uint8_t>(std::istreambuf_iterator<char>(in), {}));
}

const char* const kSamples[] = {"lease.docx", "settlement.docx", "catalogue.docx", "deed.docx"};

/// The codes of simple fields have no place for a highlight in the file.
std::string storable(model::Model& model) {
  for (const auto& run : model.visibility().runs()) {
    if ((run.value & text::kInResults) == 0) model.highlight({run.from, run.to}, 0);
  }
  return notation::print(model);
}

void expectSound(const files::Bytes& before, Opened& opened) {
  const files::Bytes written = opened.written();
  Opened again = open(written);
  EXPECT_EQ(storable(again.model), storable(opened.model));
  EXPECT_EQ(worsened(faultsOf(before), faultsOf(written)), "");
}

TEST(Samples, areSound) {
  for (const char* name : kSamples) {
    SCOPED_TRACE(name);
    const files::Bytes document = sample(name);
    EXPECT_EQ(faultsOf(document), Faults());
    EXPECT_EQ(notation::damageOf(open(document).model), "");
  }
}

TEST(Samples, anyProgramOfEditsIsReadBackAsItWasMeant) {
  for (const char* name : kSamples) {
    const files::Bytes document = sample(name);
    for (unsigned seed = 1; seed <= 150; ++seed) {
      SCOPED_TRACE(std::string(name) + " " + std::to_string(seed));
      std::minstd_rand random(seed);
      Opened opened = open(document);
      const auto next = [&] { return static_cast<std::uint32_t>(random()); };
      for (int i = 0; i < 12; ++i)
        editBySeed(opened.model, {next() >> 3U, next() >> 3U, next() >> 3U, next() >> 3U});
      expectSound(document, opened);
      if (HasFailure()) return;
    }
  }
}

/// Each operation at each place of a block whose beginning lies in five runs with a link, a comment and
/// tracked changes in it, and of one that begins before a table and ends in it.
TEST(Samples, everyOperationAtEveryPlaceOfABlock) {
  struct Block {
    const char* sample;
    std::u16string begin, end;
  };
  const Block blocks[] = {{"lease.docx", u"The Lessor", u"the Lessee\x0005"},
                          {"lease.docx", u"[Note to file: ask", u"April.]"},
                          {"settlement.docx", u"Without prejudice", u"until signature."},
                          {"settlement.docx", u"Without prejudice", u"£840"},
                          {"settlement.docx", u"Sums due", u"in all £12,840"},
                          {"settlement.docx", u"Begin confidential", u"End confidential"},
                          {"catalogue.docx", u"[restricted: \rnames", u"end]"}};
  for (const Block& block : blocks) {
    const files::Bytes document = sample(block.sample);
    for (int operation = 0; operation < 5; ++operation) {
      for (int place = 0; place < 3; ++place) {
        SCOPED_TRACE(testing::Message() << block.sample << " " << operation << " at " << place);
        Opened opened = open(document);
        const text::Span begin = opened.find(block.begin);
        const text::Span end = opened.find(block.end);
        const text::Span span = place == 0 ? text::Span{begin.from, end.to} : place == 1 ? begin : end;
        if (operation == 0) opened.model.highlight(span, 11);
        if (operation == 1) opened.model.replace(span, u"1\r2", View::results);
        if (operation == 2) opened.model.replace(span, {}, View::results);
        if (operation == 3) opened.model.insertBefore(span.from, u"new\r");
        if (operation == 4) opened.model.insertBehind(span.to, u" new");
        EXPECT_EQ(notation::damageOf(opened.model), "");
        expectSound(document, opened);
      }
    }
  }
}

TEST(Samples, noTruncatedOneIsOpened) {
  for (const char* name : {"lease.docx", "settlement.docx", "deed.docx"}) {
    const files::Bytes whole = sample(name);
    for (std::size_t size = 0; size < whole.view.size(); ++size) {
      const files::Bytes cut =
          files::Bytes::of({whole.view.begin(), whole.view.begin() + static_cast<std::ptrdiff_t>(size)});
      EXPECT_THROW(open(cut), files::DocumentError) << name << " cut to " << size;
    }
  }
}

}  // namespace
}  // namespace pluvo::docx
