#pragma once

#include "containers/cfb/compound_builder.h"
#include "document/content_builder.h"
#include "fib.h"
#include "properties.h"
#include "support/notation_parser.h"
#include "text/positions.h"

#include <array>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pluvo::doc {

/// A number of so many bytes, the lowest first.
template <class Number>
std::string number(Number value) {
  std::string bytes(sizeof(Number), '\0');
  base::put(std::span(reinterpret_cast<std::uint8_t*>(bytes.data()), bytes.size()), 0, value);
  return bytes;
}
template <class Value>
std::string property(std::uint16_t code, Value value) {
  return number(code) + number(value);
}
inline std::string on(std::uint16_t code) { return property(code, std::uint8_t{1}); }

/// Builds a binary document, front to back, with the calls of ContentBuilder, so that a notation makes one.
/// Each stretch of one look is a piece; pieces lie in the file the last one first, narrow and wide in turn.
class DocBuilder {
 public:
  using Look = document::Look;
  /// Over the looks of appended text, and of its paragraphs.
  std::string characters;
  std::string paragraphs;
  std::uint16_t style = 0;
  std::uint16_t prm = 0;

  std::uint16_t flags = Fib::kTableOne;
  std::uint16_t kind = 0xA5EC;
  std::uint16_t version = 0xC1;
  std::string groups;  ///< of the table of pieces
  std::string data;
  std::string earlier;                       ///< text that no piece stands for
  std::string front = std::string(8, '\0');  ///< of the table stream
  std::uint32_t key = 0;
  std::map<Table, std::string> tables;
  cfb::Streams streams;
  /// What becomes of the streams that a password encrypts.
  std::function<std::string(const std::string& name, std::string bytes)> eachStream;

  void begin(Part part) { part_ = static_cast<std::size_t>(part); }
  text::Position length() const { return lengths_[part_]; }
  text::Position lengthOf(Part part) const { return lengths_[static_cast<std::size_t>(part)]; }
  notation::Ranges notation(std::string_view text) {
    return notation::Parser<DocBuilder>(text, *this).parse();
  }

  void append(char16_t unit, Look look = {}) {
    add(unit, look, "", unit == text::kParagraphMark ? ofParagraph() : "");
  }
  void special(char16_t unit, const std::string& more = "") { add(unit, {}, on(code::kSpecial) + more, ""); }
  void beginField(Look look) { ++fields_, add(text::kFieldBegin, look, on(code::kSpecial), ""); }
  bool separateField(Look look) { return add(text::kFieldSeparator, look, on(code::kSpecial), ""); }
  bool endField(Look look) { return --fields_, add(text::kFieldEnd, look, on(code::kSpecial), ""); }
  void beginTable() { ++depth_; }
  void endTable() { --depth_; }
  void cellMark(Look look) {
    add(depth_ > 1 ? u'\r' : u'\7', look, "", ofParagraph() + (depth_ > 1 ? on(code::kInnerCell) : ""));
  }
  void rowMark(Look look) {
    add(depth_ > 1 ? u'\r' : u'\7', look, "",
        ofParagraph() + on(depth_ > 1 ? code::kInnerRow : code::kRowEnd));
  }
  void sectionMark(Look look) {
    add(u'\f', look, "", "");
    sections_ += number(length());
  }
  std::size_t openFields() const { return fields_; }
  std::size_t openTables() const { return depth_; }

  /// A table of places, and what follows them.
  static std::string places(const std::vector<text::Position>& places, const std::string& elements = "") {
    std::string bytes;
    for (const text::Position place : places) bytes += number(place);
    return bytes + elements;
  }

