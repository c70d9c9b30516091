#include "storage/store/corpus.h"

#include "formats/doc/opened.h"
#include "formats/docx/random_edits.h"
#include "formats/left.h"
#include "storage/files/as_text.h"
#include "support/invariants.h"
#include "word_file.h"

#include <array>
#include <cstdlib>
#include <random>

namespace pluvo::doc {
namespace {

using document::Story;
using text::Position;

/// Some letters of a text that are shown.
std::vector<Position> lettersIn(const Story& story) {
  std::vector<Position> places;
  const std::u16string text = textOf(story);
  const auto length = static_cast<Position>(text.size());
  const auto isLetter = [](char16_t unit) { return (unit >= u'a' && unit <= u'z') || unit >= 0x400; };
  for (Position at = 0; at < length; at += 1 + length / 12) {
    Position place = at;
    while (place < length && (!isLetter(text[static_cast<std::size_t>(place)]) ||
                              story.visibility().valueAt(place) != text::kEverywhere))
      ++place;
    if (place < length && (places.empty() || places.back() < place)) places.push_back(place);
  }
  return places;
}

const struct {
  const char* name;
  void (*edit)(Story&, Position);
} kKinds[] = {{"before", [](Story& story, Position at) { story.insertBefore(at, u"N\u0416"); }},
              {"after", [](Story& story, Position at) { story.insertBehind(at + 1, u"N\u4E2D"); }},
              {"split", [](Story& story, Position at) { story.insertBefore(at, u"\r"); }},
              {"highlight",
               [](Story& story, Position at) {
                 story.highlight({at, std::min(at + 5, story.length())}, 7);
               }},
              {"plain",
               [](Story& story, Position at) {
                 story.highlight({at, std::min(at + 50, story.length())}, 0);
               }},
              {"replace",
               [](Story& story, Position at) {
                 story.replace({at, at + 1}, u"new", text::View::results);
               }},
              {"delete", [](Story& story, Position at) {
                 story.replace({at, at + 1}, u"", text::View::results);
               }}};

/// All streams but those of the text are as they were. In properties and pictures deleted text may be blank.
void expectOthersKept(const base::Bytes& before, const base::Bytes& after) {
  const cfb::CompoundFile old = cfb::CompoundFile::open(before);
  const cfb::CompoundFile now = cfb::CompoundFile::open(after);
  ASSERT_EQ(old.entries().size(), now.entries().size());
  const Streams streams = Streams::open(before, {});
  for (cfb::Id id = 0; id < old.entries().size(); ++id) {
    const cfb::Entry& entry = old.entries()[id];
    ASSERT_TRUE(entry.kind == now.entries()[id].kind && entry.name == now.entries()[id].name);
    if (entry.kind != cfb::Entry::Kind::stream || id == streams.ids.document || id == streams.ids.tables)
      continue;
    const base::Bytes bytes = old.read(id);
    const base::Bytes others = now.read(id);
    const bool mayBeBlanked =
        entry.storage == cfb::kRoot && (entry.name.front() == 5 || id == streams.ids.data);
    EXPECT_TRUE(std::ranges::equal(bytes.view, others.view, [&](std::uint8_t a, std::uint8_t b) {
      return a == b || (mayBeBlanked && (b == 0 || b == ' '));
    })) << id;
  }
}

TEST(Corpus, isEditedInEveryStory) {
  const auto corpus = store::corpusOf({"doc"});
  if (corpus.empty()) GTEST_SKIP() << store::kNoCorpus;
  for (const auto& path : corpus) {
    const base::Bytes file = store::bytesOf(path);
    if (!DocFormat().recognises(file.view, "doc")) continue;
    if (!files::refusalOf([&] { Opened probe(file); }).empty()) continue;
    for (const auto& [name, edit] : kKinds) {
      SCOPED_TRACE(path.string() + " " + name);
      base::Bytes current = file;
      for (int generation = 0; generation < 2; ++generation) {
        Opened opened(current);
        for (std::size_t i = 0; i < opened.document.count(); ++i) {
          Story& story = opened.document.story(i);
          const std::vector<Position> places = lettersIn(story);
          for (auto place = places.rbegin(); place != places.rend(); ++place)
            tryTo([&, edit = edit] { edit(story, *place); });
        }
        current = opened.saved();
        expectOthersKept(file, current);
        const std::string kind = generation == 0 ? name : std::string(name) + "2";
        formats::leave(kind + "-" + path.filename().string(), current, opened.document);
      }
    }
  }
}

TEST(Corpus, takesRandomEditsThatAreReadBack) {
  const auto corpus = store::corpusOf({"doc"});
  if (corpus.empty()) GTEST_SKIP() << store::kNoCorpus;
  const char* const asked = std::getenv("PLUVO_DOC_PROGRAMS");
  const int programs = asked == nullptr ? 1 : std::atoi(asked);
  for (const auto& path : corpus) {
    const base::Bytes original = store::bytesOf(path);
    if (!DocFormat().recognises(original.view, "doc")) continue;
    if (!files::refusalOf([&] { Opened probe(original); }).empty()) continue;
    for (int seed = 1; seed <= programs; ++seed) {
      SCOPED_TRACE(testing::Message() << path << " seed " << seed);
      base::Bytes file = original;
      std::mt19937 random(static_cast<std::uint32_t>(seed));
      const auto number = [&] { return static_cast<std::uint32_t>(random()); };
      for (int generation = 0; generation < 3; ++generation) {
        Opened opened(file);
        for (int i = 0; i < 10 * seed; ++i) {
          const std::size_t story = number() % 2 == 0 ? 0 : number() % opened.document.count();
          docx::editBySeed(opened.document.story(story), {number(), number(), number(), number()});
        }
        file = opened.saved();
        expectOthersKept(original, file);
      }
      if (seed == 1) formats::leave("random-" + path.filename().string(), file, Opened(file).document);
    }
  }
}

}  // namespace
}  // namespace pluvo::doc
