#include "walker.h"

#include "damage.h"
#include "document/content_builder.h"
#include "piece_text.h"
#include "plc.h"

#include <algorithm>

namespace pluvo::doc {

using text::Position;

namespace {

bool isMarkUnit(char16_t unit) {
  return unit == text::kParagraphMark || unit == text::kCellMark || unit == text::kPageBreak;
}

bool isFieldUnit(char16_t unit) { return unit >= text::kFieldBegin && unit <= text::kFieldEnd; }

constexpr std::size_t kSectionElement = 12;

}  // namespace

Walker::Walker(const Text& text) : text_(text), headers_(text) {
  const Plc sections(text.in(Table::sections), kSectionElement);
  for (std::size_t i = 1; i <= sections.count(); ++i)
    sectionMarks_.push_back(std::max(sections.place(i), 0) - 1);
  std::ranges::sort(sectionMarks_);
}

/// Calls visit(place, unit) with control characters until it returns true.
template <class Visit>
void Walker::forEachControl(Position from, Position to, Visit visit) const {
  const auto pieces = text_.pieces.pieces();
  for (std::size_t i = text_.pieces.indexAt(from); from < to; from = pieces[i++].to)
    if (doc::forEachControl(pieces[i], text_.document, from, std::min(to, pieces[i].to), visit)) return;
}

char16_t Walker::unitAt(Position at) const { return doc::unitAt(text_.pieces, text_.document, at); }

bool Walker::endsSection(Position at) const { return std::ranges::binary_search(sectionMarks_, at); }

Position Walker::nextMark(Position from, Position to) const {
  Position found = to;
  forEachControl(from, to, [&](Position at, char16_t unit) {
    if (!isMarkUnit(unit) || (unit == text::kPageBreak && !endsSection(at))) return false;
    found = at;
    return true;
  });
  return found;
}

void Walker::walk(Position from, Position to, Events& events) {
  while (from < to) {
    const Position mark = nextMark(from, to);
    readParagraphLook(std::min(mark, to - 1));
    tell(from, mark, events);
    if (mark < to) tellMark(mark, events);
    from = mark + 1;
  }
}

/// The properties of a paragraph's mark hold for all of it.
void Walker::readParagraphLook(Position at) {
  const Piece& piece = text_.pieces.pieces()[text_.pieces.indexAt(at)];
  const std::uint32_t byte = piece.offsetOf(at);
  const bool isSameRun = hasParagraph_ && byte >= paragraphRun_.from && byte < paragraphRun_.to;
  if (isSameRun && piece.prm == paragraphPrm_) return;
  if (!isSameRun) paragraphRun_ = text_.paragraphs.at(byte, paragraphPlace_);
  paragraphPrm_ = piece.prm;
  hasParagraph_ = true;
  paragraph_ = text_.styles.paragraphLook(paragraphRun_.style);
  paragraph_.style = paragraphRun_.style;
  apply(paragraphRun_.properties, text_.data, paragraph_);
  std::array<std::uint8_t, 3> room{};
  apply(text_.pieces.properties(piece.prm, room), text_.data, paragraph_);
}

CharacterLook Walker::lookAt(const Piece& piece, Position at) {
  const std::uint32_t byte = piece.offsetOf(at);
  if (byte < run_.from || byte >= run_.to) run_ = text_.characters.at(byte, characterPlace_);
  CharacterLook look = text_.styles.characterLook(paragraph_.style);
  apply(run_.properties, text_.styles, paragraph_.style, look);
  std::array<std::uint8_t, 3> room{};
  if (piece.prm != 0) apply(text_.pieces.properties(piece.prm, room), text_.styles, paragraph_.style, look);
  return look;
}

/// Of narrow bytes few are not the unit itself.
void Walker::decode(const Piece& piece, Position from, Position to) {
  units_.resize(static_cast<std::size_t>(to - from));
  const std::uint8_t* const bytes = text_.document.data() + piece.offsetOf(from);
  if (!piece.narrow) {
    for (std::size_t unit = 0; unit < units_.size(); ++unit) units_[unit] = wideAt(bytes + unit * 2);
    return;
  }
  unsigned high = 0;
  for (std::size_t unit = 0; unit < units_.size(); ++unit) {
    units_[unit] = bytes[unit];
    high |= bytes[unit];
  }
  if (high < 0x80) return;
  for (std::size_t unit = 0; unit < units_.size(); ++unit) units_[unit] = fromNarrow(bytes[unit]);
}

void Walker::tell(Position from, Position to, Events& events) {
  if (from >= to) return;
  const auto pieces = text_.pieces.pieces();
  for (std::size_t i = text_.pieces.indexAt(from); from < to; ++i) {
    const Piece& piece = pieces[i];
    while (from < std::min(to, piece.to)) {
      const CharacterLook look = lookAt(piece, from);
      Position end = std::min(to, piece.to);
      if (run_.to < piece.end()) end = std::min(end, piece.at(run_.to + piece.width() - 1));
      decode(piece, from, end);
      events.text(from, units_, look);
      from = end;
    }
  }
}

void Walker::tellMark(Position at, Events& events) {
  const CharacterLook look = lookAt(text_.pieces.pieces()[text_.pieces.indexAt(at)], at);
  const char16_t unit = unitAt(at);
  if (unit == text::kPageBreak) return events.mark(at, Mark::section, 0, look);
  // Inner cells and rows end with paragraph marks that say so.
  const bool isInTable = paragraph_.inTable || paragraph_.depth > 0;
  const std::int32_t depth = isInTable ? std::max(paragraph_.depth, 1) : 0;
  if (unit == text::kCellMark)
    return events.mark(at, paragraph_.rowEnd ? Mark::row : Mark::cell, isInTable ? depth : 1, look);
  const bool isInner = depth > 1;
  if (isInner && paragraph_.innerRow) return events.mark(at, Mark::row, depth, look);
  events.mark(at, isInner && paragraph_.innerCell ? Mark::cell : Mark::paragraph, depth, look);
}

std::vector<FieldMark> Walker::fieldMarks(Position from, Position to) {
  std::vector<FieldMark> marks;
  struct Open {
    std::size_t begin;
    std::size_t separator;
  };
  constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  std::vector<Open> open;
  std::vector<bool> isWhole;
  paragraph_ = {};
  hasParagraph_ = false;
  forEachControl(from, to, [&](Position at, char16_t unit) {
    if (!isFieldUnit(unit)) return false;
    if (!lookAt(text_.pieces.pieces()[text_.pieces.indexAt(at)], at).special) return false;
    const bool fits = unit == text::kFieldBegin ||
                      (!open.empty() && (unit == text::kFieldEnd || open.back().separator == kNone));
    if (!fits) return false;
    marks.push_back({at, unit});
    isWhole.push_back(false);
    if (unit == text::kFieldBegin) {
      if (open.size() == document::ContentBuilder::kDeepest)
        throw damaged("fields lie in each other more than 1,000 deep");
      open.push_back({marks.size() - 1, kNone});
    } else if (unit == text::kFieldSeparator) {
      open.back().separator = marks.size() - 1;
    } else {
      isWhole.back() = isWhole[open.back().begin] = true;
      if (open.back().separator != kNone) isWhole[open.back().separator] = true;
      open.pop_back();
    }
    return false;
  });
  std::size_t kept = 0;
  for (std::size_t i = 0; i < marks.size(); ++i)
    if (isWhole[i]) marks[kept++] = marks[i];
  marks.resize(kept);
  return marks;
}

}  // namespace pluvo::doc
