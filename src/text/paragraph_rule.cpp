#include "unit_rules.h"
#include "utf8.h"

namespace pluvo::text {
namespace {

struct Marks {
  Position certain = 0;
  Position possible = 0;  ///< characters 7 and 12
};

/// Of a few words, for which vectors do not pay.
constexpr Position kFew = 32;

template <class Unit>
Marks countFewMarks(const Unit* units, Position length, Unit lineEnd) {
  Marks marks;
  for (Position i = 0; i < length; ++i) {
    if (units[i] >= u' ') continue;  // all marks are control characters
    marks.certain += static_cast<Position>(units[i] == lineEnd || units[i] == kParagraphMark);
    marks.possible += static_cast<Position>(units[i] == kCellMark || units[i] == kPageBreak);
  }
  return marks;
}

/// So many sums of no and yes fit the narrowest unit, in which compilers then sum by vectors.
constexpr Position kSummedAtOnce = 255;

template <class Unit>
Marks countMarks(const Unit* units, Position length, Unit lineEnd) {
  if (length <= kFew) return countFewMarks(units, length, lineEnd);
  Marks marks;
  for (Position done = 0; done < length; done += kSummedAtOnce) {
    const Position end = done + std::min(length - done, kSummedAtOnce);
    Unit certain = 0;
    Unit possible = 0;
    for (Position i = done; i < end; ++i) {
      const bool isMark = (units[i] == lineEnd) | (units[i] == kParagraphMark);
      certain = static_cast<Unit>(certain + isMark);
      const bool maybeMark = (units[i] == kCellMark) | (units[i] == kPageBreak);
      possible = static_cast<Unit>(possible + maybeMark);
    }
    marks.certain += certain;
    marks.possible += possible;
  }
  return marks;
}

Marks countMarks(const Stretch& stretch) {
  if (stretch.wide != nullptr) return countMarks(stretch.wide, stretch.length, kParagraphMark);
  constexpr auto kMark = static_cast<std::uint8_t>(kParagraphMark);
  const std::uint8_t lineEnd = stretch.lineFeedIsMark ? std::uint8_t{u'\n'} : kMark;
  return countMarks(stretch.narrow, stretch.length, lineEnd);
}

/// The marks of a stretch in order, until visit(position) returns false.
template <class Visit>
bool forEachMark(const UnitText& text, Position start, const Stretch& stretch, Visit visit) {
  for (Position i = 0; i < stretch.length; ++i) {
    if (text.isMark(start + i, stretch[i]) && !visit(start + i)) return false;
  }
  return true;
}

Position marksIn(const UnitText& text, Position start, const Stretch& stretch) {
  const Marks marks = countMarks(stretch);
  if (marks.possible == 0) return marks.certain;
  Position count = 0;
  forEachMark(text, start, stretch, [&](Position) {
    ++count;
    return true;
  });
  return count;
}

/// Those of a stretch of UTF-8; none where its bytes do not tell. CR LF is one.
std::optional<Position> marksIn(std::span<const std::uint8_t> bytes) {
  const Marks marks = countMarks(bytes.data(), static_cast<Position>(bytes.size()), std::uint8_t{u'\n'});
  if (marks.possible > 0) return std::nullopt;
  return marks.certain - (marks.certain > 1 ? utf8PairsIn(bytes) : 0);
}

}  // namespace

Summary<1> ParagraphRule::summarise(Position from, Position to) const {
  Summary<1> summary;
  if (from == to) return summary;
  if (from == 0) summary.counts[0] = 1;
  // The place of the end is mostly remembered, that of the last unit is not.
  if (const auto bytes = from == 0 ? std::nullopt : text_->text->bytesOf(from - 1, to)) {
    const std::span<const std::uint8_t> inside = bytes->inside();
    if (const auto marks = marksIn(inside.first(utf8Before(inside, 0, inside.size())))) {
      summary.counts[0] = *marks;
      return summary;
    }
  }
  text_->text->forEachStretch(std::max(from - 1, 0), to - 1, [&](Position start, const Stretch& stretch) {
    summary.counts[0] += marksIn(*text_, start, stretch);
    return true;
  });
  return summary;
}

Position ParagraphRule::nth(Position from, Position to, std::uint8_t, Position n) const {
  if (from == 0 && --n == 0) return 0;
  Position found = to;
  text_->text->forEachStretch(std::max(from - 1, 0), to - 1, [&](Position start, const Stretch& stretch) {
    return forEachMark(*text_, start, stretch, [&](Position mark) {
      found = mark + 1;
      return --n > 0;
    });
  });
  return found;
}

}  // namespace pluvo::text
