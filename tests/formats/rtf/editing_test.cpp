#include "formats/docx/random_edits.h"
#include "formats/left.h"
#include "formats/rtf/rtf_document.h"
#include "storage/store/corpus.h"
#include "support/invariants.h"
#include "support/notation.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

namespace pluvo::rtf {
namespace {

/// Writes what stands in memory, and reads it again: the same document, that is written as it was read.
std::string savedAndTheSame(const Opened& opened) {
  std::string file = opened.written();
  const Opened again = open(file);
  EXPECT_EQ(notation::print(again.model), notation::print(opened.model)) << file.substr(0, 4000);
  EXPECT_EQ(again.written(), file);
  return file;
}

void editAtRandom(Opened& opened, std::mt19937& random, int edits) {
  const auto number = [&] { return static_cast<std::uint32_t>(random()); };
  for (int i = 0; i < edits; ++i) docx::editBySeed(opened.model, {number(), number(), number(), number()});
}

TEST(Corpus, takesRandomEditsThatAreReadBack) {
  const auto corpus = store::corpusOf({"rtf"});
  if (corpus.empty()) GTEST_SKIP() << store::kNoCorpus;
  const char* const asked = std::getenv("PLUVO_RTF_PROGRAMS");
  const int programs = asked == nullptr ? 2 : std::atoi(asked);
  for (const auto& path : corpus) {
    const base::Bytes bytes = store::bytesOf(path);
    for (int seed = 1; seed <= programs; ++seed) {
      SCOPED_TRACE(testing::Message() << path << " seed " << seed);
      std::string file(bytes.view.begin(), bytes.view.end());
      std::mt19937 random(static_cast<std::uint32_t>(seed));
      for (int generation = 0; generation < 3; ++generation) {
        Opened opened = open(file);
        editAtRandom(opened, random, 1 + seed % 8);
        try {
          file = savedAndTheSame(opened);
        } catch (const errors::DocumentError& error) {
          EXPECT_EQ(error.problem(), errors::Problem::unsupported) << "highlight in front of the colours";
        }
        if (seed == 1 && generation == 0)
          formats::leave("edited-" + path.filename().string(), bytesOf(file), opened.model);
      }
    }
  }
}

}  // namespace
}  // namespace pluvo::rtf
