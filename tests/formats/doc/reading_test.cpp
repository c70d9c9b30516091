#include "doc/doc_format.h"
#include "document/document.h"
#include "encryption/kept_password.h"
#include "formats/doc/doc_builder.h"
#include "formats/left.h"
#include "storage/files/as_text.h"
#include "storage/store/corpus.h"
#include "support/invariants.h"
#include "support/notation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

namespace pluvo::doc {
namespace {

using formats::Opaque;
using formats::OtherStory;
using formats::Unreached;
using testing::ElementsAre;
using Look = document::Look;

formats::Opened open(const std::string& file, bool allStories = false) {
  formats::Hint hint;
  hint.allStories = allStories;
  return DocFormat().read(files::bytesOf(file), hint);
}

std::string read(const std::string& file) {
  formats::Opened opened = open(file);
  const document::Document document(std::move(opened.stories), opened.source);
  EXPECT_EQ(notation::damageOf(document.mainText()), "");
  EXPECT_EQ(opened.source->appearance().front().length(), document.mainText().length());
  base::MemoryOutput out;
  opened.source->write(document, out);
  EXPECT_EQ(files::textOf(out.bytes()), file);
  return notation::print(document.mainText());
}

TEST(DocFormat, ReadsTextThroughItsPieces) {
  for (const char* const text :
       {"¶", "plain¶", "été’s <7:marked>, <h:hidden> and <h7:both>¶Привет 中文😀<2:€>¶",
        "a\vb\tc\fd\036e¶§f\016g¶§¶", "⟦a¶b¦<3:c>¦‖d¦‖⟧e¶⟦⟦f¦‖⟧¶g¦‖⟧¶", "a¶⟦⟦⟦x¦y¦‖⟧¶¦‖⟧¶¦‖⟧¶",
        "{PAGE|1}x{A{B|C}|D}{E}¶⟦{F|¶⟦g¦‖⟧h¶}¦‖⟧¶", "<h:a{b|c}>d{e|<h:f>}¶"}) {
    DocBuilder builder;
    builder.notation(text);
    EXPECT_EQ(read(builder.build()), text);
  }
}

TEST(DocFormat, ReadsWhatStandsForOtherThings) {
  using B = DocBuilder;
  const std::string bold = property(0x0835, std::uint8_t{0x81});
  const std::pair<std::function<void(B&)>, const char*> cases[] = {
      {[](B& b) { b.special(1), b.special(2), b.special(5), b.special(8), b.append(5); },
       "\1\2<h:\5>\x08\5¶"},
      {[](B& b) { b.special(u'(', property(code::kSymbol, 0xF0610001U)), b.append(u'('); }, "\uF061(¶"},
      // Marks that belong to no field, and one that is none.
      {[](B& b) { b.special(0x13), b.append(0x13), b.special(0x15), b.special(0x15); },
       "{\uFFFD}<h:\uFFFD>¶"},
      {[](B& b) { b.special(0x14), b.special(0x13), b.special(0x14), b.special(0x14); },
       "<h:\uFFFD\uFFFD\uFFFD\uFFFD>¶"},
      // Cells and rows that make no row are paragraphs.
      {[](B& b) { b.beginTable(), b.append(u'a'), b.cellMark({}), b.endTable(), b.append(u'b'); }, "a¶b¶"},
      {[](B& b) { b.beginTable(), b.append(u'a'), b.rowMark({}), b.endTable(), b.append(u'b'); }, "a¶b¶"},
      {[](B& b) { b.append(7), b.append(u'b'); }, "¶b¶"},
      {[](B& b) { b.beginTable(), b.append(u'a'), b.append(u'\r'), b.endTable(), b.append(u'b'); }, "a¶b¶"},
      // Properties of pieces, short and long, over those of the text.
      {[](B& b) {
         b.characters = property(code::kHighlight, std::uint8_t{3}), b.append(u'a'),
         b.prm = 7 << 8U | 0x4D << 1U, b.append(u'b'), b.prm = 0, b.append(u'c'), b.characters = "";
       },
       "<3:a><7:b><3:c>¶"},
      {[](B& b) {
         b.groups = "\1" + number(std::uint16_t{3}) + on(code::kHidden), b.prm = 1, b.append(u'a'), b.prm = 3,
         b.append(u'b'), b.prm = 0;
       },
       "<h:a>b¶"},
      // Styles: paragraph 1 is hidden, based on 0; characters 2 turn that round, 3 is based on itself.
      {[](B& b) {
         b.style = 1, b.append(u'a'), b.characters = property(code::kCharacterStyle, std::uint16_t{2}),
         b.append(u'b'), b.characters = property(code::kCharacterStyle, std::uint16_t{3}), b.append(u'c'),
         b.characters = property(code::kHidden, std::uint8_t{0x81}), b.append(u'd'), b.characters = "",
         b.append(u'\r'), b.style = 0;
       },
       "<h:a>b<h:c>d<h:¶>¶"},
      // Paragraph properties that are too long for a page.
      {[](B& b) {
         b.data = "ab" + number(std::uint16_t{6}) + on(code::kInTable) + on(code::kRowEnd), b.append(u'a'),
         b.beginTable(), b.cellMark({}), b.endTable(), b.paragraphs = property(code::kHuge, 2U),
         b.append(u'\r'), b.paragraphs = "";
       },
       "a¶¶¶"},
  };
  for (const auto& [fill, text] : cases) {
    DocBuilder builder;
    const auto style = [](std::uint16_t kindAndBase, const std::string& groups) {
      const std::string bytes = number(std::uint16_t{0xFFE}) + number(kindAndBase) + std::string(6, '\0') +
                                number(std::uint16_t{1}) + "x" + std::string(3, '\0') + groups;
      const std::string even = bytes.size() % 2 == 0 ? "" : std::string(1, '\0');
      return number(static_cast<std::uint16_t>(bytes.size())) + bytes + even;
    };
    const std::string empty = number(std::uint16_t{2}) + number(std::uint16_t{0});
    builder.tables[Table::styles] =
        number(std::uint16_t{18}) + number(std::uint16_t{4}) + number(std::uint16_t{10}) +
        std::string(14, '\0') + style(0xFFF1, empty + number(std::uint16_t{0})) +
        style(0x0001, empty + number(std::uint16_t{3}) + on(code::kHidden)) +
        style(0xFFF2, number(std::uint16_t{3}) + property(code::kHidden, std::uint8_t{0x81})) +
        style(0x0032, number(std::uint16_t{0}));
    fill(builder);
    builder.append(u'\r');
    EXPECT_EQ(read(builder.build()), text);
  }
}

/// Other readers show something else there: they compute fields anew, number lists and notes, write capitals,
/// or show hidden text.
TEST(DocFormat, ReadsWhatTheFileHoldsWhereOthersMakeItUp) {
  using B = DocBuilder;
  const auto as = [](const std::string& look) {
    return [look](B& b) { b.characters = look, b.append(u'x'), b.characters = "", b.append(u'\r'); };
  };
  const auto notation = [](const char* text) { return [text](B& b) { b.notation(text); }; };
  const struct {
    const char* cause;
    std::function<void(B&)> fill;
    std::u16string text;
  } cases[] = {
      {"a file name computed anew", notation("{FILENAME|old.doc}"), u"old.doc"},
      {"a page number computed anew", notation("- {PAGE|19} -"), u"- 19 -"},
      {"a date computed anew", notation("{DATE|4/26/2006}"), u"4/26/2006"},
      {"numbers and contents computed anew", notation("{SEQ x|A}{TOC|1¶2}{REF b|c}"), u"A1\r2c"},
      {"a number of a sequence without a name", notation("{SEQ \"\"|A}"), u"A"},
      {"a paragraph in a frame",
       [](B& b) {
         b.paragraphs = property(0x8418, std::uint16_t{9}), b.notation("{PAGE|2}¶");
         b.paragraphs = "";
         b.append(u'\r');
       },
       u"2\r"},
      {"a dropped capital",
       [](B& b) {
         b.paragraphs = property(0x442C, std::uint16_t{26}), b.notation("A¶");
         b.paragraphs = "";
         b.notation("n¶");
       },
       u"A\rn"},
      {"a text of another file", notation("{INCLUDETEXT \"f\"|kept}"), u"kept"},
      {"a field that keeps no result, a formula's phonetic guide too",
       notation("a{MACROBUTTON x y}{EQ \\o(z)}{TC w}b"), u"ab"},
      {"a field whose marks lost their formatting",
       [](B& b) { b.append(0x13), b.append(u'P'), b.append(0x15), b.append(u'\r'); }, u"\uFFFDP\uFFFD"},
      {"half a field", [](B& b) { b.special(0x14), b.append(u'b'), b.special(0x15), b.append(u'\r'); }, u"b"},
      {"the number of a list",
       [](B& b) { b.paragraphs = property(code::kList, std::uint16_t{1}), b.append(u'\r'); }, u""},
      {"the number of a note", [](B& b) { b.special(2), b.append(u'\r'); }, u"\2"},
      {"capitals", as(on(0x083B)), u"x"},
      {"hidden text", as(on(code::kHidden)), u""},
      {"deleted text", as(on(code::kDeleted)), u"x"},
      {"a symbol", [](B& b) { b.special(u'(', property(code::kSymbol, 0xF0B70001U)), b.append(u'\r'); },
       u"\uF0B7"},
  };
  for (const auto& [cause, fill, text] : cases) {
    SCOPED_TRACE(cause);
    DocBuilder builder;
    fill(builder);
    formats::Opened opened = open(builder.build());
    const document::Story story(std::move(opened.stories.front()));
    EXPECT_EQ(story.visibleText({0, story.length()}, text::View::results), text + u"\r");
  }
}

/// Gathers the events, each in a line.
class Told final : public formats::OtherTexts {
 public:
  void story(OtherStory kind, document::Content content) override {
    lines.push_back(std::to_string(static_cast<int>(kind)) + " " +
                    notation::print(document::Story(std::move(content))));
  }
  void unreached(Unreached kind, std::u16string_view text) override {
    lines.push_back("u" + std::to_string(static_cast<int>(kind)) + " " + base::utf8(text));
  }
  void notLookedInto(Opaque kind) override { lines.push_back("o" + std::to_string(static_cast<int>(kind))); }
  void damaged(std::string_view part, std::string_view) override {
    lines.push_back("d " + std::string(part));
  }

