#include "table_checks.h"

#include "piece_text.h"
#include "plc.h"
#include "string_tables.h"

#include <optional>

namespace pluvo::doc {

using base::ByteSpan;
using text::Position;

namespace {

constexpr char16_t kShape = 8;

/// A table of places.
struct Places {
  std::uint16_t table;
  std::uint8_t element;
  std::optional<Part> part;  ///< none where places are among all texts
  enum class At : std::uint8_t { anything, notes, comments, shapes, texts, sections, fields } at;
};
using At = Places::At;

constexpr Places kPlaces[] = {
    {2, 2, Part::main, At::notes},          {3, 0, Part::footnotes, At::texts},
    {4, 30, Part::main, At::comments},      {5, 0, Part::comments, At::texts},
    {6, 12, Part::main, At::sections},      {11, 0, Part::headers, At::texts},
    {16, 2, Part::main, At::fields},        {17, 2, Part::headers, At::fields},
    {18, 2, Part::footnotes, At::fields},   {19, 2, Part::comments, At::fields},
    {22, 4, std::nullopt, At::anything},    {23, 0, std::nullopt, At::anything},
    {40, 26, Part::main, At::shapes},       {41, 26, Part::headers, At::shapes},
    {42, 4, std::nullopt, At::anything},    {43, 0, std::nullopt, At::anything},
    {46, 2, Part::main, At::notes},         {47, 0, Part::endnotes, At::texts},
    {48, 2, Part::endnotes, At::fields},    {54, 12, Part::main, At::anything},
    {56, 22, Part::boxes, At::texts},       {57, 2, Part::boxes, At::fields},
    {58, 22, Part::headerBoxes, At::texts}, {59, 2, Part::headerBoxes, At::fields},
    {75, 6, Part::boxes, At::anything},     {76, 6, Part::headerBoxes, At::anything},
    {89, 4, Part::main, At::anything},      {115, 6, std::nullopt, At::anything},
    {117, 4, std::nullopt, At::anything},   {121, 6, std::nullopt, At::anything},
    {122, 4, std::nullopt, At::anything},   {138, 6, std::nullopt, At::anything},
    {139, 4, std::nullopt, At::anything},   {142, 4, std::nullopt, At::anything},
    {143, 0, std::nullopt, At::anything},   {175, 6, std::nullopt, At::anything},
    {176, 4, std::nullopt, At::anything},
};

/// The beginnings of ranges, their ends, and their names.
struct Ranges {
  std::uint16_t begins;
  std::uint8_t beginElement;
  std::uint16_t ends;
  std::uint8_t endElement;
  std::uint16_t names;  ///< 0 where they have none
};
constexpr Ranges kRanges[] = {{22, 4, 23, 0, 21},  {42, 4, 43, 0, 37},  {115, 6, 117, 4, 114},
                              {121, 6, 122, 4, 0}, {138, 6, 139, 4, 0}, {142, 4, 143, 0, 0},
                              {175, 6, 176, 4, 0}};

class TableChecker {
 public:
  TableChecker(const Text& text, const PageFacts& facts, const std::vector<FieldMark>& fieldMarks,
               Defects& defects)
      : text_(text), facts_(facts), fieldMarks_(fieldMarks), defects_(defects) {}

  void check() {
    for (const Places& places : kPlaces) checkPlaces(places);
    for (const Ranges& ranges : kRanges) checkRanges(ranges);
    checkCounts();
  }

 private:
  ByteSpan in(std::uint16_t table) const {
    try {
      return text_.in(static_cast<Table>(table));
    } catch (const errors::DocumentError&) {
      defects_.note("lies outside its stream", 0, table);
      return {};
    }
  }

  Plc plc(std::uint16_t table, std::size_t element) const { return {in(table), element}; }

  void checkPlaces(const Places& places) {
    const ByteSpan bytes = in(places.table);
    const Plc plc(bytes, places.element);
    if (!bytes.empty() && (bytes.size() < 4 || (bytes.size() - 4) % (4 + places.element) != 0))
      defects_.note("has no whole number of places", bytes.size(), places.table);
    const Position begin = places.part ? text_.fib.begin(*places.part) : 0;
    // The last place may be one after all texts.
    const Position length = places.part ? text_.fib.length(*places.part) : text_.fib.lengthOfAll() + 1;
    for (std::size_t i = 0; i < plc.count(); ++i) {
      const Position at = plc.place(i);
      if (plc.place(i + 1) < at) defects_.note("has places out of order", i, places.table);
      if (at < 0 || at > length) {
        defects_.note("has places outside its text", i, places.table);
      } else {
        checkCharacter(places, plc, i, begin + at);
      }
    }
    if (places.at == At::fields) checkFields(places, plc);
  }

  /// The character that must stand at a place, or in front of it.
  void checkCharacter(const Places& places, const Plc& plc, std::size_t i, Position at) {
    const bool isFirst = plc.place(i) == 0;
    switch (places.at) {
      case At::notes:
        // A note may have a mark of its own.
        if (base::get16(plc.element(i), 0) != 0) require(isAnchor(at, text::kNoteReference), i, places);
        return;
      case At::comments:
        return require(isAnchor(at, text::kCommentReference), i, places);
      case At::shapes:
        return require(isAnchor(at, kShape), i, places);
      case At::texts:
        return require(isFirst || unitAt(at - 1) == text::kParagraphMark, i, places);
      case At::sections:
        return require(isFirst || unitAt(at - 1) == text::kPageBreak, i, places);
      default:
        return;
    }
  }

