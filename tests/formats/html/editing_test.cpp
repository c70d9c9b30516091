#include "errors/document_error.h"
#include "formats/docx/random_edits.h"
#include "formats/html/html_document.h"
#include "formats/left.h"
#include "storage/store/corpus.h"
#include "support/invariants.h"
#include "support/notation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>

namespace pluvo::formats::html {
namespace {

/// Writes what stands in memory, and reads it again: the same document, that is written as it was read.
std::string savedAndTheSame(const OpenedPage& opened) {
  std::string file = opened.written();
  const OpenedPage again = open(file);
  EXPECT_EQ(notation::print(again.model), notation::print(opened.model)) << file.substr(0, 4000);
  EXPECT_EQ(again.written(), file);
  return file;
}

void editAtRandom(OpenedPage& opened, std::mt19937& random, int edits) {
  const auto number = [&] { return static_cast<std::uint32_t>(random()); };
  for (int i = 0; i < edits; ++i) docx::editBySeed(opened.model, {number(), number(), number(), number()});
}

TEST(HtmlCorpus, takesRandomEditsThatAreReadBack) {
  const auto corpus = store::corpusOf({"html"});
  if (corpus.empty()) GTEST_SKIP() << store::kNoCorpus;
  const char* const asked = std::getenv("PLUVO_HTML_PROGRAMS");
  const int programs = asked == nullptr ? 1 : std::atoi(asked);
  for (const auto& path : corpus) {
    const base::Bytes bytes = store::bytesOf(path);
    for (int seed = 1; seed <= programs; ++seed) {
      SCOPED_TRACE(testing::Message() << path << " seed " << seed);
      std::string file(bytes.view.begin(), bytes.view.end());
      std::mt19937 random(static_cast<std::uint32_t>(seed));
      try {
        EXPECT_EQ(open(file).written(), file);
        for (int generation = 0; generation < 3; ++generation) {
          OpenedPage opened = open(file);
          editAtRandom(opened, random, 1 + seed % 8);
          file = savedAndTheSame(opened);
          if (seed == 1 && generation == 0)
            formats::leave("edited-" + path.filename().string(), bytesOf(file), opened.model);
        }
      } catch (const errors::DocumentError& error) {
        EXPECT_EQ(error.problem(), errors::Problem::unsupported) << error.what();
      }
    }
  }
}

}  // namespace
}  // namespace pluvo::formats::html
