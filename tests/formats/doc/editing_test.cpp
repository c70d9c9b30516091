#include "doc/doc_format.h"
#include "document/same_document.h"
#include "errors/fault.h"
#include "formats/doc/doc_builder.h"
#include "formats/docx/random_edits.h"
#include "formats/left.h"
#include "piece_text.h"
#include "storage/files/as_text.h"
#include "storage/store/corpus.h"
#include "support/invariants.h"
#include "support/notation.h"
#include "word_file.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <functional>
#include <random>
#include <tuple>

namespace pluvo::doc {
namespace {

using document::Story;
using text::Position;

/// A document with all its stories.
struct Opened {
  explicit Opened(const base::Bytes& file, bool allStories = true)
      : Opened(DocFormat().read(file, {.allStories = allStories})) {}
  explicit Opened(formats::Opened opened)
      : source(std::move(opened.source)), document(std::move(opened.stories), source) {}

  /// Writes it, and reads it again: the same document, that is written as it was read.
  base::Bytes saved() const {
    base::MemoryOutput out;
    source->write(document, out);
    base::Bytes file = base::Bytes::of(std::move(out.bytes()));
    formats::Opened again = DocFormat().read(file, {.allStories = true});
    EXPECT_EQ(document::differenceOf(document.snapshot(), again.stories, [] {}), "");
    return file;
  }

