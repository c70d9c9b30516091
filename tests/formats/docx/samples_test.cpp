#include "base/utf.h"
#include "document/same_document.h"
#include "docx/docx_format.h"
#include "formats/docx/document_builder.h"
#include "formats/docx/package_check.h"
#include "formats/docx/random_edits.h"
#include "formats/left.h"
#include "storage/store/corpus.h"
#include "support/invariants.h"
#include "support/notation.h"
#include "zip/archive.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <regex>

namespace pluvo::docx {
namespace {

base::Bytes sample(const std::string& name) {
  return store::bytesOf(std::string(PLUVO_SAMPLES) + "/" + name);
}

const char* const kSamples[] = {"lease.docx", "settlement.docx", "catalogue.docx", "deed.docx"};

base::ByteSpan rawOf(const zip::Archive& archive, const zip::Member& member) {
  return archive.bytes().subspan(member.header, member.next - member.header);
}

/// Written, it is read back as it was meant, and what has no part in the text is as it was to the byte.
base::Bytes expectSound(const base::Bytes& before, Opened& opened) {
  base::Bytes written = opened.written();
  EXPECT_EQ(notation::print(open(written).model), notation::print(opened.model));
  const std::vector<document::Content> again = DocxFormat().read(written, allStories()).stories;
  EXPECT_EQ(document::differenceOf(opened.document.snapshot(), again, [] {}), "");
  EXPECT_EQ(worsened(faultsOf(before), faultsOf(written)), "");
  EXPECT_EQ(valuesDenied(before, written), "");
  const zip::Archive old = zip::Archive::open(before);
  const zip::Archive made = zip::Archive::open(written);
  for (const zip::Member& member : old.members()) {
    const zip::Member* const copy = made.find(member.name);
    const bool mayChange =
        std::regex_search(std::string(member.name), std::regex("document|deed|notes|comments|header|footer"));
    EXPECT_TRUE(copy != nullptr && (mayChange || std::ranges::equal(rawOf(old, member), rawOf(made, *copy))))
        << member.name;
  }
  return written;
}

void editAtRandom(document::Document& document, unsigned seed) {
  std::minstd_rand random(seed);
  const auto next = [&] { return static_cast<std::uint32_t>(random()) >> 3U; };
  for (int i = 0; i < 12; ++i) editBySeed(document, {next(), next(), next(), next()});
}

TEST(Samples, areSound) {
  for (const char* name : kSamples) {
    SCOPED_TRACE(name);
    const base::Bytes document = sample(name);
    EXPECT_EQ(faultsOf(document), Faults());
    EXPECT_EQ(notation::damageOf(open(document).model), "");
  }
}

TEST(Samples, anyProgramOfEditsIsReadBackAsItWasMeant) {
  for (const char* name : kSamples) {
    const base::Bytes document = sample(name);
    for (unsigned seed = 1; seed <= 150; ++seed) {
      SCOPED_TRACE(std::string(name) + " " + std::to_string(seed));
      Opened opened = open(document);
      editAtRandom(opened.document, seed);
      expectSound(document, opened);
      if (HasFailure()) return;
    }
  }
}

/// Controls of every kind at every level, deletions within and around them, and guided text.
TEST(Samples, soIsWhateverIsDoneToControlsAndDeletions) {
  const std::string plain = "<sdt><sdtPr><id val='_'/><dataBinding xpath='/'/><text/></sdtPr><sdtContent>";
  const std::string rich = "<sdt><sdtPr><id val='_'/></sdtPr><sdtContent>";
  const std::string locked = "<sdt><sdtPr><id val='_'/><lock val='sdtContentLocked'/></sdtPr><sdtContent>";
  const std::string end = "</sdtContent></sdt>";
  const std::string gone = "<del id='_' author='A'><r><delText>gone</delText></r></del>";
  const std::string mark = "<pPr><rPr><del id='_' author='A'/></rPr></pPr>";
  const std::string guided = "<r><ruby><rubyPr/><rt>[guide]</rt><rubyBase>[base]</rubyBase></ruby></r>";
  std::string body = "{[one ]" + plain + "[two" + "]" + gone + end + "[three]}{" + mark + gone + "}" + plain +
                     "{[four]" + rich + guided + "[five]" + end + "}" + end + "{" + gone + guided + gone +
                     "}" + rich + "{[six]}{" + mark + "<r><t>seven</t><br/></r>}" + plain + "{[eight]}" +
                     end + end + plain + "{[ten]}" + end + "<T>" + plain + "<tc>{[eleven]" + gone + "}</tc>" +
                     end + "<tc>" + plain + "{[twelve]}" + end + "{}</tc></T>{" + locked + "[thirteen]" +
                     end + "[fourteen]}" + locked + "{[fifteen]}" + end + "{" + gone + "}{}";
  int id = 0;
  for (std::size_t at = 0; (at = body.find('_', at)) != body.npos;) body.replace(at, 1, std::to_string(++id));
  const base::Bytes document = documentOf(wml(body));
  ASSERT_EQ(faultsOf(document), Faults());
  for (unsigned seed = 1; seed <= 1500; ++seed) {
    SCOPED_TRACE(seed);
    Opened opened = open(document);
    editAtRandom(opened.document, seed);
    expectSound(document, opened);
    if (HasFailure()) return;
  }
}

TEST(Samples, noTruncatedOneIsOpened) {
  for (const char* name : {"lease.docx", "settlement.docx", "deed.docx"}) {
    const base::Bytes whole = sample(name);
    for (std::size_t size = 0; size < whole.view.size(); ++size) {
      const base::ByteSpan cut = whole.view.first(size);
      EXPECT_THROW(open(base::Bytes::of({cut.begin(), cut.end()})), errors::DocumentError) << name << size;
    }
  }
}

bool isLocked(const document::Story& model, text::Position position) {
  const std::int32_t control = model.structure().valueAt(position).control;
  return control != document::kNone && model.controls()[static_cast<std::size_t>(control)].contentLocked;
}

TEST(Corpus, isReadBackAsItWasMeantUnchangedHighlightedAndEdited) {
  const auto corpus = store::wordCorpus();
  if (corpus.empty()) GTEST_SKIP() << store::kNoCorpus;
  std::size_t count = 0;
  for (const auto& file : corpus) {
    SCOPED_TRACE(file.string());
    const base::Bytes document = store::bytesOf(file);
    for (const int treatment : {0, 1, 2}) {
      std::unique_ptr<Opened> opened;
      try {
        opened.reset(new Opened(open(document)));
      } catch (const errors::DocumentError&) {
        break;
      }
      ++count;
      document::Story& model = opened->model;
      for (text::Position i = 0; treatment == 1 && i < std::min(model.length(), 5000); ++i) {
        const bool shown = (model.visibility().valueAt(i) & text::kInResults) != 0;
        if (shown && model.text().at(i) == u'e' && !isLocked(model, i)) model.highlight({i, i + 1}, 7);
      }
      if (treatment == 2) editAtRandom(opened->document, 1);
      const base::Bytes written = expectSound(document, *opened);
      const std::string name = file.filename();
      if (treatment != 1) formats::leave(treatment == 0 ? "read-" + name : name, written, opened->document);
    }
  }
  EXPECT_GT(count, corpus.size());
}

}  // namespace
}  // namespace pluvo::docx
