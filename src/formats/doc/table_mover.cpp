#include "table_mover.h"

#include "comment_tables.h"
#include "damage.h"
#include "headers.h"
#include "plc.h"
#include "plc_writer.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

namespace pluvo::doc {

using text::Position;

namespace {

struct PartTable {
  std::uint8_t number;
  Part part;
  std::uint8_t elementSize;
};

/// Each element is for a character, and goes with it: marks of fields, anchors of shapes.
constexpr std::array kOfMarks = {PartTable{16, Part::main, 2},      PartTable{17, Part::headers, 2},
                                 PartTable{18, Part::footnotes, 2}, PartTable{19, Part::comments, 2},
                                 PartTable{20, Part::macros, 2},    PartTable{48, Part::endnotes, 2},
                                 PartTable{57, Part::boxes, 2},     PartTable{59, Part::headerBoxes, 2},
                                 PartTable{40, Part::main, 26},     PartTable{41, Part::headers, 26}};

/// Each element is for a text that reaches to the next place: headers, boxes and their lines, subdocuments.
constexpr std::array kOfTexts = {PartTable{56, Part::boxes, 22}, PartTable{58, Part::headerBoxes, 22},
                                 PartTable{75, Part::boxes, 6},  PartTable{76, Part::headerBoxes, 6},
                                 PartTable{54, Part::main, 12},  PartTable{89, Part::main, 4}};

/// Where bookmarks of all kinds begin, and where they end: smart tags, repairs, controls, permissions, moves.
constexpr std::array<std::array<std::uint8_t, 2>, 9> kBookmarks = {{{22, 23},
                                                                    {115, 117},
                                                                    {121, 122},
                                                                    {124, 125},
                                                                    {138, 139},
                                                                    {142, 143},
                                                                    {166, 167},
                                                                    {169, 170},
                                                                    {175, 176}}};
constexpr std::size_t kCommentBegins = 42, kCommentEnds = 43;

/// Both tables of one kind of bookmarks.
struct Bookmarks {
  Plc begins;
  Plc ends;