  std::shared_ptr<const formats::Source> source;
  document::Document document;
};

std::u16string textOf(const Story& story) { return story.text().substring(0, story.length()); }

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

/// Whether the edit is possible there.
bool tryTo(const std::function<void()>& edit) {
  try {
    edit();
    return true;
  } catch (const errors::Fault&) {
    return false;
  }
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

/// What there is of each story.
std::string storiesOf(const Opened& opened) {
  std::string all;
  for (std::size_t i = 0; i < opened.document.count(); ++i)
    if (!opened.document.isGone(i)) all += notation::print(opened.document.story(i)) + " ";
  return all;
}

/// Deletes a text of a story, or puts another in its place.
void replace(Opened& opened, std::size_t story, std::u16string_view old, std::u16string_view text = u"") {
  Story& model = opened.document.story(story);
  const auto at = static_cast<Position>(textOf(model).find(old));
  ASSERT_GE(at, 0);
  model.replace({at, at + static_cast<Position>(old.size())}, text, text::View::results);
}

TEST(DocFormat, EditsTextsBesideMainText) {
  const struct {
    std::vector<std::tuple<std::size_t, std::u16string, std::u16string>> edits;
    const char* stories;
  } cases[] = {{{{0, u"a", u"longer"},
                 {1, u"head", u"h"},
                 {3, u"note", u"a note"},
                 {4, u"said", u"s"},
                 {5, u"box", u"b"}},
                "longer\2<h:\5>\x08¶ h¶ \x08¶ a note<7:!>¶ <h:\5>s¶ b¶ ⟦in¦‖⟧¶ "},
               {{{0, u"\2", u""}}, "a<h:\5>\x08¶ head¶ \x08¶ <h:\5>said¶ box¶ ⟦in¦‖⟧¶ "},
               {{{0, u"\5", u""}}, "a\2\x08¶ head¶ \x08¶ note<7:!>¶ box¶ ⟦in¦‖⟧¶ "},
               {{{0, u"\2\5", u"x"}, {5, u"box", u"y"}}, "ax\x08¶ head¶ \x08¶ y¶ ⟦in¦‖⟧¶ "}};
  for (const auto& [edits, stories] : cases) {
    Opened opened(files::bytesOf(withStories().build()));
    for (const auto& [story, old, text] : edits) replace(opened, story, old, text);
    Opened again(opened.saved());
    EXPECT_EQ(storiesOf(again), stories);
    again.document.mainText().insertBefore(0, u"once more");
    again.saved();
  }
  Opened opened(files::bytesOf(withStories().build()));
  EXPECT_FALSE(tryTo([&] { replace(opened, 0, u"\x08"); }));
  EXPECT_FALSE(tryTo([&] { replace(opened, 4, u"\5"); }));
}

/// What goes with main text goes where main text alone was read, too.
TEST(DocFormat, LosesNotesOfMainTextAlone) {
  Opened opened(files::bytesOf(withStories().build()), false);
  replace(opened, 0, u"\2\5");
  base::MemoryOutput out;
  opened.source->write(opened.document, out);
  EXPECT_EQ(storiesOf(Opened(base::Bytes::of(std::move(out.bytes())))), "a\x08¶ head¶ \x08¶ box¶ ⟦in¦‖⟧¶ ");
}

/// The glossary of a template has an information block of its own, and its text in the same stream.
TEST(DocFormat, KeepsTheGlossaryOfATemplate) {
  DocBuilder builder;
  builder.notation("entry and text¶");
  builder.flags |= Fib::kTemplate;
  const cfb::CompoundFile built = cfb::CompoundFile::open(files::bytesOf(builder.build()));
  std::string document = files::textOf(built.read(*built.stream("WordDocument")).view);
  const std::string block =
      document.substr(0, Fib::read(built.read(*built.stream("WordDocument")).view).textFrom());
  document.resize((document.size() + 511) / 512 * 512);
  const auto at = static_cast<std::uint16_t>(document.size() / 512);
  document += block;
  document.replace(8, 2, number(at));
  const auto tables = files::textOf(built.read(*built.stream("1Table")).view);
  const base::Bytes file =
      files::bytesOf(cfb::compoundFile({{"WordDocument", document}, {"1Table", tables}}));
  Opened opened(file);
  replace(opened, 0, u"entry", u"word");
  const Streams saved = Streams::open(opened.saved(), {});
  const Text glossary(saved, at * std::size_t{512});
  EXPECT_EQ(glossary.pieces.length(), 15);
  EXPECT_EQ(glossary.fib.extent(Table::characterPages).at,
            Text(saved, 0).fib.extent(Table::characterPages).at);
  EXPECT_EQ(unitAt(glossary.pieces, glossary.document, 0), u'e');
}

/// The headers of a section whose break goes go with it, unless the next section has them from there.
TEST(DocFormat, LosesHeadersWithTheirSections) {
  using Texts = std::array<const char*, 6>;
  const struct {
    std::array<Texts, 3> sections;
    std::u16string goes;
    const char* stories;
  } cases[] = {{{{{"", "a¶¶"}, {"", "b¶¶"}, {"", "c¶¶"}}}, u"\f2", "1§3¶ b¶ c¶ "},
               {{{{"", "a¶¶"}, {"", "", "", ""}, {"", "c¶¶"}}}, u"\f2", "1§3¶ a¶ c¶ "},
               {{{{"", "a¶¶"}, {"", "", "", "b¶¶"}, {"", "", "", "c¶¶"}}}, u"1\f2\f", "3¶ a¶ c¶ "},
               {{{{"", "", "", "a¶¶"}, {"", "b¶¶"}, {"", ""}}}, u"\f2", ""}};
  for (const auto& [sections, goes, stories] : cases) {
    DocBuilder builder;
    builder.notation("1§2§3¶");
    builder.begin(Part::headers);
    std::vector<Position> places(6);
    for (const Texts& texts : sections) {
      for (const char* const text : texts) {
        places.push_back(builder.length());
        if (text != nullptr && *text != 0) builder.notation(text);
      }
    }
    builder.append(u'\r');
    places.push_back(builder.length() - 1);
    places.push_back(builder.length());
    builder.tables[Table::headerTexts] = DocBuilder::places(places);
    Opened opened(files::bytesOf(builder.build()));
    if (*stories == 0) {
      EXPECT_FALSE(tryTo([&, goes = goes] { replace(opened, 0, goes); }));
      continue;
    }
    replace(opened, 0, goes);
    EXPECT_EQ(storiesOf(Opened(opened.saved())), stories);
  }
}

TEST(DocFormat, KeepsNothingOfDeletedText) {
  DocBuilder builder;
  builder.notation("before secret word, {DATE|secret word} after¶");
  builder.earlier = "x secret w" + std::string("s\0e\0c\0r\0e\0t\0", 12);
  builder.flags |= Fib::kTemplate;
  base::Bytes file = files::bytesOf(builder.build());
  for (const std::u16string secret : {u"secret word, ", u"secret word", u"new secret"}) {
    Opened opened(file);
    replace(opened, 0, secret, secret.starts_with(u'n') ? u"" : u"new secret");
    file = opened.saved();
  }
  Opened opened(file);
  replace(opened, 0, u"new secret");
  const base::Bytes last = opened.saved();
  const std::string bytes = files::textOf(last.view);
  EXPECT_EQ(bytes.find("secret"), bytes.npos);
  EXPECT_EQ(bytes.find(std::string("s\0e\0c\0r", 7)), bytes.npos);
  const cfb::CompoundFile streams = cfb::CompoundFile::open(last);
  EXPECT_TRUE(Fib::read(streams.read(*streams.stream("WordDocument")).view).has(Fib::kTemplate));
}

TEST(DocFormat, LeavesSignedDocumentsAlone) {
  DocBuilder builder;
  builder.notation("text¶");
  builder.streams = {{"_signatures", "x"}};
  Opened opened(files::bytesOf(builder.build()));
  try {
    replace(opened, 0, u"text");
    FAIL();
  } catch (const errors::Fault& refusal) {
    EXPECT_EQ(refusal.problem, errors::Problem::signature);
  }
}

TEST(Corpus, isEditedInEveryStory) {
  const auto corpus = store::corpusOf({"doc"});
  if (corpus.empty()) GTEST_SKIP() << store::kNoCorpus;
  for (const auto& path : corpus) {
    const base::Bytes file = store::bytesOf(path);
    if (!DocFormat().recognises(file.view, "doc")) continue;
    if (!files::refusalOf([&] { Opened probe(file); }).empty()) continue;
    formats::leave("original-" + path.filename().string(), file, Opened(file).document);
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
      }
      if (seed == 1) formats::leave("random-" + path.filename().string(), file, Opened(file).document);
    }
  }
}

}  // namespace
}  // namespace pluvo::doc
