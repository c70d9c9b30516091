#include "paragraph_writer.h"

#include "base/ascii.h"
#include "base/utf.h"
#include "errors/document_error.h"
#include "new_text.h"

#include <algorithm>
#include <array>

namespace pluvo::formats::html {

using Kind = Piece::Kind;

namespace {

bool isLineEnd(const Piece& piece) {
  return piece.kind == Kind::character && piece.character.kind == Character::Kind::paragraph;
}
bool hasBytes(const Piece& mark) { return mark.kind == Kind::character; }
bool hasLook(const Piece& mark) { return mark.colour != 0 || mark.isHidden || mark.isDeleted; }
/// Of a mark: its bytes can stay.
bool isAsItWas(const Piece& mark) { return hasBytes(mark) && mark.isOld && mark.colour == mark.colourWas; }

}  // namespace

void ParagraphWriter::write(const Place& place, const std::vector<Piece>& pieces) {
  place_ = place;
  markup_.begin(place.from, place.inlinesFrom, place.block.preformatted);
  isClean_ = folds_ = true;
  isBeside_ = true;
  const bool isPre = place.block.name == Name::pre || place.block.name == Name::listing;
  atPreStart_ = isPre && place.from == place.block.tag.end;
  afterInvalid_ = endsInLineEnd_ = isHeld_ = isMarkDue_ = afterSection_ = wasDivided_ = isOpen_ = false;
  holdsText_ = std::ranges::any_of(pieces, &Piece::holdsText);
  for (const Piece& piece : pieces) {
    switch (piece.kind) {
      case Kind::text:
        writeText(piece);
        break;
      case Kind::character:
        writeCharacter(piece);
        break;
      case Kind::put:
        writeNew(piece);
        break;
      case Kind::mark:
        writeMark(piece);
        break;
      case Kind::gap:
        passGap(piece);
        break;
      case Kind::filler:
        isClean_ = isClean_ && !holdsText_;
        break;
      case Kind::tag:
        passTag(piece);
        break;
      case Kind::aside:
        passAside(piece);
        break;
      case Kind::gone:
        isClean_ = false;
        break;
    }
  }
  finish();
}

// ---- What stands between characters ----

/// White space that folds stays where it still does.
void ParagraphWriter::passGap(const Piece& piece) {
  if (piece.keepsBlanks && !atPreStart_) {
    // In front of an end tag: it would count were anything put behind it.
    isHeld_ = isClean_;
    return;
  }
  if (isClean_ && (isBeside_ || folds_)) {
    atPreStart_ = endsInLineEnd_ = false;
    if (piece.bytes.begin == markup_.copied()) copyThrough(piece);
  } else if (folds_ && piece.isOld) {
    markup_.leaveOutTo(piece.bytes.begin);
    markup_.copyTo(piece.bytes.end);
    atPreStart_ = false;
    isClean_ = false;
  } else {
    isClean_ = false;
  }
}

/// An element to which something may refer stays where its text goes.
void ParagraphWriter::passTag(const Piece& piece) {
  if (piece.here < 0) return;
  const Inline& element = walker_.inlines()[piece.here];
  if (!element.stands || element.tag.begin != piece.bytes.begin || copyThrough(piece)) return;
  markup_.leaveOutTo(piece.bytes.end);
  markup_.leadBack(piece.here);
  isClean_ = true;
  isBeside_ = false;
}

void ParagraphWriter::passAside(const Piece& piece) {
  if (copyThrough(piece)) return;
  markup_.closeTo(piece.here);
  markup_.leaveOutTo(piece.bytes.begin);
  markup_.copyTo(piece.bytes.end);
  isClean_ = false;
}

/// Copies all up to the end of a piece, where nothing has changed; false where something has.
bool ParagraphWriter::copyThrough(const Piece& piece) {
  isClean_ = isClean_ && !isHeld_;
  isHeld_ = false;
  const bool isMarkOld = isMarkDue_ && isAsItWas(dueMark_);
  if (!canCopy() || (isMarkDue_ && !isMarkOld)) return false;
  if (isMarkOld) {
    wrote(false);
    endsInLineEnd_ = true;
  }
  isMarkDue_ = false;
  markup_.copyWithTags(piece.bytes.end, piece.here);
  return true;
}

// ---- What stays ----

bool ParagraphWriter::keepsBlanks(std::int32_t inlines) const {
  const auto blanks = inlines < 0 ? State::Blanks::asAround : walker_.inlines()[inlines].state.blanks;
  return blanks == State::Blanks::asAround ? place_.block.preformatted : blanks == State::Blanks::count;
}

bool ParagraphWriter::isInComment(std::int32_t inlines) const {
  if (!walker_.inlines().has(Name::conditional) && inlines < 0) return false;
  return markup_.outside(inlines, [](const Inline& element) { return element.name == Name::conditional; }) !=
         inlines;
}

void ParagraphWriter::wrote(bool folds) {
  folds_ = folds;
  isOpen_ = true;
  atPreStart_ = endsInLineEnd_ = afterInvalid_ = false;
}

/// Copies what is to be as it was, with the tags in front of it; false where it is not.
bool ParagraphWriter::copies(const Piece& piece) {
  isClean_ = isClean_ && !isHeld_;
  isHeld_ = false;
  const bool isSame = piece.isOld && piece.colour == piece.colourWas && piece.partCount == 0;
  if (!isSame || (isMarkDue_ && !isAsItWas(dueMark_)) || !canCopy()) return false;
  const Character& character = piece.character;
  const bool isCharacter = piece.kind == Kind::character;
  const bool isBareBlank =
      isCharacter ? character.folds : !piece.keepsBlanks && markup_.old(piece.bytes).front() == ' ';
  if (isBareBlank && folds_ && !isBeside_) return false;
  if (isBareBlank && folds_) return false;
  if (isCharacter && character.isOpenEnded && piece.isNearEdit) return false;
  if ((afterInvalid_ || (isCharacter && character.isInvalid)) && !isBeside_) return false;
  isMarkDue_ = false;
  markup_.copyWithTags(piece.bytes.end, piece.here);
  const bool endsInBlank = isCharacter ? character.folds || character.isBreak
                                       : !piece.keepsBlanks && markup_.old(piece.bytes).back() == ' ';
  wrote(endsInBlank);
  afterInvalid_ = isCharacter && character.isInvalid;
  isBeside_ = true;
  return true;
}

/// Leads to the place of a piece, with the old tags up to there where they can stay.
void ParagraphWriter::arriveAt(const Piece& piece) {
  Piece before = piece;
  before.bytes.end = piece.bytes.begin;
  const bool leadsThere = piece.inlines == piece.here && markup_.addsTo(piece.here, piece.colour);
  if (!piece.isOld || !leadsThere || !copyThrough(before)) {
    settleMark();
    if (piece.isOld) markup_.leaveOutTo(piece.bytes.begin);
  }
  const std::uint8_t natural = piece.here < 0 ? 0 : walker_.inlines()[piece.here].state.colour;
  if (piece.isOld && piece.inlines == piece.here && piece.colour == natural) {
    markup_.leadBack(piece.here);
    isClean_ = true;
  } else {
    markup_.leadTo(piece.inlines, piece.colour);
    isClean_ = isClean_ && !piece.isOld;
  }
}

void ParagraphWriter::writeText(const Piece& piece) {
  if (copies(piece)) return;
  arriveAt(piece);
  std::string_view bytes = markup_.old(piece.bytes);
  if (keepsBlanks(piece.inlines) != piece.keepsBlanks) {
    putUnits(std::u16string(bytes.begin(), bytes.end()), piece);
    if (piece.isOld) markup_.leaveOutTo(piece.bytes.end);
    isBeside_ = false;
    return;
  }
  const bool isProtected = !piece.keepsBlanks && folds_ && bytes.front() == ' ';
  if (isProtected || afterInvalid_) {
    putUnit(static_cast<unsigned char>(bytes.front()), piece);
    bytes.remove_prefix(1);
    if (piece.isOld) markup_.leaveOutTo(piece.bytes.begin + 1);
  }
  if (bytes.empty()) {
    isBeside_ = false;
    return;
  }
  if (piece.isOld) {
    markup_.copyTo(piece.bytes.end);
  } else {
    markup_.put(bytes);
  }
  wrote(!piece.keepsBlanks && bytes.back() == ' ');
  isBeside_ = piece.isOld;
}

void ParagraphWriter::writeCharacter(const Piece& piece) {
  if (isLineEnd(piece)) return writeMark(piece);
  if (piece.character.kind == Character::Kind::section) return writeSection(piece);
  if (copies(piece)) return;
  const bool wasBeside = isBeside_;
  arriveAt(piece);
  const Character& character = piece.character;
  const std::size_t from = piece.partCount > 0 ? piece.partFrom : 0;
  const std::size_t count = piece.partCount > 0 ? piece.partCount : character.count;
  std::u16string units;
  for (std::size_t i = 0; i < count; ++i) units += character.unit(from + i);
  const bool isWhole = piece.partCount == 0;
  const bool isBlankElsewhere = keepsBlanks(piece.inlines) != piece.keepsBlanks &&
                                (units == u" " || units == u"\t") && character.bytes.size() < 8;
  const bool isNew = !isWhole || isBlankElsewhere || (character.folds && folds_) ||
                     (character.isOpenEnded && piece.isNearEdit) || (character.isInvalid && !wasBeside) ||
                     afterInvalid_;
  if (isNew) {
    putUnits(units, piece);
    if (piece.isOld) markup_.leaveOutTo(piece.bytes.end);
    isBeside_ = false;
    return;
  }
  if (piece.isOld) {
    markup_.copyTo(piece.bytes.end);
  } else {
    markup_.put(markup_.old(piece.bytes));
  }
  wrote(character.folds || character.isBreak);
  afterInvalid_ = character.isInvalid;
  isBeside_ = piece.isOld;
}

/// It ends its paragraph by itself.
void ParagraphWriter::writeSection(const Piece& piece) {
  if (!copies(piece)) {
    arriveAt(piece);
    if (piece.isOld) {
      markup_.copyTo(piece.bytes.end);
    } else {
      markup_.put(markup_.old(piece.bytes));
    }
    wrote(true);
    isBeside_ = piece.isOld;
  }
  isOpen_ = false;
  afterSection_ = true;
}

// ---- What is new ----

void ParagraphWriter::writeNew(const Piece& piece) {
  std::u16string_view rest = piece.units;
  while (!rest.empty()) {
    const std::size_t mark = std::min(rest.find(text::kParagraphMark), rest.size());
    if (mark > 0) {
      arriveAt(piece);
      const bool isDeletedHere = piece.inlines >= 0 && walker_.inlines()[piece.inlines].state.deleted;
      const bool isDeletedAnew = piece.isDeleted && !isDeletedHere;
      if (isDeletedAnew) markup_.put("<del>");
      putUnits(rest.substr(0, mark), piece);
      if (isDeletedAnew) markup_.put("</del>");
      isBeside_ = false;
    }
    if (mark == rest.size()) return;
    Piece end = piece;
    end.kind = Kind::mark;
    end.colourWas = 0;
    end.isOld = false;
    writeMark(end);
    // What follows goes behind it, and no old tag does.
    isClean_ = false;
    rest.remove_prefix(mark + 1);
  }
}

void ParagraphWriter::putUnits(std::u16string_view units, const Piece& piece) {
  while (!units.empty()) {
    const base::Utf16Character first = base::firstOfUtf16(units);
    if (base::isSurrogate(first.point))
      throw errors::DocumentError(errors::Problem::encoding,
                                  "The changes leave half of a character, which a page cannot hold; change "
                                  "the whole character.");
    putUnit(first.point, piece);
    units.remove_prefix(first.units);
  }
}

void ParagraphWriter::putUnit(char32_t point, const Piece& piece) {
  const bool keeps = keepsBlanks(piece.inlines);
  const bool isInSpaceRun = piece.inlines >= 0 && walker_.inlines()[piece.inlines].state.spaceRun;
  std::string bytes;
  switch (point) {
    case U' ':
      if (!keeps && folds_) return protectBlank(isInSpaceRun);
      markup_.put(" ");
      return wrote(!keeps);
    case text::kTab:
      markup_.put(
          keeps ? "\t" : "<span style='mso-tab-count:1" + markup_.against() + "'>&nbsp;&nbsp;&nbsp; </span>");
      return wrote(false);
    case text::kLineBreak:
      markup_.put("<br>");
      return wrote(true);
    case text::kPageBreak:
      markup_.put("<br clear=all style='mso-special-character:line-break;page-break-before:always'>");
      return wrote(true);
    case text::kColumnBreak:
      markup_.put("<br clear=all style='mso-column-break-before:always'>");
      return wrote(true);
    default:
      break;
  }
  if (afterInvalid_ && point < 0x80) {
    bytes = "&#" + std::to_string(static_cast<std::uint32_t>(point)) + ";";
  } else {
    appendCharacter(bytes, point, page_.charset(), isInComment(piece.inlines));
  }
  markup_.put(bytes);
  wrote(false);
}

void ParagraphWriter::protectBlank(bool isInSpaceRun) {
  markup_.put(isInSpaceRun ? std::string("&nbsp;")
                           : "<span style='mso-spacerun:yes" + markup_.against() + "'>&nbsp;</span>");
  wrote(false);
}

// ---- Ends of paragraphs ----

void ParagraphWriter::writeMark(const Piece& piece) {
  if (isMarkDue_) settleMark();
  isMarkDue_ = true;
  dueMark_ = piece;
}

/// What comes belongs to the next paragraph.
void ParagraphWriter::settleMark() {
  if (!isMarkDue_) return;
  isMarkDue_ = false;
  if (keepsBlanks(dueMark_.inlines)) {
    settleLineEnd();
  } else {
    divide();
    isOpen_ = false;
    folds_ = true;
    isClean_ = isBeside_ = afterInvalid_ = false;
  }
}

void ParagraphWriter::settleLineEnd() {
  const bool isOld = hasBytes(dueMark_) && dueMark_.isOld;
  const bool wasClean = isClean_;
  if (isOld && canCopy()) {
    markup_.copyWithTags(dueMark_.bytes.begin, dueMark_.here);
  } else if (isOld) {
    markup_.leaveOutTo(dueMark_.bytes.begin);
  }
  const std::uint8_t natural = dueMark_.here < 0 ? 0 : walker_.inlines()[dueMark_.here].state.colour;
  if (isOld && dueMark_.colour == natural) {
    markup_.leadBack(dueMark_.here);
    isClean_ = wasClean;
  } else {
    markup_.leadTo(dueMark_.inlines, dueMark_.colour);
    isClean_ = isOld && wasClean;
  }
  if (atPreStart_ && markup_.isAtBegin()) markup_.put("\n");
  if (isOld) {
    markup_.copyTo(dueMark_.bytes.end);
  } else {
    markup_.put("\n");
  }
  wrote(false);
  endsInLineEnd_ = true;
  isBeside_ = isOld;
}

/// What tells the look of a mark: an empty element of Word's, which programs pass by.
void ParagraphWriter::putMarkLook(std::int32_t inlines) {
  if (!hasLook(dueMark_)) return;
  const State state = inlines < 0 ? State() : walker_.inlines()[inlines].state;
  if (state.hidden == dueMark_.isHidden && state.deleted == dueMark_.isDeleted) {
    markup_.leadTo(inlines, dueMark_.colour);
    markup_.put("<o:p></o:p>");
  } else {
    // Within a highlight it would have its colour.
    markup_.leadTo(inlines, 0);
    markup_.put(markLook(dueMark_.colour, dueMark_.isHidden, dueMark_.isDeleted));
  }
}

/// A paragraph without text where there would be none.
void ParagraphWriter::putEmpty() {
  markup_.closeTo(place_.inlinesFrom);
  markup_.put("<p style=\"margin:0\">");
  if (hasLook(dueMark_)) markup_.put(markLook(dueMark_.colour, dueMark_.isHidden, dueMark_.isDeleted));
  markup_.put("</p>");
}

/// Ends the paragraph at hand, and begins one that looks like it.
void ParagraphWriter::divide() {
  const bool dividesBlock = place_.dividesBlock && !afterSection_;
  wasDivided_ = true;
  const bool isOwned = (traitsOf(place_.block.name) & kExistsEmpty) != 0;
  const bool isThere = isOpen_ || (dividesBlock && isOwned);
  if (!isThere) {
    putEmpty();
  } else {
    putMarkLook(dueMark_.inlines);
  }
  if (!dividesBlock) {
    markup_.closeTo(place_.inlinesFrom);
    if (isThere) markup_.put("<div></div>");
    return;
  }
  markup_.closeTo(place_.block.inlineTop);
  markup_.put("</" + std::string(markup_.old(place_.block.tagName)) + ">");
  markup_.put(copyOf(markup_.old(place_.block.tag)));
}

void ParagraphWriter::finish() {
  if (!isMarkDue_) {
    if (canCopy()) return;
    markup_.leadBack(place_.inlinesTo);
    return markup_.leaveOutTo(place_.to);
  }
  const bool isAlone = !place_.onlyAlone || !wasDivided_;
  const bool isThere = isOpen_ || (place_.existsEmpty && isAlone && !afterSection_);
  const bool isOldEnd =
      dueMark_.kind == Kind::mark && dueMark_.isOld && dueMark_.colour == dueMark_.colourWas;
  const bool keepsColour = !hasLook(dueMark_) || isBeside_;
  if (isThere && isOldEnd && keepsColour && canCopy() && !endsInLineEnd_) return;
  if (!isThere) {
    putEmpty();
  } else {
    putMarkLook(dueMark_.inlines);
  }
  markup_.leadBack(place_.inlinesTo);
  const std::string_view behind = page_.bytes().substr(place_.to, 2 + place_.block.tagName.size());
  const bool isPreEnd = (traitsOf(place_.block.name) & kPreformatted) != 0 && behind.starts_with("</") &&
                        base::equalsIgnoringAsciiCase(behind.substr(2), markup_.old(place_.block.tagName));
  if (endsInLineEnd_ && isPreEnd) markup_.put("\n");
  markup_.leaveOutTo(place_.to);
}

}  // namespace pluvo::formats::html