  /// Nothing where there are none. Throws DocumentError: damaged where the two do not go together.
  static std::optional<Bookmarks> in(base::ByteSpan begins, base::ByteSpan ends) {
    if (begins.empty() && ends.empty()) return std::nullopt;
    for (const std::size_t size : {0U, 4U}) {
      const std::size_t beginSize = size == 0 ? 4 : 6;
      const Bookmarks both{Plc(begins, beginSize), Plc(ends, size)};
      const std::size_t count = both.begins.count();
      if (count == both.ends.count() && begins.size() == 4 + count * (4 + beginSize) &&
          ends.size() == 4 + count * (4 + size))
        return both;
    }
    throw damaged("tables of bookmarks do not go together");
  }
};

/// Tables that programs make anew: heights of paragraphs, pages, spelling, versions of layout.
constexpr std::array<std::uint8_t, 58> kMadeAnew = {
    8,   34,  49,  55,  63,  64,  65,  66,  67,  68,  77,  78,  79,  80,  81,  82,  86,  88,  90,  93,
    98,  101, 102, 103, 104, 105, 106, 107, 110, 111, 116, 119, 128, 129, 130, 132, 133, 134, 135, 146,
    147, 148, 149, 150, 151, 152, 153, 154, 155, 156, 157, 158, 159, 160, 161, 162, 163, 164};

constexpr std::size_t kSectionElement = 12, kNoteElement = 2, kCommentElement = 30;

/// Whatever the place: files may name any.
Position shifted(Position place, Position by) {
  return static_cast<Position>(static_cast<std::uint32_t>(place) + static_cast<std::uint32_t>(by));
}

}  // namespace

Position TableMover::begin(Part part) const { return places_.boundary(fib_.begin(part)); }

Position TableMover::newLength(Part part) const {
  return places_.boundary(fib_.begin(part) + fib_.length(part)) - begin(part);
}

/// A place in a part, and not that of a character. A place outside the part moves with its end.
Position TableMover::boundary(Part part, Position place) const {
  if (place < 0) return place;
  if (place > fib_.length(part)) return shifted(place, newLength(part) - fib_.length(part));
  return places_.boundary(fib_.begin(part) + place) - begin(part);
}

/// Nothing where the character goes.
std::optional<Position> TableMover::character(Part part, Position place) const {
  if (place < 0 || place >= fib_.length(part)) return boundary(part, place);
  const Position at = fib_.begin(part) + place;
  if (places_.isGone(at)) return std::nullopt;
  return places_.character(at) - begin(part);
}

Position TableMover::last(Part part, const Plc& plc) const { return boundary(part, plc.place(plc.count())); }

void TableMover::moveMarks(std::size_t number, Part part, std::size_t elementSize) {
  const Plc plc(tables_.old(number), elementSize);
  if (plc.count() == 0) return;
  PlcWriter moved;
  for (std::size_t i = 0; i < plc.count(); ++i)
    if (const auto place = character(part, plc.place(i))) moved.add(*place, plc.element(i));
  tables_.replace(number, moved.bytes(last(part, plc)));
}

void TableMover::moveTexts(std::size_t number, Part part, std::size_t elementSize) {
  const Plc plc(tables_.old(number), elementSize);
  if (plc.count() == 0) return;
  PlcWriter moved;
  for (std::size_t i = 0; i < plc.count(); ++i) moved.add(boundary(part, plc.place(i)), plc.element(i));
  tables_.replace(number, moved.bytes(last(part, plc)));
}

/// The section whose mark goes joins the next, and takes over how that looks.
void TableMover::moveSections() {
  const Plc plc(tables_.old(Table::sections), kSectionElement);
  if (plc.count() == 0) return;
  PlcWriter moved;
  Position begin = boundary(Part::main, plc.place(0));
  for (std::size_t i = 0; i < plc.count(); ++i) {
    const auto mark = character(Part::main, std::max(plc.place(i + 1), 0) - 1);
    if (i + 1 < plc.count() && !mark) continue;
    moved.add(begin, plc.element(i));
    if (mark) begin = *mark + 1;
  }
  tables_.replace(Table::sections, moved.bytes(last(Part::main, plc)));
}

/// Texts of sections that go were left out, or belong to the next section.
void TableMover::moveHeaders() {
  const auto number = static_cast<std::size_t>(Table::headerTexts);
  const Headers headers(text_);
  const auto left = headers.without([&](Position at) { return places_.isGone(at); });
  if (!left) return moveTexts(number, Part::headers, 0);
  const Plc plc(tables_.old(number), 0);
  PlcWriter moved;
  for (std::size_t i = 0; i < Headers::kSeparators; ++i) moved.add(boundary(Part::headers, plc.place(i)), {});
  Position reached = boundary(Part::headers, plc.place(Headers::kSeparators));
  for (const auto& text : left->texts) {
    moved.add(reached, {});
    if (text) reached = boundary(Part::headers, text->to);
  }
  if (plc.count() > headers.count()) moved.add(reached, {});
  tables_.replace(number, moved.bytes(last(Part::headers, plc)));
}

/// Text that comes where a bookmark begins lies in it, and where it ends after it. A bookmark of a comment
/// ends at the comment's mark.
void TableMover::moveBookmarks(std::size_t begins, std::size_t ends, bool endAtMarks) {
  const auto bookmarks = Bookmarks::in(tables_.old(begins), tables_.old(ends));
  if (!bookmarks) return;
  const Position all = fib_.lengthOfAll();
  const Position longer = places_.boundary(all) - all;
  const auto moved = [&](Position place, bool isMark) {
    if (place < 0) return place;
    if (place > all) return shifted(place, longer);
    return isMark ? places_.character(place) : places_.boundary(place);
  };
  PlcWriter movedBegins;
  PlcWriter movedEnds;
  const std::size_t count = bookmarks->begins.count();
  for (std::size_t i = 0; i < count; ++i) {
    movedBegins.add(moved(bookmarks->begins.place(i), false), bookmarks->begins.element(i));
    movedEnds.add(moved(bookmarks->ends.place(i), endAtMarks), bookmarks->ends.element(i));
  }
  tables_.replace(begins, movedBegins.bytes(moved(bookmarks->begins.place(count), false)));
  tables_.replace(ends, movedEnds.bytes(moved(bookmarks->ends.place(count), endAtMarks)));
}

/// A note whose mark goes goes with it, and its text went.
void TableMover::moveNotes(Table references, std::size_t referenceSize, Table texts, Part part) {
  const Plc marks(tables_.old(references), referenceSize);
  const Plc places(tables_.old(texts), 0);
  if (marks.count() == 0 || places.count() == 0) return;
  PlcWriter movedMarks;
  PlcWriter movedTexts;
  std::vector<bool> gone(marks.count());
  for (std::size_t i = 0; i < places.count(); ++i) {
    const auto mark = i < marks.count() ? character(Part::main, marks.place(i)) : std::nullopt;
    if (i < marks.count()) gone[i] = !mark;
    if (i < marks.count() && !mark) continue;
    if (mark) movedMarks.add(*mark, marks.element(i));
    movedTexts.add(boundary(part, places.place(i)), {});
  }
  const bool hasNotes = movedMarks.count() > 0;
  tables_.replace(references, hasNotes ? movedMarks.bytes(last(Part::main, marks)) : "");
  tables_.replace(texts, hasNotes ? movedTexts.bytes(last(part, places)) : "");
  if (part == Part::comments) removeComments(gone, tables_);
}

void TableMover::move() {
  for (const PartTable& table : kOfMarks) moveMarks(table.number, table.part, table.elementSize);
  for (const PartTable& table : kOfTexts) moveTexts(table.number, table.part, table.elementSize);
  moveSections();
  moveHeaders();
  for (const auto& [begins, ends] : kBookmarks) moveBookmarks(begins, ends, false);
  moveBookmarks(kCommentBegins, kCommentEnds, true);
  moveNotes(Table::footnoteReferences, kNoteElement, Table::footnoteTexts, Part::footnotes);
  moveNotes(Table::endnoteReferences, kNoteElement, Table::endnoteTexts, Part::endnotes);
  moveNotes(Table::commentReferences, kCommentElement, Table::commentTexts, Part::comments);
  for (const std::uint8_t number : kMadeAnew) tables_.drop(number);
}

void requireMovable(const Text& text) {
  const auto tableOf = [&](std::size_t number) { return text.fib.in(text.tables, number); };
  const auto require = [&](std::size_t begins, std::size_t ends) {
    Bookmarks::in(tableOf(begins), tableOf(ends));
  };
  for (const PartTable& table : kOfMarks) tableOf(table.number);
  for (const PartTable& table : kOfTexts) tableOf(table.number);
  for (const auto& [begins, ends] : kBookmarks) require(begins, ends);
  require(kCommentBegins, kCommentEnds);
}

}  // namespace pluvo::doc
