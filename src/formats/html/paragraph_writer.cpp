#include "paragraph_writer.h"

#include <algorithm>
#include <string>

namespace pluvo::formats::html {

using Kind = Piece::Kind;

namespace {

bool isBareBlank(const Piece& piece, std::string_view bytes, bool isAtEnd) {
  if (piece.kind == Kind::character) return piece.character.folds;
  return !piece.keepsBlanks && (isAtEnd ? bytes.back() : bytes.front()) == ' ';
}

}  // namespace

void ParagraphWriter::write(const Place& place, const std::vector<Piece>& pieces) {
  line_.begin(place);
  ends_.begin();
  isHeld_ = false;
  holdsText_ = std::ranges::any_of(pieces, &Piece::holdsText);
  for (const Piece& piece : pieces) writePiece(piece);
  ends_.finish();
}

void ParagraphWriter::writePiece(const Piece& piece) {
  switch (piece.kind) {
    case Kind::text:
      return writeText(piece);
    case Kind::character:
      return writeCharacter(piece);
    case Kind::put:
      return writeNew(piece);
    case Kind::mark:
      return ends_.take(piece);
    case Kind::gap:
      return passGap(piece);
    case Kind::filler:
      line_.isClean = line_.isClean && !holdsText_;
      return;
    case Kind::tag:
      return passTag(piece);
    case Kind::aside:
      return passAside(piece);
    case Kind::gone:
      line_.isClean = false;
      return;
  }
}

// ---- Between characters ----

/// White space that folds stays where it still does.
void ParagraphWriter::passGap(const Piece& piece) {
  Markup& markup = line_.markup;
  if (piece.keepsBlanks && !line_.atPreStart) {
    // In front of an end tag: it would count were anything put after it.
    isHeld_ = line_.isClean;
    return;
  }
  if (line_.isClean && (line_.isBeside || line_.folds)) {
    line_.atPreStart = line_.endsInLineEnd = false;
    if (piece.bytes.begin == markup.copied()) copyThrough(piece);
  } else if (line_.folds && piece.isOld) {
    markup.leaveOutTo(piece.bytes.begin);
    markup.copyTo(piece.bytes.end);
    line_.atPreStart = false;
    line_.isClean = false;
  } else {
    line_.isClean = false;
  }
}

/// An element to which something may refer stays where its text goes.
void ParagraphWriter::passTag(const Piece& piece) {
  if (piece.here < 0) return;
  const Inline& element = line_.walker.inlines()[piece.here];
  if (!element.stands || element.tag.begin != piece.bytes.begin || copyThrough(piece)) return;
  line_.markup.leaveOutTo(piece.bytes.end);
  line_.markup.leadBack(piece.here);
  line_.isClean = true;
  line_.isBeside = false;
}

void ParagraphWriter::passAside(const Piece& piece) {
  if (copyThrough(piece)) return;
  line_.markup.closeTo(piece.here);
  line_.markup.leaveOutTo(piece.bytes.begin);
  line_.markup.copyTo(piece.bytes.end);
  line_.isClean = false;
}

void ParagraphWriter::releaseHeld() {
  line_.isClean = line_.isClean && !isHeld_;
  isHeld_ = false;
}

/// Copies all up to the end of a piece, where nothing has changed; false where something has.
bool ParagraphWriter::copyThrough(const Piece& piece) {
  releaseHeld();
  if (!line_.canCopy() || (ends_.isDue() && !ends_.isDueAsItWas())) return false;
  ends_.copyDue();
  line_.markup.copyWithTags(piece.bytes.end, piece.here);
  return true;
}

// ---- What stays ----

/// Copies a piece that stays as it was, with the tags in front of it; false where it changes.
bool ParagraphWriter::copies(const Piece& piece) {
  releaseHeld();
  const bool isSame = piece.isOld && piece.colour == piece.colourWas && piece.partCount == 0;
  if (!isSame || (ends_.isDue() && !ends_.isDueAsItWas()) || !line_.canCopy()) return false;
  const Character& character = piece.character;
  const bool isCharacter = piece.kind == Kind::character;
  const std::string_view bytes = line_.markup.old(piece.bytes);
  if (isBareBlank(piece, bytes, false) && line_.folds) return false;
  if (isCharacter && character.isOpenEnded && piece.isNearEdit) return false;
  if ((line_.afterInvalid || (isCharacter && character.isInvalid)) && !line_.isBeside) return false;
  ends_.copyDue();
  line_.markup.copyWithTags(piece.bytes.end, piece.here);
  line_.wrote(isBareBlank(piece, bytes, true) || (isCharacter && character.isBreak));
  line_.afterInvalid = isCharacter && character.isInvalid;
  line_.isBeside = true;
  return true;
}

/// Leads to the place of a piece, with the old tags up to there where they can stay.
void ParagraphWriter::arriveAt(const Piece& piece) {
  Piece before = piece;
  before.bytes.end = piece.bytes.begin;
  const bool leadsThere = piece.inlines == piece.here && line_.markup.addsTo(piece.here, piece.colour);
  if (!piece.isOld || !leadsThere || !copyThrough(before)) {
    ends_.writeDue();
    if (piece.isOld) line_.markup.leaveOutTo(piece.bytes.begin);
  }
  const bool isNatural = piece.colour == line_.stateOf(piece.here).colour;
  if (piece.isOld && piece.inlines == piece.here && isNatural) {
    line_.markup.leadBack(piece.here);
    line_.isClean = true;
  } else {
    line_.markup.leadTo(piece.inlines, piece.colour);
    line_.isClean = line_.isClean && !piece.isOld;
  }
}

/// Its bytes from where it lay.
void ParagraphWriter::copyOrPut(const Piece& piece) {
  if (piece.isOld) {
    line_.markup.copyTo(piece.bytes.end);
  } else {
    line_.markup.put(line_.markup.old(piece.bytes));
  }
  line_.isBeside = piece.isOld;
}

/// Its text in other bytes.
void ParagraphWriter::putAnew(const Piece& piece, std::u16string_view units) {
  line_.put(units, piece.inlines);
  if (piece.isOld) line_.markup.leaveOutTo(piece.bytes.end);
  line_.isBeside = false;
}

void ParagraphWriter::writeText(const Piece& piece) {
  if (copies(piece)) return;
  arriveAt(piece);
  const std::string_view bytes = line_.markup.old(piece.bytes);
  if (line_.keepsBlanks(piece.inlines) != piece.keepsBlanks)
    return putAnew(piece, std::u16string(bytes.begin(), bytes.end()));
  Piece rest = piece;
  if ((line_.folds && isBareBlank(piece, bytes, false)) || line_.afterInvalid) {
    rest.bytes.end = piece.bytes.begin + 1;
    putAnew(rest, std::u16string(1, static_cast<unsigned char>(bytes.front())));
    rest.bytes = {piece.bytes.begin + 1, piece.bytes.end};
  }
  if (rest.bytes.empty()) return;
  copyOrPut(rest);
  line_.wrote(isBareBlank(piece, bytes, true));
}

/// Whether the bytes of a character are still read as it.
bool ParagraphWriter::isAsWritten(const Piece& piece, std::u16string_view units, bool wasBeside) const {
  const Character& character = piece.character;
  constexpr std::size_t kShorterThanTab = 8;  // no element stands for it
  const bool isBlankElsewhere = line_.keepsBlanks(piece.inlines) != piece.keepsBlanks &&
                                (units == u" " || units == u"\t") && character.bytes.size() < kShorterThanTab;
  return piece.partCount == 0 && !isBlankElsewhere && !(character.folds && line_.folds) &&
         !(character.isOpenEnded && piece.isNearEdit) && !(character.isInvalid && !wasBeside) &&
         !line_.afterInvalid;
}

void ParagraphWriter::writeCharacter(const Piece& piece) {
  const Character& character = piece.character;
  if (character.kind == Character::Kind::paragraph) return ends_.take(piece);
  if (character.kind == Character::Kind::section) return writeSection(piece);
  if (copies(piece)) return;
  const bool wasBeside = line_.isBeside;
  arriveAt(piece);
  const std::size_t count = piece.partCount > 0 ? piece.partCount : character.count;
  std::u16string units;
  for (std::size_t i = 0; i < count; ++i) units += character.unit(piece.partFrom + i);
  if (!isAsWritten(piece, units, wasBeside)) return putAnew(piece, units);
  copyOrPut(piece);
  line_.wrote(character.folds || character.isBreak);
  line_.afterInvalid = character.isInvalid;
}

void ParagraphWriter::writeSection(const Piece& piece) {
  if (!copies(piece)) {
    arriveAt(piece);
    copyOrPut(piece);
    line_.wrote(true);
  }
  ends_.passSection();
}

// ---- New text ----

void ParagraphWriter::writeNew(const Piece& piece) {
  std::u16string_view rest = piece.units;
  while (!rest.empty()) {
    const std::size_t mark = std::min(rest.find(text::kParagraphMark), rest.size());
    if (mark > 0) {
      arriveAt(piece);
      const bool isDeletedAnew = piece.isDeleted && !line_.stateOf(piece.inlines).deleted;
      if (isDeletedAnew) line_.markup.put("<del>");
      line_.put(rest.substr(0, mark), piece.inlines);
      if (isDeletedAnew) line_.markup.put("</del>");
      line_.isBeside = false;
    }
    if (mark == rest.size()) return;
    Piece end = piece;
    end.kind = Kind::mark;
    end.colourWas = 0;
    end.isOld = false;
    ends_.take(end);
    // New content goes after it, and no old tag does.
    line_.isClean = false;
    rest.remove_prefix(mark + 1);
  }
}

}  // namespace pluvo::formats::html
