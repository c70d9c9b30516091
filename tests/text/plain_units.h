#pragma once

#include "characters.h"
#include "text/units.h"

#include <algorithm>
#include <string>
#include <vector>

/// The rules of units, read front to back over a whole text, and counts and moves by looking at every unit.
/// In these texts characters 7 and 12 at even positions are marks.
namespace pluvo::text {

inline bool isTestMark(Position position) { return position % 2 == 0; }

class PlainUnits {
 public:
  explicit PlainUnits(std::u16string text)
      : text_(std::move(text)), length_(static_cast<Position>(text_.size())) {}

  /// Where units start.
  std::vector<Position> starts(Unit unit) const {
    std::vector<Position> starts;
    for (Position p = 0; p < length_;) {
      starts.push_back(p);
      p = unit == Unit::word ? endOfWord(p) : unit == Unit::sentence ? endOfSentence(p) : endOfParagraph(p);
    }
    return starts;
  }

 private:
  char16_t at(Position p) const { return 0 <= p && p < length_ ? text_[static_cast<std::size_t>(p)] : u'\0'; }
  bool isMark(Position p) const { return at(p) == 13 || (isOneOf(p, u"\a\f") && isTestMark(p)); }
  bool isOneOf(Position p, std::u16string_view units) const {
    return p < length_ && units.find(at(p)) != units.npos;
  }
  bool isAlone(Position p) const {
    return isOneOf(p, u"\x01\x02\x05\b\t\n\x0B\x0E\x13\x14\x15") || (isOneOf(p, u"\a\f") && !isMark(p));
  }

  bool isLetter(Position p) const {
    if (isHighSurrogate(at(p)) && isLowSurrogate(at(p + 1)))
      return isWordCharacter(joinSurrogates(at(p), at(p + 1)));
    if (isLowSurrogate(at(p)) && isHighSurrogate(at(p - 1)))
      return isWordCharacter(joinSurrogates(at(p - 1), at(p)));
    return isWordCharacter(at(p));
  }
  bool isDigit(Position p) const { return u'0' <= at(p) && at(p) <= u'9'; }
  bool isInWord(Position p) const {
    if (isOneOf(p, u"'\u2019\x1F\u00AD\u200C\u200D")) return isLetter(p - 1) && isLetter(p + 1);
    if (isOneOf(p, u".,")) return isDigit(p - 1) && isDigit(p + 1);
    return isLetter(p);
  }

  Position endOfWord(Position p) const {
    if (isMark(p)) return p + 1;
    if (isAlone(p)) {
      ++p;
    } else if (isInWord(p)) {
      while (p < length_ && isInWord(p)) ++p;
    } else {
      while (p < length_ && !isInWord(p) && !isMark(p) && !isAlone(p) && !isSpace(at(p))) ++p;
    }
    while (p < length_ && isSpace(at(p))) ++p;
    return p;
  }

  bool isGap(Position p) const {
    return !isMark(p) && (isOneOf(p, u"\t\n\x0B\f\x0E\u2028\u2029") || (p < length_ && isSpace(at(p))));
  }
  Position endOfSentence(Position p) const {
    while (p < length_) {
      if (isMark(p)) return p + 1;
      if (!isOneOf(p++, u".?!")) continue;
      while (
          isOneOf(p, u".?!)]}\"'\u00AB\u00BB\u2018\u2019\u201C\u201D\u2039\u203A\u2026\x02\x05\x13\x14\x15"))
        ++p;
      if (!isGap(p)) continue;
      while (isGap(p)) ++p;
      if (p < length_ && !isMark(p) && !isOneOf(p, u".?!")) return p;
    }
    return length_;
  }

  Position endOfParagraph(Position p) const {
    while (p < length_ && !isMark(p)) ++p;
    return std::min(p + 1, length_);
  }

  std::u16string text_;
  Position length_;
};

}  // namespace pluvo::text
