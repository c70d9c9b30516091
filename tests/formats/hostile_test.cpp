// Damaged and hostile files: read or refused, at a cost that grows with their size alone.
#include "errors/document_error.h"
#include "formats/media/media.h"
#include "storage/store/corpus.h"
#include "support/invariants.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <string>

namespace pluvo::formats {
namespace {

/// Reads a file with all its stories and writes it as it was read.
void readOrRefuse(const Format& format, const base::Bytes& file) {
  Hint all;
  all.allStories = true;
  try {
    Opened opened = format.read(file, all);
    const auto looks = opened.source->appearance();
    const document::Document document(std::move(opened.stories), opened.source);
    for (std::size_t i = 0; i < document.count(); ++i)
      EXPECT_EQ(notation::damageOf(document.story(i)), "") << i;
    EXPECT_FALSE(looks.empty());
    for (std::size_t i = 0; i < looks.size(); ++i)
      EXPECT_EQ(looks[i].length(), document.story(i).length()) << i;
    base::MemoryOutput out;
    opened.source->write(document, out);
    EXPECT_TRUE(std::ranges::equal(out.bytes(), file.view));
  } catch (const errors::DocumentError&) {
    // Refused with a sentence.
  }
}

/// Every beginning where PLUVO_EVERY_BEGINNING is set; else about 40 of each file.
TEST(Hostile, EveryBeginningOfAFileIsReadOrRefused) {
  constexpr std::size_t kLargest = std::size_t{64} << 10U;
  constexpr std::size_t kSome = 40;
  for (const Medium& medium : {rtfMedium(), htmlMedium(), docMedium()}) {
    const auto corpus = store::corpusOf({medium.name.c_str()});
    if (corpus.empty()) GTEST_SKIP() << store::kNoCorpus;
    for (const auto& path : corpus) {
      const base::Bytes whole = store::bytesOf(path);
      const std::size_t most = std::min(whole.view.size(), kLargest);
      const std::size_t step = std::getenv("PLUVO_EVERY_BEGINNING") != nullptr ? 1 : most / kSome + 1;
      for (std::size_t size = 0; size <= most; size += step) {
        const base::ByteSpan beginning = whole.view.first(size);
        readOrRefuse(*medium.format, base::Bytes::of({beginning.begin(), beginning.end()}));
        ASSERT_FALSE(HasFailure()) << path << " up to " << size;
      }
    }
  }
}

/// Each byte of the container's header and the document's, in three files. Every value where
/// PLUVO_EVERY_VALUE is set; else one.
TEST(Hostile, EveryByteOfAHeaderMayBeAnyOther) {
  constexpr std::size_t kSector = 512, kMiniSector = 64, kBlock = 1024;
  const bool isEvery = std::getenv("PLUVO_EVERY_VALUE") != nullptr;
  for (const auto& path : store::corpusOf({"doc"})) {
    const std::string name = path.filename().string();
    if (name != "HeaderWithMacros.doc" && name != "footnote.doc" && name != "o_kurs.doc") continue;
    const base::Bytes whole = store::bytesOf(path);
    std::vector<std::uint8_t> bytes(whole.view.begin(), whole.view.end());
    std::size_t block = kSector;
    while (whole.view[block] != 0xEC || whole.view[block + 1] != 0xA5) block += kMiniSector;
    for (std::size_t i = 0; i < kSector + kBlock; ++i) {
      const std::size_t at = i < kSector ? i : block + i - kSector;
      for (std::size_t by = isEvery ? 1 : 1 + i % 255; by < 256; by += isEvery ? 1 : 255) {
        bytes[at] = static_cast<std::uint8_t>(whole.view[at] + by);
        readOrRefuse(*docMedium().format, base::Bytes::of(std::vector(bytes)));
        ASSERT_FALSE(HasFailure()) << name << " with " << int{bytes[at]} << " at " << at;
      }
      bytes[at] = whole.view[at];
    }
  }
}

/// A mebibyte of one thing over and over.
TEST(Hostile, MebibytesOfMarkupCostLittle) {
  const struct {
    Medium medium;
    std::string begin;
    std::string again;
  } cases[] = {
      {htmlMedium(), "", "<div>"},
      {htmlMedium(), "", "<font><p>"},
      {htmlMedium(), "", "<a><p>"},
      {htmlMedium(), "", "<b><div></b>"},
      {htmlMedium(), "<p ", "a=b "},
      {htmlMedium(), "<p ", "style='a:b' "},
      {htmlMedium(), "<p style='", "a:b;"},
      {htmlMedium(), "", "&#"},
      {htmlMedium(), "", "<!--"},
      {htmlMedium(), "", "<!--[if mso]>"},
      {htmlMedium(), "", "<![if !mso]>"},
      {htmlMedium(), "", "</p>"},
      {htmlMedium(), "", "<table><td>"},
      {htmlMedium(), "<table><tr><td>a", "<td>b"},
      {htmlMedium(), "", "<li>"},
      {htmlMedium(), "", "<select><svg>"},
      {htmlMedium(), "", "<span style='mso-tab-count:1'>"},
      {htmlMedium(), "", "<div style='mso-element:footnote-list'>"},
      {htmlMedium(), "", "<style>p{"},
      {rtfMedium(), "{\\rtf1", "{"},
      {rtfMedium(), "{\\rtf1", "{\\footnote "},
      {rtfMedium(), "{\\rtf1", "\\u1"},
      {rtfMedium(), "{\\rtf1", "\\trowd\\cellx1 "},
      {rtfMedium(), "{\\rtf1", "{\\*\\atnid "},
      {rtfMedium(), "{\\rtf1{\\colortbl", "\\red1;"},
      {rtfMedium(), "{\\rtf1{\\fonttbl", "{\\f1 A;}"},
  };
  for (const auto& [medium, begin, again] : cases) {
    SCOPED_TRACE(begin + again);
    std::string file = begin;
    while (file.size() < std::size_t{1} << 20U) file += again;
    const std::clock_t before = std::clock();
    readOrRefuse(*medium.format, base::Bytes::of({file.begin(), file.end()}));
    // A second or less of the processor; what grows with the square takes minutes.
    EXPECT_LT(std::clock() - before, 20 * CLOCKS_PER_SEC);
  }
}

}  // namespace
}  // namespace pluvo::formats
