#include "formats/doc/doc_builder.h"
#include "formats/doc/opened.h"
#include "piece_text.h"
#include "storage/files/as_text.h"
#include "word_file.h"

#include <array>
#include <functional>
#include <tuple>

namespace pluvo::doc {
namespace {

using text::Position;

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

/// Pictures and what fields keep lie in the Data stream, and characters may share them.
TEST(DocFormat, BlanksWhatOnlyDeletedCharactersStandFor) {
  const struct {
    std::u16string deleted;
    const char* left;
    const char* stories;
  } cases[] = {{u"a\1", "123", "\1b\1{X \1|filled}¶ "},
               {u"\1b", "13", "a\1\1{X \1|filled}¶ "},
               {u"a\1\1b\1", "3", "{X \1|filled}¶ "},
               {u"\1\1b", "13", "a\1{X \1|filled}¶ "},
               {u"\x13X \1\x14"
                u"filled\x15",
                "12", "a\1\1b\1¶ "},
               {u"fill", "123", "a\1\1b\1{X \1|ed}¶ "}};
  for (const auto& [deleted, left, stories] : cases) {
    DocBuilder builder;
    std::array<std::uint32_t, 3> places{};
    for (std::size_t i = 0; i < 3; ++i) {
      places[i] = static_cast<std::uint32_t>(builder.data.size());
      builder.data += number(std::uint32_t{80}) + number(std::uint16_t{0x44}) +
                      std::string(73, static_cast<char>('1' + i)) + "s";
    }
    builder.append(u'a');
    builder.special(1, property(code::kPicture, places[0]));
    builder.special(1, property(code::kPicture, places[1]));
    builder.append(u'b');
    builder.special(1, property(code::kPicture, places[0]));
    builder.beginField({});
    for (const char16_t unit : {u'X', u' '}) builder.append(unit);
    builder.special(1, on(code::kData) + property(code::kPicture, places[2]));
    builder.separateField({});
    for (const char16_t unit : {u'f', u'i', u'l', u'l', u'e', u'd'}) builder.append(unit);
    builder.endField({});
    builder.append(u'\r');
    Opened opened(files::bytesOf(builder.build()));
    replace(opened, 0, deleted);
    const base::Bytes file = opened.saved();
    EXPECT_EQ(storiesOf(Opened(file)), stories);
    std::string kept;
    for (std::size_t i = 0; i < 3; ++i) {
      const std::string whole = builder.data.substr(places[i], 80);
      const std::string now(files::textOf(Streams::open(file, {}).data.view.subspan(places[i], 80)));
      EXPECT_TRUE(now == whole || now == std::string(80, '\0'));
      if (now == whole) kept += static_cast<char>('1' + i);
    }
    EXPECT_EQ(kept, left);
  }
}

/// A comment's answers and the mark of what it is about go, or find their way.
TEST(DocFormat, LosesWhatBelongsToComments) {
  using Reply = std::array<std::uint32_t, 2>;  // its depth, and how far away the comment is that it answers
  const struct {
    std::u16string deleted;
    std::vector<Reply> answers;
    std::vector<std::uint32_t> tags;
  } cases[] = {{u"a\5", {{0, 0}, {0, 0}}, {8, 9}},
               {u"b\5", {{0, 0}, {1, static_cast<std::uint32_t>(-1)}}, {7, 9}},
               {u"b\5c\5", {{0, 0}}, {7}},
               {u"a\5b\5c\5", {}, {}}};
  for (const auto& [deleted, answers, tags] : cases) {
    DocBuilder b;
    std::string marks;
    std::string replies;
    std::string names = number(std::uint16_t{0xFFFF}) + number(std::uint16_t{3}) + number(std::uint16_t{10});
    std::string begins;
    for (std::uint32_t i = 0; i < 3; ++i) {
      b.append(static_cast<char16_t>(u'a' + i)), b.special(5);
      marks += std::string(26, '\0') + number(7 + i);
      replies += std::string(6, '\0') + number(std::uint32_t{i > 0}) + number(0U - i) + std::string(4, '\0');
      names += std::string("\0\0\0\1", 4) + number(7 + i) + number(0U);
      begins += number(i);
    }
    b.notation("z¶");
    b.begin(Part::comments);
    for (int i = 0; i < 3; ++i) b.special(5), b.notation("x¶");
    b.append(u'\r');
    b.tables[Table::commentReferences] = b.places({1, 3, 5, 8}, marks);
    b.tables[Table::commentTexts] = b.places({0, 3, 6, 9, 10});
    b.tables[Table{112}] = replies;
    b.tables[Table{37}] = names;
    b.tables[Table{42}] = b.places({0, 2, 4, 20}, begins);
    b.tables[Table{43}] = b.places({1, 3, 5, 20});
    Opened opened(files::bytesOf(b.build()));
    replace(opened, 0, deleted);
    const Streams saved = Streams::open(opened.saved(), {});
    const Text text(saved, 0);
    std::vector<Reply> left;
    for (base::ByteSpan each = text.in(Table{112}); !each.empty(); each = each.subspan(18))
      left.push_back({base::get32(each, 6), base::get32(each, 10)});
    EXPECT_EQ(left, answers);
    std::vector<std::uint32_t> leftTags;
    const base::ByteSpan allNames = text.in(Table{37});
    for (std::size_t at = 6; at < allNames.size(); at += 12)
      leftTags.push_back(base::get32(allNames, at + 4));
    EXPECT_EQ(leftTags, tags);
  }
}

/// What stands for nothing is no hindrance, and what stands for something is kept.
TEST(DocFormat, HighlightsTextWithAnyShortPropertyOfItsPiece) {
  for (const auto& [isShort, whole] :
       {std::pair<int, std::string>{0x59, property(0x0839, '\1')}, {0x5F, ""}}) {
    DocBuilder builder;
    builder.prm = static_cast<std::uint16_t>(1 << 8 | isShort << 1);
    builder.append(u'a');
    builder.prm = 0;
    builder.append(u'\r');
    Opened opened(files::bytesOf(builder.build()));
    opened.document.mainText().highlight({0, 1}, 7);
    const Streams saved = Streams::open(opened.saved(), {});
    const Text text(saved, 0);
    std::array<std::uint8_t, 3> room{};
    const base::ByteSpan properties = text.pieces.properties(text.pieces.pieces()[0].prm, room);
    EXPECT_EQ(files::textOf(properties), whole + property(code::kHighlight, '\7'));
  }
}

TEST(DocFormat, RefusesEditsThatCannotBeSavedBeforehand) {
  const struct {
    errors::Problem problem;
    std::function<void(DocBuilder&)> build;
  } cases[] = {{errors::Problem::signature,
                [](DocBuilder& builder) {
                  builder.streams = {{"_signatures", "x"}};
                }},
               {errors::Problem::damaged, [](DocBuilder& builder) { builder.tables[Table{22}] = "ranges"; }}};
  for (const auto& [problem, build] : cases) {
    DocBuilder builder;
    builder.notation("text¶");
    build(builder);
    Opened opened(files::bytesOf(builder.build()));
    try {
      replace(opened, 0, u"text");
      ADD_FAILURE();
    } catch (const errors::Fault& refusal) {
      EXPECT_EQ(refusal.problem, problem);
    }
  }
}

}  // namespace
}  // namespace pluvo::doc
