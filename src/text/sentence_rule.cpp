#include "characters.h"
#include "unit_reader.h"
#include "unit_rules.h"
#include "utf8.h"
#include "vectors.h"

#include <algorithm>
#include <bit>
#include <span>

namespace pluvo::text {
namespace {

enum Kind : std::uint8_t {
  kOther,
  kCloser,  ///< may stand between a stop and the blanks after it
  kBlank,
  kStop,
  kMark,
  kPerhapsMark =
      UnitReader::kUnresolved,  ///< a cell or section mark, or an ordinary character 7 or page break
};

std::uint8_t kindOf(char16_t unit) {
  switch (unit) {
    case u'.':
    case u'?':
    case u'!':
      return kStop;
    case kParagraphMark:
      return kMark;
    case kCellMark:
    case kPageBreak:
      return kPerhapsMark;
    case kTab:
    case u'\n':
    case kLineBreak:
    case kColumnBreak:
    case u'\u2028':
    case u'\u2029':
      return kBlank;
    case u')':
    case u']':
    case u'}':
    case u'"':
    case u'\'':
    case u'\u00AB':
    case u'\u00BB':
    case u'\u2018':
    case u'\u2019':
    case u'\u201C':
    case u'\u201D':
    case u'\u2039':
    case u'\u203A':
    case u'\u2026':
    case kNoteReference:
    case kCommentReference:
    case kFieldBegin:
    case kFieldSeparator:
    case kFieldEnd:
      return kCloser;
    default:
      return isSpace(unit) ? kBlank : kOther;
  }
}

/// Surely no more than a letter, as nearly all units are.
bool isOther(char16_t unit) { return (unit & 0xFF80U) != 0x2000 && unit != 0x1680 && unit != 0x3000; }

using State = SentenceRule::State;

struct Step {
  std::uint8_t next;
  std::uint8_t starts;  ///< a sentence starts at the unit read
};

/// By state and kind.
constexpr Step kSteps[4][5] = {
    {{State::kWithin, 0},
     {State::kWithin, 0},
     {State::kWithin, 0},
     {State::kAfterStop, 0},
     {State::kAfterMark, 0}},
    {{State::kWithin, 0},
     {State::kAfterStop, 0},
     {State::kAfterBlanks, 0},
     {State::kAfterStop, 0},
     {State::kAfterMark, 0}},
    {{State::kWithin, 1},
     {State::kWithin, 1},
     {State::kAfterBlanks, 0},
     {State::kAfterStop, 0},
     {State::kAfterMark, 0}},
    {{State::kWithin, 1},
     {State::kWithin, 1},
     {State::kWithin, 1},
     {State::kAfterStop, 1},
     {State::kAfterMark, 1}},
};

class SentenceReader {
 public:
  SentenceReader(const UnitText& text, Position from, Position to) : units_(*text.text, from, to) {
    static const auto kNarrowKinds = narrowKinds(kindOf);
    units_.classify(
        kNarrowKinds, kOther, [](char16_t unit) { return isOther(unit); }, kindOf, kOther,
        [&](Position i) {
          const char16_t unit = units_.unit(i);
          if (text.isMark(units_.start() + i, unit)) return kMark;
          return unit == kPageBreak ? kBlank : kOther;
        });
    first_ = from - units_.start();
    last_ = to - units_.start();
  }

  Summary<4> summary() {
    auto summary = Summary<4>::ofNothing();
    Position i = first_;
    while (i < last_ && !summary.isOneOutcome()) {
      const std::uint8_t kind = units_.kind(i);
      for (std::size_t state = 0; state < 4; ++state) {
        const Step& step = kSteps[summary.outcomes[state]][kind];
        summary.counts[state] += step.starts;
        summary.outcomes[state] = step.next;
      }
      // Only blanks and closing marks leave states apart, and more of the same change nothing.
      do ++i;
      while (i < last_ && units_.kind(i) == kind && !summary.isOneOutcome());
    }
    std::uint8_t state = summary.outcomes[0];
    Position starts = 0;
    while (i < last_) starts += read(i, state);
    for (Position& count : summary.counts) count += starts;
    if (summary.isOneOutcome()) summary.outcomes.fill(state);
    return summary;
  }

  /// The sentences that start at position or after it. None where what lies in front does not tell the state.
  std::optional<Position> countFrom(Position position) {
    const Position from = position - units_.start();
    Position i = from;
    while (i > first_ && !tellsState(units_.kind(i - 1))) --i;
    if (i == first_ && units_.start() + first_ > 0) return std::nullopt;
    std::uint8_t state =
        i == first_ ? SentenceRule::kFirstState : kSteps[State::kWithin][units_.kind(i - 1)].next;
    while (i < from) state = kSteps[state][units_.kind(i++)].next;
    Position starts = 0;
    while (i < last_) starts += read(i, state);
    return starts;
  }

  Position nth(std::uint8_t state, Position n) {
    for (Position i = first_; i < last_;) {
      n -= read(i, state);
      if (n == 0) return units_.start() + i - 1;
    }
    return units_.start() + last_;  // another program wrote into the file
  }

