#include "paragraph_pieces.h"

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
void ParagraphPieces::forEachColour(Position from, Position count, Visit visit) {
  if (count == 0) return;
  for (const auto& run : story_.highlight().runs(from, from + count))
    visit(run.from - from, run.to - from, run.value);
}

// ---- What the walk meets ----

ParagraphPieces::Item ParagraphPieces::itemHere(Kind kind, Extent bytes) const {
  return {
      kind, walker_.isPreformatted(), walker_.state().colour, walker_.inlines().top(), bytes, position_, 0,
      0};
}

void ParagraphPieces::begin() {
  from_ = position_;
  clear();
}

void ParagraphPieces::clear() {
  items_.clear();
  characters_.clear();
  hasFields_ = false;
}

void ParagraphPieces::between(Kind kind, Extent bytes) { items_.push_back(itemHere(kind, bytes)); }

void ParagraphPieces::text(Extent bytes) {
  items_.push_back(itemHere(Kind::text, bytes));
  items_.back().count = static_cast<Position>(bytes.size());
  position_ += items_.back().count;
}

void ParagraphPieces::character(const Character& character) {
  items_.push_back(itemHere(Kind::character, character.bytes));
  items_.back().count = character.count;
  items_.back().character = characters_.size();
  characters_.push_back(character);
  position_ += character.count;
  hasFields_ = hasFields_ || character.kind >= Character::Kind::fieldBegin;
}

// ---- What edits have made of it ----

void ParagraphPieces::pass() {
  if (hasFields_)
    for (const Item& item : items_) passField(item);
  clear();
}

void ParagraphPieces::take(const Paragraph& paragraph, bool isTableGone) {
  // Untouched text was passed by, and the end of the bytes stays after the text.
  script_.take(from_, [](const Step&) {});
  std::erase_if(items_,
                [&](const Item& item) { return item.bytes.begin >= paragraph.at && item.count == 0; });
  for (const Item& item : items_) takeItem(item, isTableGone);
  if (paragraph.hasMark) takeMark(position_ - 1, paragraph.at, walker_.markState().colour);
}

void ParagraphPieces::takeLastMark(std::size_t at) {
  script_.take(position_, [](const Step&) {});
  clear();
  takeMark(position_++, at, 0);
}

void ParagraphPieces::takeRowMark(std::size_t at) {
  script_.take(position_ - 1, [](const Step&) {});
  Item item = itemHere(Kind::gap, {at, at});
  item.from = position_ - 1;
  script_.take(position_, [&](const Step& step) {
    if (step.kind == Step::Kind::put) put(step, item);
  });
}

void ParagraphPieces::carry() {
  std::erase_if(pieces_, [](const Piece& piece) { return !piece.holdsText(); });
  for (Piece& piece : pieces_) piece.isOld = false;
}

void ParagraphPieces::takeItem(const Item& item, bool isTableGone) {
  if (item.kind != Kind::text && item.kind != Kind::character) {
    if (isTableGone) return;
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

void ParagraphPieces::passField(const Item& item) {
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

void ParagraphPieces::keep(const Step& step, const Item& item) {
  Piece piece;
  piece.kind = item.kind;
  piece.keepsBlanks = item.keepsBlanks;
  piece.colourWas = item.colour;
  piece.here = piece.inlines = item.inlines;
  const Position offset = step.original - item.from;
  if (item.kind == Kind::character) {
    piece.bytes = item.bytes;
    piece.character = characters_[item.character];
    piece.isNearEdit = piece.character.isOpenEnded && touched_.isNear(step.original + 1);
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
std::int32_t ParagraphPieces::placeFor(const Step& step, const Item& item) const {
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
void ParagraphPieces::put(const Step& step, const Item& item) {
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

void ParagraphPieces::putAlike(const Step& step, const Item& item) {
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
void ParagraphPieces::lookOfMark(Piece& piece, Position at) const {
  piece.isHidden = story_.visibility().valueAt(at) == text::kNowhere;
  piece.isDeleted = story_.structure().valueAt(at).deleted;
}

/// The end of the paragraph at hand, which has no bytes of its own.
void ParagraphPieces::takeMark(Position at, std::size_t bytes, std::uint8_t colourWas) {
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
