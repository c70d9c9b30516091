#include "characters.h"
#include "unit_reader.h"
#include "unit_rules.h"

#include <algorithm>
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

using ByteKinds = std::array<std::uint8_t, 256>;

/// Whether bytes surely begin within a sentence and end none.
bool goesOn(std::span<const std::uint8_t> bytes, const ByteKinds& kinds) {
  if (kinds[bytes[0]] != kOther) return false;
  bool mayEnd = false;
  for (const std::uint8_t byte : bytes) mayEnd |= kinds[byte] >= kStop;
  return !mayEnd;
}

/// The same of [from, to) of a text.
bool goesOn(const PieceText& text, Position from, Position to) {
  static const ByteKinds kUnits = narrowKinds(kindOf);
  static const ByteKinds kFileUnits = [] {
    ByteKinds kinds = kUnits;
    kinds[u'\n'] = kMark;
    return kinds;
  }();
  // Bytes of other characters stand for letters, which change nothing after the first.
  static const ByteKinds kUtf8 = [] {
    ByteKinds kinds = kFileUnits;
    std::fill(kinds.begin() + 0x80, kinds.end(), std::uint8_t{kOther});
    return kinds;
  }();
  if (const auto bytes = text.bytesOf(from, to)) {
    const std::span<const std::uint8_t> inside = bytes->inside();
    return inside[0] < 0x80 && goesOn(inside, kUtf8);
  }
  const auto units = text.stretchOf(from, to);
  if (!units || units->narrow == nullptr) return false;
  return goesOn({units->narrow, static_cast<std::size_t>(units->length)},
                units->lineFeedIsMark ? kFileUnits : kUnits);
}

}  // namespace

Summary<4> SentenceRule::summarise(Position from, Position to) const {
  return SentenceReader(*text_, from, to).summary();
}

std::optional<Position> SentenceRule::count(Position seen, Position from, Position to) const {
  if (from > 0 && goesOn(*text_->text, from - 1, to)) return 0;
  return SentenceReader(*text_, seen, to).countFrom(from);
}

Position SentenceRule::nth(Position from, Position to, std::uint8_t state, Position n) const {
  return SentenceReader(*text_, from, to).nth(state, n);
}

}  // namespace pluvo::text