 private:
  /// Whether every state has the same one after it.
  static bool tellsState(std::uint8_t kind) { return kind != kBlank && kind != kCloser; }

  /// Reads a unit, or many that change nothing, up to the end at most; whether a sentence starts at the last.
  Position read(Position& i, std::uint8_t& state) {
    if (state == State::kWithin) {
      while (i + 1 < last_ && units_.kind(i) < kStop) ++i;
    }
    const Step& step = kSteps[state][units_.kind(i++)];
    state = step.next;
    return step.starts;
  }

  UnitReader units_;
  Position first_ = 0;
  Position last_ = 0;
};

using Bytes = std::span<const std::uint8_t>;
using ByteKinds = std::array<std::uint8_t, 256>;

/// Begins a character of UTF-8 that may be no letter.
constexpr std::uint8_t kLead = 1 | UnitReader::kUnresolved;

/// Of units of a byte each, in a file whose line feeds are marks.
ByteKinds fileKinds() {
  ByteKinds kinds = narrowKinds(kindOf);
  kinds[u'\n'] = kMark;
  return kinds;
}

/// Of UTF-8. Bytes of other characters stand for letters, which change nothing after the first.
ByteKinds utf8Kinds() {
  ByteKinds kinds = fileKinds();
  std::fill(kinds.begin() + 0x80, kinds.end(), std::uint8_t{kOther});
  for (const int lead : {0xC2, 0xE1, 0xE2, 0xE3}) kinds[static_cast<std::size_t>(lead)] = kLead;
  return kinds;
}

/// All bytes that change something within a sentence, and other control characters.
Vector mayMatter(Vector bytes) {
  const Vector stops = either(equal(bytes, '.'), either(equal(bytes, '?'), equal(bytes, '!')));
  return either(stops, equal(smaller(bytes, fill(std::uint8_t{0x1F})), bytes, std::uint8_t{}));
}

/// The first of them from an offset on, else the end.
std::size_t nextThatMayMatter(Bytes bytes, std::size_t offset, const ByteKinds& kinds) {
  constexpr std::size_t kAtOnce = sizeof(Vector);
  while (offset + kAtOnce <= bytes.size()) {
    const std::uint64_t found = bits(mayMatter(load(bytes.data() + offset)));
    if (found != 0) return offset + static_cast<std::size_t>(std::countr_zero(found));
    offset += kAtOnce;
  }
  while (offset < bytes.size() && kinds[bytes[offset]] < kStop) ++offset;
  return offset;
}

/// The sentences that start after the first unit. None where the bytes do not tell.
std::optional<Position> startsIn(Bytes bytes, const ByteKinds& kinds, bool isUtf8) {
  std::uint8_t state = State::kWithin;
  Position starts = 0;
  for (std::size_t i = 0; i < bytes.size();) {
    std::uint8_t kind = kinds[bytes[i]];
    std::size_t width = 1;
    if (kind == kLead) {
      const Utf8Character character = utf8At(bytes, i);
      kind = kindOf(static_cast<char16_t>(character.point));
      width = character.bytes;
    }
    if (kind == kPerhapsMark) return std::nullopt;
    // What lies in front of these decides.
    if (i == 0 && (kind == kBlank || kind == kCloser)) return std::nullopt;
    const bool endsPair = isUtf8 && bytes[i] == '\n' && i > 0 && bytes[i - 1] == '\r';
    if (!endsPair) {
      starts += kSteps[state][kind].starts;
      state = kSteps[state][kind].next;
    }
    i += width;
    if (state == State::kWithin) i = nextThatMayMatter(bytes, i, kinds);
  }
  return starts;
}

/// Those in [from + 1, to) of a text.
std::optional<Position> startsIn(const PieceText& text, Position from, Position to) {
  static const ByteKinds kUnits = narrowKinds(kindOf);
  static const ByteKinds kFileUnits = fileKinds();
  static const ByteKinds kUtf8 = utf8Kinds();
  if (const auto bytes = text.bytesOf(from, to)) return startsIn(bytes->inside(), kUtf8, true);
  const auto units = text.stretchOf(from, to);
  if (!units || units->narrow == nullptr) return std::nullopt;
  return startsIn({units->narrow, static_cast<std::size_t>(units->length)},
                  units->lineFeedIsMark ? kFileUnits : kUnits, false);
}

}  // namespace

Summary<4> SentenceRule::summarise(Position from, Position to) const {
  return SentenceReader(*text_, from, to).summary();
}

std::optional<Position> SentenceRule::count(Position seen, Position from, Position to) const {
  if (from > 0) {
    if (const auto starts = startsIn(*text_->text, from - 1, to)) return starts;
  }
  return SentenceReader(*text_, seen, to).countFrom(from);
}

Position SentenceRule::nth(Position from, Position to, std::uint8_t state, Position n) const {
  return SentenceReader(*text_, from, to).nth(state, n);
}

}  // namespace pluvo::text
