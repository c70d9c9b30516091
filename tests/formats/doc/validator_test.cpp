#include "validator.h"

#include "formats/doc/doc_builder.h"
#include "storage/files/as_text.h"
#include "word_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

namespace pluvo::doc {
namespace {

/// The streams of a document, to be changed.
struct Planted {
  explicit Planted(const std::string& file) {
    const Streams streams = Streams::open(files::bytesOf(file), {});
    document = std::string(files::textOf(streams.document.view));
    tables = std::string(files::textOf(streams.tables.view));
    data = std::string(files::textOf(streams.data.view));
  }

  EditedStreams streams() const {
    const auto bytes = [](const std::string& text) {
      return base::ByteSpan(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
    };
    return {bytes(document), bytes(tables), bytes(data)};
  }
  std::uint32_t get(const std::string& in, std::size_t at) const {
    return base::get32({reinterpret_cast<const std::uint8_t*>(in.data()), in.size()}, at);
  }
  /// Where a table lies, and how long it is.
  std::size_t pair(int table) const { return 0x9A + 8 * static_cast<std::size_t>(table); }
  std::size_t table(int table) const { return get(document, pair(table)); }
  template <class Number>
  void put(int table, std::size_t at, Number value) {
    tables.replace(this->table(table) + at, sizeof(Number), number(value));
  }
  void shorten(int table, std::uint32_t by) {
    document.replace(pair(table) + 4, 4, number(get(document, pair(table) + 4) - by));
  }
  /// The first page of characters (12) or of paragraphs (13): pages are in the order of the file.
  std::size_t page(int table) const {
    const std::size_t size = get(document, pair(table) + 4);
    return get(tables, this->table(table) + (size - 4) / 8 * 4 + 4) * std::size_t{512};
  }
  /// Where a character lies.
  char& text(text::Position at) {
    const EditedStreams now = streams();
    const Text text(now.document, now.tables, now.data, 0);
    return document[text.pieces.pieces()[text.pieces.indexAt(at)].offsetOf(at)];
  }
  /// The last page of characters and its table end eight bytes in front of where they did.
  void endFormattingEarlier() {
    const std::size_t count = (get(document, pair(12) + 4) - 4U) / 8;
    const std::size_t last = get(tables, table(12) + count * 8) * std::size_t{512};
    const std::size_t end = last + static_cast<std::uint8_t>(document[last + 511]) * std::size_t{4};
    const std::string earlier = number(get(document, end) - 8U);
    document.replace(end, 4, earlier);
    tables.replace(table(12) + count * 4, 4, earlier);
  }
  void set(std::size_t at, char byte) { document[at] = byte; }

  std::string document;
  std::string tables;
  std::string data;
};

/// A document with all that there are rules for.
std::string sound() {
  DocBuilder b;
  const auto short_ = [](int value) { return number(static_cast<std::uint16_t>(value)); };
  b.groups = "\1" + short_(3) + on(code::kHidden);
  b.data = "data";
  b.earlier = "earlier";
  b.prm = 1, b.append(u'Ж'), b.prm = 0;
  b.notation("{X|b}c§d¶");
  b.special(2), b.special(5), b.special(8);
  b.special(1, property(code::kPicture, 0U));
  b.append(u'\r');
  b.tables[Table{16}] = b.places({1, 3, 5, 15}, std::string("\x13\0\x14\0\x15\x80", 6));
  b.tables[Table{22}] = b.places({0, 4, 70}, short_(1) + short_(0) + short_(0) + short_(0));
  b.tables[Table{23}] = b.places({6, 9, 70});
  b.tables[Table{21}] = short_(0xFFFF) + short_(2) + short_(0);
  b.tables[Table{73}] = "lists";
  b.tables[Table{74}] = "more";
  b.begin(Part::footnotes), b.notation("note¶¶");
  b.tables[Table::footnoteReferences] = b.places({10, 15}, short_(1));
  b.tables[Table::footnoteTexts] = b.places({0, 5, 6});
  b.begin(Part::headers), b.notation("head¶¶");
  b.tables[Table::headerTexts] = b.places({0, 0, 0, 0, 0, 0, 0, 6, 6, 6, 6, 6, 6, 6, 6, 6, 6, 6, 6, 7});
  b.begin(Part::comments), b.special(5), b.notation("said¶¶");
  b.tables[Table::commentReferences] = b.places({11, 15}, std::string(30, '\0'));
  b.tables[Table::commentTexts] = b.places({0, 6, 7});
  b.tables[Table{112}] = std::string(18, '\0');
  b.begin(Part::boxes), b.notation("box¶¶");
  b.tables[Table::mainShapes] = b.places({12, 15}, std::string(26, '\0'));
  b.tables[Table::boxTexts] = b.places({0, 4, 5}, std::string(44, '\0'));
  return b.build();
}

std::string defectAfter(const std::function<void(Planted&)>& plant) {
  const Planted original(sound());
  Planted planted = original;
  plant(planted);
  return firstNewDefect(original.streams(), planted.streams());
}

TEST(Validator, CatchesEachDefect) {
  const struct {
    const char* says;
    std::function<void(Planted&)> plant;
  } cases[] = {
      {"^$", [](Planted&) {}},
      {"texts are not as long", [](Planted& p) { p.set(0x4C, static_cast<char>(p.document[0x4C] + 1)); }},
      {"other counts", [](Planted& p) { p.document.insert(0x3E, 2, '\0').erase(1500, 2), p.set(0x20, 15); }},
      {"another length", [](Planted& p) { p.document.replace(0x40, 4, number(std::uint32_t{1500})); }},
      {"names places outside", [](Planted& p) { p.document.replace(p.pair(33), 4, number(1U << 30U)); }},
      {"lies outside its stream \\(",
       [](Planted& p) { p.document.replace(p.pair(22), 4, number(1U << 30U)); }},
      // Pieces.
      {"table of pieces", [](Planted& p) { p.put(33, 6 + 5 + 4, 0U); }},
      {"table of pieces", [](Planted& p) { p.put(33, p.get(p.document, p.pair(33) + 4) - 6U, 1U << 28U); }},
      {"unfinished", [](Planted& p) { p.put(33, p.get(p.document, p.pair(33) + 4) - 8U, char{4}); }},
      {"says it has not", [](Planted& p) { p.put(33, p.get(p.document, p.pair(33) + 4) - 8U, char{1}); }},
      {"that there are not", [](Planted& p) { p.put(33, p.get(p.document, p.pair(33) + 4) - 2U, char{3}); }},
      {"properties of pieces", [](Planted& p) { p.put(33, 3, std::uint16_t{0x6A03}); }},
      // Pages of formatting.
      {"table of formatting", [](Planted& p) { p.put(12, 4, 0U); }},
      {"without formatting", [](Planted& p) { p.endFormattingEarlier(); }},
      {"other bytes than", [](Planted& p) { p.set(p.page(12), 1); }},
      {"more runs", [](Planted& p) { p.set(p.page(13) + 511, 40); }},
      {"out of order", [](Planted& p) { p.document.replace(p.page(13) + 4, 4, number(1U)); }},
      {"cut off", [](Planted& p) { p.set(p.page(13) + 9 * 4, '\xFF'); }},
      {"not where its properties end", [](Planted& p) { p.text(29) = '\r'; }},
      {"stands for a picture", [](Planted& p) { p.text(13) = 'x'; }},
      // The text.
      {"without a mark", [](Planted& p) { p.text(9) = 'x'; }},
      {"end with a paragraph mark", [](Planted& p) { p.text(14) = '\7'; }},
      {"table 16 and the text", [](Planted& p) { p.text(3) = 'x'; }},
      {"half a field",
       [](Planted& p) {
         p.text(5) = '\x13';
         p.put(16, 4 * 4 + 4, char{0x13});
       }},
      // Tables of places.
      {"table 16 and the text", [](Planted& p) { p.put(16, 4, 4U); }},
      {"table 16 and the text", [](Planted& p) { p.put(16, 4 * 4, char{0x15}); }},
      {"table 22 has places out", [](Planted& p) { p.put(22, 0, 5U); }},
      {"table 23 has places outside", [](Planted& p) { p.put(23, 4, 69U); }},
      {"table 23 has no whole", [](Planted& p) { p.shorten(23, 1); }},
      {"table 22 has not as many ranges as there", [](Planted& p) { p.shorten(23, 4); }},
      {"table 22 has ranges without", [](Planted& p) { p.put(23, 0, 1U); }},
      {"table 22 has ranges without", [](Planted& p) { p.put(22, 12, char{0}); }},
      {"table 22 has not as many ranges as names", [](Planted& p) { p.put(21, 2, char{1}); }},
      {"table 2 names a place", [](Planted& p) { p.put(2, 0, 11U); }},
      {"table 2 has not a text", [](Planted& p) { p.shorten(3, 4); }},
      {"table 3 names a place", [](Planted& p) { p.put(3, 4, 4U); }},
      {"table 4 names a place", [](Planted& p) { p.put(4, 0, 12U); }},
      {"table 6 names a place", [](Planted& p) { p.put(6, 0, 3U); }},
      {"table 11 names a place", [](Planted& p) { p.put(11, 7 * 4, 3U); }},
      {"table 11 has not six", [](Planted& p) { p.shorten(11, 4 * 2); }},
      {"table 40 names a place", [](Planted& p) { p.put(40, 0, 13U); }},
      {"table 112 has not", [](Planted& p) { p.shorten(112, 1); }},
      // What must stay.
      {"lost its levels", [](Planted& p) { p.put(73, 0, 'x'); }},
      {"lost its levels", [](Planted& p) { p.document[p.pair(73)] ^= 1; }},
      {"lost something", [](Planted& p) { p.data.pop_back(); }},
      {"Data changed where", [](Planted& p) { p.data[1] = 'x'; }},
      {"Data changed where", [](Planted& p) { p.data[1] = '\0'; }},
      {"changed where it must not", [](Planted& p) { p.text(16) = '\0'; }},
      {"changed where it must not", [](Planted& p) { p.document[p.document.find("earlier")] = 'x'; }},
      {"^$", [](Planted& p) { p.document[p.document.find("earlier")] = '\0'; }},
  };
  for (const auto& [says, plant] : cases)
    EXPECT_THAT(defectAfter(plant), testing::ContainsRegex(says)) << &plant - &cases[0].plant;
}

TEST(Text, IsReadWhereATableNamesOtherPlacesThanItsPages) {
  Planted planted(sound());
  const std::size_t count = (planted.get(planted.document, planted.pair(12) + 4) - 4U) / 8;
  for (std::size_t i = 0; i <= count; ++i) planted.put(12, i * 4, static_cast<std::uint32_t>(i));
  const EditedStreams now = planted.streams();
  EXPECT_EQ(Text(now.document, now.tables, now.data, 0).characters.entries().size(), count + 1);
}

}  // namespace
}  // namespace pluvo::doc
