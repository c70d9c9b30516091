#include "characters.h"
#include "unit_reader.h"
#include "unit_rules.h"

namespace pluvo::text {
namespace {

enum Kind : std::uint8_t {
  kWord,
  kBlank,
  kOther,
  kAlone,  ///< a word by itself, with the blanks behind it
  kMark,
  // Those from here on become one of the others by what stands beside them.
  kMarkOrAlone,
  kJoinsWords,
  kJoinsDigits,
  kSurrogate,
};

std::uint8_t kindOf(char16_t unit) {
  switch (unit) {
    case kParagraphMark:
      return kMark;
    case kCellMark:
    case kPageBreak:
      return kMarkOrAlone;
    case u'\n':
    case kTab:
    case kLineBreak:
    case kColumnBreak:
    case kPicture:
    case kFloatingPicture:
    case kNoteReference:
    case kCommentReference:
    case kFieldBegin:
    case kFieldSeparator:
    case kFieldEnd:
      return kAlone;
    case u'\'':
    case u'\u2019':
    case kOptionalHyphen:
    case u'\u00AD':
    case u'\u200C':
    case u'\u200D':
      return kJoinsWords;
    case u'.':
    case u',':
      return kJoinsDigits;
    default:
      if (isSpace(unit)) return kBlank;
      if (isHighSurrogate(unit) || isLowSurrogate(unit)) return kSurrogate;
      return isWordCharacter(unit) ? kWord : kOther;
  }
}

class WordReader {
 public:
  WordReader(const UnitText& text, Position from, Position to) : text_(text), units_(*text.text, from, to) {
    static const auto kNarrowKinds = narrowKinds(kindOf);
    units_.classify(kNarrowKinds, kindOf);
    for (Position i = 0; i < units_.length(); ++i) {
      if (units_.kind(i) >= kMarkOrAlone) units_.kind(i) = resolved(i);
    }
    if (from == 0 && to > 0) countFirst_ = true;
    first_ = from - units_.start();
    last_ = to - units_.start();
  }

  Position count() {
    Position starts = countFirst_ ? 1 : 0;
    for (Position i = countFirst_ ? 1 : first_; i < last_; ++i) starts += startsAt(i) ? 1 : 0;
    return starts;
  }

  Position nth(Position n) {
    for (Position i = first_;; ++i) {
      if ((i == 0 && countFirst_) || startsAt(i)) --n;
      if (n == 0) return units_.start() + i;
    }
  }

 private:
  bool startsAt(Position i) {
    const std::uint8_t before = units_.kind(i - 1);
    const std::uint8_t kind = units_.kind(i);
    return (before == kMark) | (kind >= kAlone) | ((kind != before) & (kind != kBlank));
  }

  std::uint8_t resolved(Position i) {
    const char16_t unit = units_.unit(i);
    switch (units_.kind(i)) {
      case kMarkOrAlone:
        return text_.isMark(units_.start() + i, unit) ? kMark : kAlone;
      case kJoinsWords:
        return isWordAt(i - 1) && isWordAt(i + 1) ? kWord : kOther;
      case kJoinsDigits:
        return isDigitAt(i - 1) && isDigitAt(i + 1) ? kWord : kOther;
      default:
        return isWordAt(i) ? kWord : kOther;
    }
  }
  bool isDigitAt(Position i) const { return isInside(i) && u'0' <= units_.unit(i) && units_.unit(i) <= u'9'; }
  bool isWordAt(Position i) const {
    if (!isInside(i)) return false;
    const char16_t unit = units_.unit(i);
    if (isHighSurrogate(unit) && isInside(i + 1) && isLowSurrogate(units_.unit(i + 1))) {
      return isWordCharacter(joinSurrogates(unit, units_.unit(i + 1)));
    }
    if (isLowSurrogate(unit) && isInside(i - 1) && isHighSurrogate(units_.unit(i - 1))) {
      return isWordCharacter(joinSurrogates(units_.unit(i - 1), unit));
    }
    return isWordCharacter(unit);
  }
  bool isInside(Position i) const { return 0 <= i && i < units_.length(); }

  const UnitText& text_;
  UnitReader units_;
  bool countFirst_ = false;
  Position first_ = 0;
  Position last_ = 0;
};

}  // namespace

Summary<1> WordRule::summarise(Position from, Position to) const {
  return {{WordReader(*text_, from, to).count()}, {0}};
}

Position WordRule::nth(Position from, Position to, std::uint8_t, Position n) const {
  return WordReader(*text_, from, to).nth(n);
}

}  // namespace pluvo::text