  void require(bool holds, std::size_t i, const Places& places) const {
    if (!holds) defects_.note("names a place where another character must stand", i, places.table);
  }

  char16_t unitAt(Position at) const {
    return at < text_.pieces.length() ? doc::unitAt(text_.pieces, text_.document, at) : u'\0';
  }
  bool isAnchor(Position at, char16_t unit) const {
    if (unitAt(at) != unit) return false;
    const Piece& piece = text_.pieces.pieces()[text_.pieces.indexAt(at)];
    return facts_.isSpecial(piece.offsetOf(at));
  }

  /// The table and the text name the same marks.
  void checkFields(const Places& places, const Plc& plc) {
    const Position begin = text_.fib.begin(*places.part);
    const Position end = begin + text_.fib.length(*places.part);
    auto mark = std::ranges::lower_bound(fieldMarks_, begin, {}, &FieldMark::at);
    const auto after = std::ranges::lower_bound(fieldMarks_, end, {}, &FieldMark::at);
    std::size_t i = 0;
    while (i < plc.count() || mark != after) {
      const bool isInTable = i < plc.count() && (mark == after || begin + plc.place(i) <= mark->at);
      const bool isInText = mark != after && (i >= plc.count() || mark->at <= begin + plc.place(i));
      constexpr unsigned kKind = 0x1F;
      if (!isInTable || !isInText || (plc.element(i)[0] & kKind) != mark->unit)
        defects_.note("and the text do not name the same marks of fields", i, places.table);
      if (isInTable) ++i;
      if (isInText) ++mark;
    }
    checkNesting(places, begin, end);
  }

  void checkNesting(const Places& places, Position begin, Position end) {
    std::vector<bool> hasSeparator;
    auto mark = std::ranges::lower_bound(fieldMarks_, begin, {}, &FieldMark::at);
    for (; mark != fieldMarks_.end() && mark->at < end; ++mark) {
      const bool fits = mark->unit == text::kFieldBegin ||
                        (!hasSeparator.empty() && (mark->unit == text::kFieldEnd || !hasSeparator.back()));
      if (!fits) {
        defects_.note("belongs to a text with half a field", static_cast<std::size_t>(mark->at),
                      places.table);
      } else if (mark->unit == text::kFieldBegin) {
        hasSeparator.push_back(false);
      } else if (mark->unit == text::kFieldEnd) {
        hasSeparator.pop_back();
      } else {
        hasSeparator.back() = true;
      }
    }
    for (std::size_t i = 0; i < hasSeparator.size(); ++i)
      defects_.note("belongs to a text with half a field", static_cast<std::size_t>(end), places.table);
  }

  void checkRanges(const Ranges& ranges) {
    const Plc begins = plc(ranges.begins, ranges.beginElement);
    const Plc ends = plc(ranges.ends, ranges.endElement);
    if (begins.count() != ends.count())
      defects_.note("has not as many ranges as there are ends", begins.count(), ranges.begins);
    std::vector<bool> isTaken(ends.count());
    for (std::size_t i = 0; i < begins.count(); ++i) {
      const std::size_t end = base::get16(begins.element(i), 0);
      if (end >= ends.count() || isTaken[end] || ends.place(end) < begins.place(i)) {
        defects_.note("has ranges without an end, or with one in front of them", i, ranges.begins);
      } else {
        isTaken[end] = true;
      }
    }
    const ByteSpan names = ranges.names == 0 ? ByteSpan() : in(ranges.names);
    if (names.size() >= 4 && base::get16(names, 2) != begins.count())
      defects_.note("has not as many ranges as names", begins.count(), ranges.begins);
  }

  /// Each note has its text; each comment has an entry in one more table; each section has six headers.
  void checkCounts() {
    constexpr std::size_t kCommentExtra = 18, kSeparators = 6, kOfSection = 6;
    const auto notes = [&](std::uint16_t references, std::size_t element, std::uint16_t texts) {
      const std::size_t count = plc(references, element).count();
      const std::size_t have = plc(texts, 0).count();
      if (have != (count == 0 ? 0 : count + 1))
        defects_.note("has not a text for each place", have, references);
    };
    notes(2, 2, 3);
    notes(46, 2, 47);
    notes(4, 30, 5);
    const ByteSpan extra = in(112);
    if (!extra.empty() && extra.size() != plc(4, 30).count() * kCommentExtra)
      defects_.note("has not an entry for each comment", extra.size(), 112);
    const std::size_t headers = plc(11, 0).count();
    const std::size_t wanted = kSeparators + plc(6, 12).count() * kOfSection;
    if (headers != 0 && headers != wanted && headers != wanted + 1)
      defects_.note("has not six texts for each section", headers, 11);
  }

  const Text& text_;
  const PageFacts& facts_;
  const std::vector<FieldMark>& fieldMarks_;
  Defects& defects_;
};

}  // namespace

void checkTables(const Text& text, const PageFacts& facts, const std::vector<FieldMark>& fieldMarks,
                 Defects& defects) {
  TableChecker(text, facts, fieldMarks, defects).check();
}

}  // namespace pluvo::doc