  std::string build() {
    std::string document(kText, '\0');
    std::string places;
    std::string pieces;
    text::Position at = 0;
    text::Position all = 0;
    for (const text::Position length : lengths_) all += length;
    if (all > lengths_[0]) {
      add(u'\r', {}, "", "");
      --lengths_[part_];  // the mark at the very end belongs to no part
    }
    for (std::size_t i = stretches_.size(); i-- > 0;) place(stretches_[i], i % 2 == 0, document);
    for (const Stretch& stretch : stretches_) {
      places += number(at);
      at += static_cast<text::Position>(stretch.units.size());
      pieces += number(std::uint16_t{0}) +
                number(stretch.narrow ? stretch.offset * 2 | 0x40000000U : stretch.offset) +
                number(stretch.prm);
    }
    const std::string table = places + number(at) + pieces;
    tables[Table::pieces] = groups + "\2" + number(static_cast<std::uint32_t>(table.size())) + table;
    document += earlier;
    const auto end = static_cast<std::uint32_t>(document.size());
    tables[Table::characterPages] = pages(document, end, false);
    tables[Table::paragraphPages] = pages(document, end, true);
    if (!sections_.empty())
      tables[Table::sections] =
          number(0U) + sections_ + number(lengths_[0]) + std::string(sections_.size() * 3 + 12, '\0');
    std::string tableStream = front;
    writeBlock(document, tableStream, end);
    cfb::Streams all_ = streams;
    const auto put = [&](const std::string& name, const std::string& bytes) {
      all_.emplace_back(name, eachStream ? eachStream(name, bytes) : bytes);
    };
    put("WordDocument", document);
    put("1Table", tableStream);
    if (!data.empty()) put("Data", data);
    return cfb::compoundFile(all_);
  }

 private:
  static constexpr std::size_t kText = 1536;
  static constexpr std::size_t kPairs = 0x88;

  struct Stretch {
    std::u16string units;
    std::string characters;
    std::string paragraph;
    std::uint16_t style = 0;
    std::uint16_t prm = 0;
    bool narrow = false;
    std::uint32_t offset = 0;
  };

  std::string ofParagraph() const {
    const std::string ofTable =
        depth_ == 0 ? "" : on(code::kInTable) + property(code::kDepth, static_cast<std::uint32_t>(depth_));
    return ofTable + paragraphs;
  }

  bool add(char16_t unit, const Look& look, const std::string& more, const std::string& paragraph) {
    std::string properties = characters + more;
    if (look.hidden) properties += on(code::kHidden);
    if (look.deleted) properties += on(code::kDeleted);
    if (look.highlight != 0) properties += property(code::kHighlight, look.highlight);
    const bool isNew = stretches_.empty() || stretches_.back().characters != properties ||
                       !stretches_.back().paragraph.empty() || !paragraph.empty() ||
                       stretches_.back().prm != prm || stretches_.back().style != style;
    if (isNew) stretches_.push_back({{}, properties, paragraph, style, prm, false, 0});
    stretches_.back().units += unit;
    ++lengths_[part_];
    return true;
  }

  static void place(Stretch& stretch, bool mayBeNarrow, std::string& document) {
    stretch.narrow = mayBeNarrow && stretch.units.find_first_not_of(kNarrow) == stretch.units.npos;
    stretch.offset = static_cast<std::uint32_t>(document.size());
    for (const char16_t unit : stretch.units)
      document += stretch.narrow ? std::string(1, unit == u'\u2019' ? '\x92' : static_cast<char>(unit))
                                 : number(unit);
  }

  /// Pages with eight runs each, in the order of the file.
  std::string pages(std::string& document, std::uint32_t end, bool ofParagraphs) const {
    std::string places;
    std::string numbers;
    constexpr std::size_t kRuns = 8, kPage = 512;
    for (std::size_t left = stretches_.size(); left > 0;) {
      document.resize((document.size() + kPage - 1) / kPage * kPage);
      numbers += number(static_cast<std::uint32_t>(document.size() / kPage));
      places += number(stretches_[left - 1].offset);
      std::string page;
      std::string elements;
      std::string properties;
      const std::size_t count = std::min(kRuns, left);
      const std::size_t size = (count + 1) * 4 + count * (ofParagraphs ? 13 : 1);
      std::size_t at = (size + 1) / 2 * 2;
      for (std::size_t i = 0; i < count; ++i) {
        const Stretch& stretch = stretches_[--left];
        page += number(stretch.offset);
        std::string own = ofParagraphs ? number(stretch.style) + stretch.paragraph : stretch.characters;
        elements += static_cast<char>(at / 2);
        if (ofParagraphs) elements += std::string(12, '\0');
        const bool isEven = own.size() % 2 == 0;
        std::string head = !ofParagraphs ? std::string(1, static_cast<char>(own.size()))
                           : isEven      ? std::string(1, '\0') + static_cast<char>(own.size() / 2)
                                         : std::string(1, static_cast<char>((own.size() + 1) / 2));
        head += own;
        own = std::move(head);
        if (own.size() % 2 != 0) own += '\0';
        properties += own;
        at += own.size();
      }
      page += number(left > 0 ? stretches_[left - 1].offset : end) + elements;
      page.resize((size + 1) / 2 * 2);
      page += properties;
      page.resize(kPage - 1);
      document += page + static_cast<char>(count);
    }
    return places + number(end) + numbers;
  }