  std::vector<std::string> lines;
};

std::string unread(Unreached kind, const std::string& text) {
  return "u" + std::to_string(static_cast<int>(kind)) + " " + text;
}

std::string wide(std::u16string_view text) {
  std::string bytes;
  for (const char16_t unit : text) bytes += number(unit);
  return bytes;
}

/// Each story with its kind and anchor.
std::vector<std::string> storiesIn(const std::string& file) {
  formats::Opened opened = open(file, true);
  std::vector<std::string> told;
  for (document::Content& story : opened.stories) {
    std::string anchor = " ";
    for (const document::StoryAnchor& each : story.anchors)
      anchor += std::to_string(each.story) + ":" + std::to_string(each.position);
    const document::Story model(std::move(story));
    EXPECT_EQ(notation::damageOf(model), "");
    told.push_back(std::to_string(model.kind()) + anchor + " " + notation::print(model));
  }
  return told;
}

TEST(DocFormat, GivesEveryStoryWithItsAnchor) {
  const std::string file = withStories().build();
  EXPECT_EQ(open(file).stories.size(), 1U);
  EXPECT_THAT(storiesIn(file), ElementsAre("1  a\2<h:\5>\x08¶", "7  head¶", "9  \x08¶", "2 0:1 note<7:!>¶",
                                           "4 0:2 <h:\5>said¶", "5 0:3 box¶", "5 2:0 ⟦in¦‖⟧¶"));
}

TEST(DocFormat, HidesNoTextThatADamagedTableDoesNotName) {
  const struct {
    Table table;
    std::vector<text::Position> places;
    const char* story;
  } cases[] = {{Table::headerTexts, {}, "7  head¶¶\x08¶¶"},
               {Table::headerTexts, {0, 0, 0, 0, 0, 0, 0, 0, -6, 6, 9, 9, 9, 10}, "7  head¶¶"},
               {Table::headerTexts, {0, 0, 0, 0, 0, 0, 3, 3, 6, 6, 9, 9, 9, 10}, "7  hea¶"},
               {Table::headerTexts, {1, 1, 1, 1, 1, 1, 6, 6, 6, 6, 9, 9, 9, 10}, "7  head¶¶"},
               {Table::headerTexts, {0, 0, 0, 0, 0, 0, 0, 0, 99, 6, 9, 9, 9, 10}, "7  head¶¶"},
               // Of even pages, which no setting tells from odd ones.
               {Table::headerTexts, {0, 0, 0, 0, 0, 0, 0, 6, 6, 6, 9, 9, 9, 10}, "6  head¶"},
               {Table::boxTexts, {}, "5  box¶spare¶¶"}};
  for (const auto& [table, places, story] : cases) {
    DocBuilder builder = withStories();
    builder.tables[table] = DocBuilder::places(places);
    EXPECT_THAT(storiesIn(builder.build()), testing::Contains(story));
  }
}

TEST(DocFormat, TellsWhatNoRequestReaches) {
  DocBuilder builder = withStories();
  const auto string = [](const std::string& text) {
    return number(0x1EU) + number(static_cast<std::uint32_t>(text.size() + 1)) + text +
           std::string(4 - text.size() % 4, '\0');
  };
  const std::string set = number(0U) + number(3U) + number(2U) + number(32U) + number(1U) + number(48U) +
                          number(17U) + number(56U);
  builder.streams = {{"\005SummaryInformation", std::string(24, '\0') + number(1U) + std::string(16, '\0') +
                                                    number(48U) + set + string("\xD2itle") + number(2U) +
                                                    number(1251U) + number(0x47U) + number(0U)},
                     {"ObjectPool", ""},
                     {"ObjectPool/_1", ""},
                     {"ObjectPool/_1/Contents", "x"},
                     {"Macros", ""},
                     {"Macros/VBA", "x"}};
  const auto xst = [](std::u16string_view text) {
    return number(static_cast<std::uint16_t>(text.size())) + wide(text);
  };
  builder.tables[Table::savedBy] = "\xFF\xFF" + number(std::uint16_t{1}) + number(std::uint16_t{0}) +
                                   number(std::uint16_t{3}) + wide(u"A:\\");
  builder.tables[Table::variables] = "\xFF\xFF" + number(std::uint16_t{1}) + number(std::uint16_t{4}) +
                                     xst(u"name") + "abcd" + xst(u"value");
  const std::string art = wide(u"Art") + std::string(2, '\0');
  builder.tables[Table::drawings] = number(std::uint16_t{0xF}) + number(std::uint16_t{0xF000}) + number(99U) +
                                    '\0' + number(std::uint16_t{0x13}) + number(std::uint16_t{0xF00B}) +
                                    number(6U + 8U) + number(std::uint16_t{0x80C0}) + number(8U) + art;
  builder.earlier = "deleted";
  std::string file = builder.build();
  formats::Opened opened = open(file);
  const document::Document document(std::move(opened.stories), opened.source);
  Told told;
  opened.source->tellOtherTexts(document.mainText(), told);
  EXPECT_THAT(told.lines, testing::IsSupersetOf(
                              {std::string("0 head¶"), std::string("1 \x08¶"), std::string("2 note<7:!>¶"),
                               std::string("4 <h:\5>said¶"), std::string("5 box¶"), std::string("5 ⟦in¦‖⟧¶"),
                               unread(Unreached::wordArt, "Art"), unread(Unreached::properties, "Тitle"),
                               unread(Unreached::properties, "A:\\"), unread(Unreached::variables, "value"),
                               unread(Unreached::earlier, "deleted"), std::string("o0"), std::string("o2"),
                               std::string("o3")}));
}

std::string refusalOf(const std::string& file) {
  return files::refusalOf([&] { open(file, true); });
}

TEST(DocFormat, SaysWhatItRefuses) {
  using B = DocBuilder;
  const std::pair<std::function<void(B&)>, const char*> cases[] = {
      {[](B& b) { b.flags = 0; }, "damaged: .*stream of tables is missing"},
      {[](B& b) { b.version = 0x65; }, "unsupported: .*Word 6"},
      {[](B& b) { b.kind = 0xA5DC, b.version = 0x68; }, "unsupported: .*Word 95"},
      {[](B& b) { b.kind = 0x1234; }, "damaged: .*no such block"},
      {[](B& b) {
         b.streams = {{"\006DataSpaces", ""}};
       },
       "unsupported: .*[Rr]ights"},
      {[](B& b) { b.groups = "\1\xFF\xFF"; }, "damaged: .*pieces"},
      {[](B& b) { b.groups = "\2"; }, "damaged: .*pieces"},
  };
  for (const auto& [spoil, says] : cases) {
    DocBuilder builder;
    builder.notation("text¶");
    spoil(builder);
    EXPECT_THAT(refusalOf(builder.build()), testing::ContainsRegex("^" + std::string(says)));
  }
  const auto withByte = [](std::size_t at, char value) {
    DocBuilder builder;
    builder.notation("text¶");
    std::string file = builder.build();
    file[file.find("\xEC\xA5") + at] = value;
    return file;
  };
  constexpr std::size_t kCharacterPages = 0x9A + 12 * 8;
  EXPECT_THAT(refusalOf(withByte(kCharacterPages, 12)), testing::HasSubstr("formatting is damaged"));
  EXPECT_THAT(refusalOf(withByte(kCharacterPages + 4, 4)), testing::HasSubstr("formatting is missing"));
  const std::pair<std::string, const char*> others[] = {
      {cfb::compoundFile({{"Workbook", ""}, {"MBD", ""}, {"MBD/WordDocument", ""}}),
       "unsupported: .*Excel.*open it in the program"},
      {cfb::compoundFile({{"a", ""}}), "unsupported: .*without a Word document"},
      {std::string("\xDB\xA5\x2D\0", 4), "unsupported: .*Word 2 "},
      {std::string("\x31\xBE\0\0\0\xAB", 6), "unsupported: .*DOS"},
      {"<?xml version='1.0'?><w:wordDocument/>", "unsupported: .*one XML file"},
      {"MIME-Version: 1.0\r\n", "unsupported: .*web archive"},
      {"<html>", "unsupported: .*web page"}};
  for (const auto& [file, says] : others) {
    EXPECT_TRUE(DocFormat().recognises(files::bytesOf(file).view, "doc"));
    EXPECT_THAT(refusalOf(file), testing::ContainsRegex("^" + std::string(says)));
  }
  EXPECT_FALSE(DocFormat().recognises(files::bytesOf("plain text").view, "doc"));
}

TEST(DocFormat, TellsProtection) {
  const std::uint32_t key = encryption::keyOf(u"secret");
  const struct {
    std::uint32_t flags;
    std::uint32_t key;
    bool meansReading;
    int type;  ///< -1 for none
    bool isTemplate = false;
  } cases[] = {{0, 0, false, -1},          {0, 0, false, -1, true},  {1U << 25U, 0, false, 2},
               {1U << 25U, key, false, 2}, {1U << 20U, 0, false, 1}, {1U << 20U, 0, true, 3},
               {1U << 30U, key, false, 0}};
  for (const auto& [flags, stored, meansReading, type, isTemplate] : cases) {
    DocBuilder builder;
    builder.notation("text¶");
    builder.flags |= Fib::kReadOnlyRecommended;
    if (isTemplate) builder.flags |= Fib::kTemplate;
    std::string properties(600, '\0');
    properties.replace(4, 4, number(flags)).replace(0x4E, 4, number(stored));
    properties[594] = meansReading ? 1 : 0;
    builder.tables[Table::properties] = properties;
    const formats::Opened opened = open(builder.build());
    ASSERT_EQ(opened.protection ? static_cast<int>(opened.protection->type) : -1, type);
    ASSERT_TRUE(opened.reservation) << "it recommends to be read";
    EXPECT_FALSE(opened.reservation->isLiftedBy);
    EXPECT_EQ(opened.isTemplate, isTemplate);
    if (stored == 0) continue;
    EXPECT_TRUE(opened.protection->isLiftedBy(u"secret"));
    EXPECT_FALSE(opened.protection->isLiftedBy(u"x"));
  }
  DocBuilder builder;
  builder.notation("text¶");
  builder.flags |= Fib::kWriteReservation;
  builder.tables[Table::titles] = "\xFF\xFF" + number(std::uint16_t{18}) + number(std::uint16_t{0}) +
                                  std::string(std::size_t{17} * 2, '\0') + number(std::uint16_t{2}) +
                                  wide(u"ab");
  const auto reservation = open(builder.build()).reservation;
  ASSERT_TRUE(reservation);
  EXPECT_TRUE(reservation->isLiftedBy(u"ab"));
  EXPECT_FALSE(reservation->isLiftedBy(u"a"));
}

TEST(DocFormat, ReadsOrRefusesDamagedDocuments) {
  const std::string whole = withStories().build();
  const auto readsOrRefuses = [](const std::string& file) {
    EXPECT_THAT(files::refusalOf([&] {
                  formats::Opened opened = open(file, true);
                  for (document::Content& story : opened.stories)
                    EXPECT_EQ(notation::damageOf(document::Story(std::move(story))), "");
                }),
                testing::AnyOf("", testing::HasSubstr(": ")));
  };
  for (std::size_t size = 0; size < whole.size(); size += 7) readsOrRefuses(whole.substr(0, size));
  for (std::size_t at = 0; at < whole.size(); ++at) {
    std::string changed = whole;
    changed[at] = static_cast<char>(changed[at] ^ (1 << at % 8));
    readsOrRefuses(changed);
  }
}

TEST(Corpus, isReadOrRefused) {
  const auto corpus = store::corpusOf({"doc"});
  if (corpus.empty()) GTEST_SKIP() << store::kNoCorpus;
  for (const auto& path : corpus) {
    SCOPED_TRACE(path.string());
    const base::Bytes file = store::bytesOf(path);
    if (!DocFormat().recognises(file.view, "doc")) continue;
    files::refusalOf([&] {
      formats::Opened opened = DocFormat().read(file, {.allStories = true});
      const text::Position length = opened.stories.front().text.length();
      EXPECT_EQ(opened.source->appearance().front().length(), length);
      const document::Document document(std::move(opened.stories), opened.source);
      for (std::size_t i = 0; i < document.count(); ++i) EXPECT_EQ(notation::damageOf(document.story(i)), "");
      Told told;
      opened.source->tellOtherTexts(document.mainText(), told);
      formats::leave("original-" + path.filename().string(), file, document);
    });
  }
}

}  // namespace
}  // namespace pluvo::doc
