// What edits have made of a paragraph.
#include "writer.h"

#include <algorithm>
#include <array>

namespace pluvo::formats::html {

using document::Step;
using text::Position;
using Kind = Piece::Kind;

namespace {

bool isMark(const Character& character) {
  return character.kind == Character::Kind::fieldBegin || character.kind == Character::Kind::fieldSeparator ||
         character.kind == Character::Kind::fieldEnd;
}

}  // namespace

template <class Visit>
void Writer::forEachColour(Position from, Position count, Visit visit) {
  if (count == 0) return;
  for (const auto& run : story_.highlight().runs(from, from + count))
    visit(run.from - from, run.to - from, run.value);
}

void Writer::takeItems() {
  for (const Item& item : items_) takeItem(item);
}

void Writer::takeItem(const Item& item) {
  if (item.kind != Kind::text && item.kind != Kind::character) {
    if (droppedTable_ > 0) return;
    Piece piece;
    piece.kind = item.kind;
    piece.bytes = item.bytes;
    piece.here = piece.inlines = item.inlines;
    piece.keepsBlanks = item.keepsBlanks;
    pieces_.push_back(piece);
    return;
  }
  script_.take(item.from + item.count, [&](const Step& step) {
    if (step.kind == Step::Kind::put) return put(step, item);
    if (step.kind == Step::Kind::keep) return keep(step, item);
    pieces_.emplace_back();
  });
  passField(item);
}

void Writer::passField(const Item& item) {
  if (item.kind != Kind::character) return;
  switch (characters_[item.character].kind) {
    case Character::Kind::fieldBegin:
      return inResult_.push_back(false);
    case Character::Kind::fieldSeparator:
      inResult_.back() = true;
      return;
    case Character::Kind::fieldEnd:
      return inResult_.pop_back();
    default:
      return;
  }
}

void Writer::keep(const Step& step, const Item& item) {
  Piece piece;
  piece.kind = item.kind;
  piece.keepsBlanks = item.keepsBlanks;
  piece.colourWas = item.colour;
  piece.here = piece.inlines = item.inlines;
  const Position offset = step.original - item.from;
  if (item.kind == Kind::character) {
    piece.bytes = item.bytes;
    piece.character = characters_[item.character];
    piece.isNearEdit = piece.character.isOpenEnded && isNearEdit(step.original + 1);
    forEachColour(step.at, step.length, [&](Position from, Position to, std::uint8_t colour) {
      piece.colour = colour;
      const bool isWhole = to - from == item.count;
      piece.partFrom = static_cast<std::uint8_t>(isWhole ? 0 : offset + from);
      piece.partCount = static_cast<std::uint8_t>(isWhole ? 0 : to - from);
      pieces_.push_back(piece);
    });
    return;
  }
  forEachColour(step.at, step.length, [&](Position from, Position to, std::uint8_t colour) {
    piece.colour = colour;
    piece.bytes = {item.bytes.begin + static_cast<std::size_t>(offset + from),
                   item.bytes.begin + static_cast<std::size_t>(offset + to)};
    pieces_.push_back(piece);
  });
}

/// In which element new text beside a character is to lie: not in one that makes something else of it.
std::int32_t Writer::placeFor(const Step& step, const Item& item) const {
  std::int32_t number = item.inlines;
  number = markup_.outside(number, [](const Inline& element) { return element.state.spaceRun; });
  const bool isDeleted = story_.structure().valueAt(step.at).deleted;
  if (!isDeleted)
    number = markup_.outside(number, [](const Inline& element) { return element.state.deleted; });
  if (item.kind != Kind::character || !isMark(characters_[item.character])) return number;
  const Character::Kind kind = characters_[item.character].kind;
  const bool hasResult = !inResult_.empty() && inResult_.back();
  const bool isOutside = kind == Character::Kind::fieldBegin       ? !step.after
                         : kind == Character::Kind::fieldSeparator ? step.after
                                                                   : step.after || hasResult;
  if (!isOutside) return number;
  return markup_.outside(number, [](const Inline& element) { return element.name == Name::conditional; });
}

/// New text of several edits may be deleted in part.
void Writer::put(const Step& step, const Item& item) {
  Step part = step;
  for (Position from = step.at; from < step.at + step.length; from = part.at + part.length) {
    const bool isDeleted = story_.structure().valueAt(from).deleted;
    part.at = from;
    part.length = 0;
    for (const auto& run : story_.structure().runs(from, step.at + step.length)) {
      if (run.value.deleted != isDeleted) break;
      part.length = run.to - from;
    }
    part.units =
        step.units.substr(static_cast<std::size_t>(from - step.at), static_cast<std::size_t>(part.length));
    putAlike(part, item);
  }
}

void Writer::putAlike(const Step& step, const Item& item) {
  Piece piece;
  piece.kind = Kind::put;
  piece.keepsBlanks = item.keepsBlanks;
  piece.here = item.inlines;
  piece.inlines = placeFor(step, item);
  std::size_t at = step.after ? item.bytes.end : item.bytes.begin;
  if (item.kind == Kind::text)
    at = item.bytes.begin + static_cast<std::size_t>(step.original - item.from) + (step.after ? 1 : 0);
  piece.bytes = {at, at};
  lookOfMark(piece, step.at);
  forEachColour(step.at, step.length, [&](Position from, Position to, std::uint8_t colour) {
    piece.colour = colour;
    piece.units = step.units.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
    pieces_.push_back(piece);
  });
}

/// The end of a paragraph, but for its colour.
void Writer::lookOfMark(Piece& piece, Position at) const {
  piece.isHidden = !walker_.block().hidden && story_.visibility().valueAt(at) == text::kNowhere;
  piece.isDeleted = !walker_.block().deleted && story_.structure().valueAt(at).deleted;
}

/// The end of the paragraph at hand, which has no bytes of its own.
void Writer::takeMark(Position at, std::size_t bytes, bool hasMark, std::uint8_t colourWas) {
  if (!hasMark) return;
  Item item = itemHere(Kind::mark, {bytes, bytes});
  item.from = at;
  item.count = 1;
  script_.take(at + 1, [&](const Step& step) {
    if (step.kind == Step::Kind::put) return put(step, item);
    if (step.kind == Step::Kind::drop) {
      pieces_.emplace_back();
      return;
    }
    Piece piece;
    piece.kind = Kind::mark;
    piece.colour = story_.highlight().valueAt(step.at);
    lookOfMark(piece, step.at);
    piece.colourWas = colourWas;
    piece.bytes = item.bytes;
    piece.here = item.inlines;
    piece.inlines = placeFor(step, item);
    piece.keepsBlanks = item.keepsBlanks;
    pieces_.push_back(piece);
  });
}

}  // namespace pluvo::formats::html
