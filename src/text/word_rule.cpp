#include "characters.h"
#include "unit_reader.h"
#include "unit_rules.h"

namespace pluvo::text {
namespace {

enum Kind : std::uint8_t {
  kWord,
  kBlank,
  kOther,
  kAlone,  ///< a word by itself, with the blanks after it
  kMark,
  kMarkOrAlone = UnitReader::kUnresolved,
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
    units_.classify(
        kNarrowKinds, kWord, [](char16_t unit) { return isWordUnit(unit); }, kindOf, kMark,
        [&](Position i) { return resolved(i); });
    first_ = from - units_.start();
    last_ = to - units_.start();
  }

  /// Summed so that compilers do it by vectors: in bytes, as often as these do not overflow.
  Position count() const {
    Position starts = 0;
    for (Position done = first_; done < last_; done += kSummedAtOnce) {
      const std::uint8_t* kinds = units_.kindsFrom(done);
      const Position length = std::min(last_ - done, kSummedAtOnce);
      std::uint8_t sum = 0;
      for (Position i = 0; i < length; ++i)
        sum = static_cast<std::uint8_t>(sum + startsWord(kinds[i - 1], kinds[i]));
      starts += sum;
    }
    return starts;
  }

  Position nth(Position n) const {
    for (Position i = first_;; ++i) {
      if (startsWord(units_.kind(i - 1), units_.kind(i)) && --n == 0) return units_.start() + i;
    }
  }

 private:
  static constexpr Position kSummedAtOnce = 255;

  static bool startsWord(std::uint8_t before, std::uint8_t kind) {
    return (before == kMark) | (kind >= kAlone) | ((kind != before) & (kind != kBlank));
  }

  std::uint8_t resolved(Position i) const {
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
