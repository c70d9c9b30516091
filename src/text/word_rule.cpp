#include "characters.h"
#include "unit_reader.h"
#include "unit_rules.h"
#include "utf8.h"

#include <algorithm>
#include <bit>
#include <cstring>

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

bool startsWord(std::uint8_t before, std::uint8_t kind) {
  return (before == kMark) | (kind >= kAlone) | ((kind != before) & (kind != kBlank));
}

/// The words that start at kinds[from] and after it, in front of kinds[to]. Summed so that compilers do it by
/// vectors: in bytes, as often as these do not overflow.
Position countStarts(const std::uint8_t* kinds, Position from, Position to) {
  constexpr Position kSummedAtOnce = 255;
  Position starts = 0;
  for (Position done = from; done < to; done += kSummedAtOnce) {
    const Position end = std::min(to, done + kSummedAtOnce);
    std::uint8_t sum = 0;
    for (Position i = done; i < end; ++i)
      sum = static_cast<std::uint8_t>(sum + startsWord(kinds[i - 1], kinds[i]));
    starts += sum;
  }
  return starts;
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

  Position count() const { return countStarts(units_.kindsFrom(0), first_, last_); }

  Position nth(Position n) const {
    for (Position i = first_; i < last_; ++i) {
      if (startsWord(units_.kind(i - 1), units_.kind(i)) && --n == 0) return units_.start() + i;
    }
    return units_.start() + last_;  // another program wrote into the file
  }

 private:
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

/// Reads words in UTF-8. Each byte has the kind of its character, so within one no word starts.
class ByteWords {
 public:
  /// How many start in a span with a character on both sides; none where its bytes do not tell.
  static std::optional<Position> count(const PieceText::Bytes& bytes) {
    if (bytes.all.size() > kLongest) return std::nullopt;
    ByteWords words(bytes.all);
    if (!words.classify()) return std::nullopt;
    const auto from = static_cast<Position>(bytes.from);
    const auto to = static_cast<Position>(bytes.to);
    return countStarts(words.kinds(), from, to) - utf8PairsIn(bytes.inside());
  }

 private:
  using Bytes = std::span<const std::uint8_t>;
  static constexpr std::size_t kLongest = std::size_t{3} * UnitReader::kLongest;
  using Word = std::uint64_t;

  explicit ByteWords(Bytes bytes) : bytes_(bytes) { kinds_[0] = kMark; }

  std::uint8_t* kinds() { return kinds_.data() + 1; }

  bool classify() {
    static const auto kByteKinds = [] {
      auto kinds = narrowKinds(kindOf);
      kinds[u'\n'] = kMark;
      std::fill(kinds.begin() + 0x80, kinds.end(), std::uint8_t{kWord});
      return kinds;
    }();
    const std::uint8_t* const bytes = bytes_.data();
    std::uint8_t* const kinds = this->kinds();
    std::uint8_t all = 0;
    for (std::size_t i = 0; i < bytes_.size(); ++i) all |= kinds[i] = kByteKinds[bytes[i]];
    markOthers();
    return (all & UnitReader::kUnresolved) == 0 || resolve();
  }

  bool resolve() {
    for (std::size_t i = 0; i < bytes_.size(); ++i) {
      const std::uint8_t kind = kinds()[i];
      if ((kind & UnitReader::kUnresolved) == 0) continue;
      if (kind == kMarkOrAlone) return false;  // depends on the document
      kinds()[i] = joins(kind, i, i + 1) ? kWord : kOther;
    }
    return true;
  }

  /// Characters of several bytes are letters, mostly. Their first bytes have both upper bits.
  void markOthers() {
    constexpr Word kHighBits = ~Word{0} / 0xFF * 0x80;
    std::size_t i = 0;
    for (; i + sizeof(Word) <= bytes_.size(); i += sizeof(Word)) {
      Word word = 0;
      std::memcpy(&word, bytes_.data() + i, sizeof word);
      static_assert(std::endian::native == std::endian::little, "the first byte is the lowest");
      for (Word leads = word & word << 1U & kHighBits; leads != 0; leads &= leads - 1)
        markUnlessLetter(i + static_cast<std::size_t>(std::countr_zero(leads)) / 8);
    }
    for (; i < bytes_.size(); ++i)
      if (bytes_[i] >= 0xC0) markUnlessLetter(i);
  }

  /// Without a branch for the lengths, which nothing could foretell.
  bool isLetterOfUnit(std::size_t at) const {
    if (bytes_.size() - at < 3) return false;
    const unsigned lead = bytes_[at];
    const unsigned second = bytes_[at + 1] & 0x3FU;
    const unsigned third = bytes_[at + 2] & 0x3FU;
    const unsigned isTwo = lead < 0xE0 ? 1 : 0;
    const unsigned unit = ((lead & (0x0FU | isTwo << 4U)) << 12U | second << 6U | third) >> 6U * isTwo;
    return (lead < 0xF0) & isWordUnit(static_cast<char16_t>(unit));
  }

  void markUnlessLetter(std::size_t at) {
    if (isLetterOfUnit(at)) return;
    const Utf8Character character = utf8At(bytes_, at);
    std::uint8_t kind = isWordCharacter(character.point) ? kWord : kOther;
    if (character.point <= 0xFFFF) kind = kindOf(static_cast<char16_t>(character.point));
    const std::size_t after = at + character.bytes;
    if (kind == kJoinsWords) kind = joins(kind, at, after) ? kWord : kOther;
    std::fill(kinds() + at, kinds() + after, kind);
  }

  /// Whether a character joins those around it.
  bool joins(std::uint8_t kind, std::size_t at, std::size_t after) const {
    if (at == 0 || after >= bytes_.size()) return false;
    const char32_t left = utf8At(bytes_, utf8Before(bytes_, 0, at)).point;
    const char32_t right = utf8At(bytes_, after).point;
    if (kind == kJoinsWords) return isWordCharacter(left) && isWordCharacter(right);
    const auto isDigit = [](char32_t point) { return U'0' <= point && point <= U'9'; };
    return isDigit(left) && isDigit(right);
  }

  Bytes bytes_;
  std::array<std::uint8_t, 1 + kLongest> kinds_;
};

}  // namespace

Summary<1> WordRule::summarise(Position from, Position to) const {
  constexpr Position kAround = 1;
  // A caller mostly asked for the unit in front; its place is remembered.
  const bool skipsOne = from > 0;
  if (auto bytes = from < to ? text_->text->bytesOf(from - skipsOne, to, kAround) : std::nullopt) {
    if (skipsOne) bytes->from += utf8At(bytes->inside(), 0).bytes;
    if (const auto starts = ByteWords::count(*bytes)) return {{*starts}, {0}};
  }
  return {{WordReader(*text_, from, to).count()}, {0}};
}

Position WordRule::nth(Position from, Position to, std::uint8_t, Position n) const {
  return WordReader(*text_, from, to).nth(n);
}

}  // namespace pluvo::text
