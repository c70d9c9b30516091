#pragma once

#include "document/same_document.h"
#include "errors/document_error.h"
#include "formats/docx/random_edits.h"
#include "formats/edits_of_each_kind.h"
#include "formats/left.h"
#include "formats/opened.h"
#include "storage/store/corpus.h"
#include "support/invariants.h"
#include "support/notation.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>
#include <vector>

/// For formats that are text with markup in it: a table has the bytes before an edit and after it.
namespace pluvo::formats {

/// Writes what stands in memory, and reads it again: the same document, that is written as it was read.
inline std::string savedAndTheSame(const Format& format, const OpenedFile& opened) {
  std::string file = opened.written();
  const OpenedFile again = openAll(format, file);
  std::size_t next = 0;
  for (std::size_t i = 0; i < opened.document.count(); ++i) {
    if (opened.document.isGone(i)) continue;
    EXPECT_LT(next, again.document.count()) << file.substr(0, 4000);
    if (next == again.document.count()) return file;
    EXPECT_EQ(notation::print(again.document.story(next++)), notation::print(opened.document.story(i)))
        << i << " of " << file.substr(0, 4000);
  }
  Hint all;
  all.allStories = true;
  const auto stories = format.read(bytesOf(file), all).stories;
  EXPECT_EQ(document::differenceOf(opened.document.snapshot(), stories, [] {}), "");
  EXPECT_EQ(again.written(), file);
  return file;
}

/// Of the first place of a text. A new text of "7" is a highlight, "0" none.
inline void editFirst(document::Story& story, std::u16string_view place, std::u16string_view text) {
  const std::size_t at = story.text().substring(0, story.length()).find(place);
  ASSERT_NE(at, std::u16string::npos);
  const text::Span span{static_cast<text::Position>(at), static_cast<text::Position>(at + place.size())};
  if (text == u"7" || text == u"0") {
    story.highlight(span, text == u"7" ? 7 : 0);
  } else {
    story.replace(span, text, text::View::codes);
  }
}

struct SpliceCase {
  const char* before;
  std::u16string place;
  std::u16string text;
  const char* after;
  std::size_t story = 0;
};

/// What an edit of the first place of a text makes of a document's bytes, between those that all begin and
/// end with. The second save has the first one's edit.
inline void expectSplices(const Format& format, const std::string& head, const std::string& tail,
                          const std::vector<SpliceCase>& cases) {
  for (const auto& [before, place, text, after, story] : cases) {
    SCOPED_TRACE(before);
    OpenedFile opened = openAll(format, head + before + tail);
    ASSERT_LT(story, opened.document.count());
    editFirst(opened.document.story(story), place, text);
    EXPECT_EQ(savedAndTheSame(format, opened), head + after + tail);
    opened.document.saved();
    EXPECT_EQ(savedAndTheSame(format, opened), head + after + tail);
  }
}

inline void editAtRandom(OpenedFile& opened, std::mt19937& random, int edits) {
  const auto number = [&] { return static_cast<std::uint32_t>(random()); };
  for (int i = 0; i < edits; ++i) docx::editBySeed(opened.document, {number(), number(), number(), number()});
}

/// Programs of edits, with a save after each of three: a highlight may have no place, and half of a character
/// none. What the first leaves is for libreoffice.py.
inline void expectRandomEditsReadBack(const Format& format, const char* extension) {
  const auto corpus = store::corpusOf({extension});
  if (corpus.empty()) GTEST_SKIP() << store::kNoCorpus;
  const char* const asked = std::getenv("PLUVO_EDIT_PROGRAMS");
  const int programs = asked == nullptr ? 1 : std::atoi(asked);
  for (const auto& path : corpus) {
    const base::Bytes bytes = store::bytesOf(path);
    for (int seed = 1; seed <= programs; ++seed) {
      SCOPED_TRACE(testing::Message() << path << " seed " << seed);
      std::string file(bytes.view.begin(), bytes.view.end());
      std::mt19937 random(static_cast<std::uint32_t>(seed));
      for (int generation = 0; generation < 3; ++generation) {
        OpenedFile opened = openAll(format, file);
        editAtRandom(opened, random, 1 + seed % 8);
        try {
          file = savedAndTheSame(format, opened);
        } catch (const errors::DocumentError& error) {
          EXPECT_EQ(error.problem(), errors::Problem::unsupported) << error.what();
        }
        if (seed == 1 && generation == 0)
          leave("edited-" + path.filename().string(), bytesOf(file), opened.document);
      }
    }
  }
}

/// Every file is written as it was read, and an edit leaves all bytes but those near it.
inline void expectCorpusKept(const Format& format, const char* extension,
                             const std::array<ByteBounds, kEditKinds.size()>& bounds) {
  const auto corpus = store::corpusOf({extension});
  if (corpus.empty()) GTEST_SKIP() << store::kNoCorpus;
  constexpr std::size_t kLarge = std::size_t{64} << 10U;
  for (const auto& path : corpus) {
    SCOPED_TRACE(path.string());
    const base::Bytes file = store::bytesOf(path);
    const std::string before(file.view.begin(), file.view.end());
    const OpenedFile opened = openAll(format, before);
    EXPECT_EQ(notation::damageOf(opened.model), "");
    EXPECT_EQ(opened.written(), before);
    leave(path.filename(), file, opened.document);
    if (file.view.size() > kLarge && leftIn() == nullptr) continue;
    expectOtherBytesKept(
        path, [&](std::string_view bytes) { return openAll(format, bytes); },
        [&](const OpenedFile& edited) { return savedAndTheSame(format, edited); }, bounds);
  }
}

}  // namespace pluvo::formats