  void writeBlock(std::string& document, std::string& tableStream, std::uint32_t end) {
    const auto set = [&](std::size_t at, const std::string& bytes) {
      document.replace(at, bytes.size(), bytes);
    };
    set(0, number(kind) + number(version));
    set(0x0A, number(flags));
    set(0x0E, number(key));
    set(0x18, number(std::uint32_t{kText}));
    set(0x1C, number(end));
    set(0x20, number(std::uint16_t{14}));
    set(0x3E, number(std::uint16_t{22}));
    set(0x40, number(static_cast<std::uint32_t>(document.size())));
    for (std::size_t i = 0; i < kParts; ++i) set(0x4C + 4 * i, number(lengths_[i]));
    set(0x98, number(static_cast<std::uint16_t>(kPairs)));
    for (const auto& [table, bytes] : tables) {
      set(0x9A + 8 * static_cast<std::size_t>(table), number(static_cast<std::uint32_t>(tableStream.size())) +
                                                          number(static_cast<std::uint32_t>(bytes.size())));
      tableStream += bytes;
    }
  }

  static constexpr const char16_t* kNarrow =
      u"\1\2\5\7\b\t\v\f\r\x0E\x13\x14\x15\x1E\x1F "
      u"(){}abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789\u00E9\u2019.,";

  std::vector<Stretch> stretches_;
  std::array<text::Position, kParts> lengths_{};
  std::size_t part_ = 0;
  std::size_t depth_ = 0;
  std::size_t fields_ = 0;
  std::string sections_;
};

/// A document with a footnote, a header and a footer, a comment, a box and one in the footer.
inline DocBuilder withStories() {
  DocBuilder builder;
  builder.append(u'a');
  builder.special(2);
  builder.special(5);
  builder.special(8);
  builder.append(u'\r');
  builder.begin(Part::footnotes);
  builder.notation("note<7:!>¶");
  builder.append(u'\r');
  builder.tables[Table::footnoteReferences] = DocBuilder::places({1, 5}, std::string("\1\0", 2));
  builder.tables[Table::footnoteTexts] = DocBuilder::places({0, 6, 7});
  builder.begin(Part::headers);
  builder.notation("head¶¶");
  builder.special(8);
  builder.notation("¶¶");
  builder.tables[Table::headerTexts] = DocBuilder::places({0, 0, 0, 0, 0, 0, 0, 0, 6, 6, 9, 9, 9, 10});
  builder.tables[Table::headerShapes] = DocBuilder::places({6, 9}, number(78U) + std::string(22, '\0'));
  builder.begin(Part::comments);
  builder.special(5);
  builder.notation("said¶¶");
  builder.tables[Table::commentReferences] = DocBuilder::places({2, 5}, std::string(30, '\0'));
  builder.tables[Table::commentTexts] = DocBuilder::places({0, 6, 7});
  builder.begin(Part::boxes);
  builder.notation("box¶spare¶¶");
  const std::string box = std::string(14, '\0') + number(77U) + std::string(4, '\0');
  builder.tables[Table::boxTexts] = DocBuilder::places(
      {0, 4, 10, 11}, box + std::string(8, '\0') + number(std::uint16_t{1}) + std::string(12, '\0') + box);
  builder.tables[Table::mainShapes] = DocBuilder::places({3, 5}, number(77U) + std::string(22, '\0'));
  builder.begin(Part::headerBoxes);
  builder.notation("⟦in¦‖⟧¶¶");
  builder.tables[Table::headerBoxTexts] =
      DocBuilder::places({0, 5, 6}, std::string(14, '\0') + number(78U) + std::string(26, '\0'));
  return builder;
}

}  // namespace pluvo::doc
