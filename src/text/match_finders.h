#pragma once

#include "byte_needle.h"
#include "matcher.h"
#include "matches_ahead.h"
#include "needle.h"
#include "text/bytes_text.h"
#include "text/original.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace pluvo::text {

/// Finds the matches in an original whose units lie in memory, from one of them on. Places are units.
template <class Units>
class UnitFinder {
 public:
  UnitFinder(const Needle& needle, const OriginalText& original, Position from)
      : start_(from),
        size_(static_cast<std::size_t>(original.length())),
        matcher_(matcherOf(needle, original.stretch(from, original.length()))) {}

  PlacedMatch start() const { return PlacedMatch::at(start_, static_cast<std::size_t>(start_), 0); }
  std::size_t size() const { return size_; }
  bool gaveUp() const { return matcher_.isLinear(); }
  /// In front of which place it looks for a match that begins in front of a unit.
  std::size_t boundOf(Position end, const PlacedMatch& /*last*/) const {
    return static_cast<std::size_t>(std::max(end, 0));
  }

  /// The next match, unless it surely does not begin in front of a place.
  PlacedMatch next(std::size_t end) {
    const auto start = static_cast<std::size_t>(start_);
    matcher_.endBefore(end - std::min(start, end));
    const std::size_t at = matcher_.next();
    if (at == matcher_.none()) return {};
    return PlacedMatch::at(static_cast<Position>(start + at), start + at, 0);
  }
  void learn(const PlacedMatch& /*match*/) const {}

 private:
  static Matcher<Units> matcherOf(const Needle& needle, const Stretch& stretch) {
    const auto length = static_cast<std::size_t>(stretch.length);
    if constexpr (std::is_same_v<Units, NarrowUnits>) {
      return {needle, needle.narrow(stretch.lineFeedIsMark), length, stretch.narrow,
              needle.narrowForms(stretch.lineFeedIsMark).data()};
    } else {
      return {needle, needle.wide(), length, stretch.wide};
    }
  }

  Position start_;
  std::size_t size_;
  Matcher<Units> matcher_;
};

/// The same in a text that lies in bytes, of one kind, whose calls then cost less. Places are bytes, and
/// units are counted from match to match.
template <class Text>
class ByteFinder {
 public:
  ByteFinder(const Needle& needle, const OriginalText& original, Position from)
      : text_(static_cast<const Text*>(original.inBytes())),
        length_(static_cast<Position>(needle.length())),
        start_(startAt(*text_, from)),
        position_(start_.position),
        offset_(start_.from()),
        matcher_(needle.in(*text_), text_->bytes().subspan(start_.from())) {}

  PlacedMatch start() const { return start_; }
  std::size_t size() const { return text_->bytes().size(); }
  bool gaveUp() const { return matcher_.gaveUpAt().has_value(); }
  /// No unit has more bytes than CR LF in UTF-16. An anchor lies no farther on than the whole text searched
  /// for.
  std::size_t boundOf(Position end, const PlacedMatch& last) const {
    constexpr std::int64_t kMostBytes = 4;
    const std::int64_t most = kMostBytes * (end - std::int64_t{last.position} + length_);
    return last.from() + static_cast<std::size_t>(std::max<std::int64_t>(most, 0));
  }

  PlacedMatch next(std::size_t end) {
    const std::size_t start = start_.from();
    matcher_.endBefore(end - std::min(start, end));
    const ByteNeedle::Match match = matcher_.next();
    if (match.from == ByteNeedle::kNone) return {};
    const std::size_t offset = start + match.from;
    // Of places near by nothing is asked that other threads write to all the time.
    constexpr std::size_t kNear = 1024;
    position_ = offset - offset_ <= kNear ? position_ + static_cast<Position>(text_->unitsIn(offset_, offset))
                                          : text_->positionAt(offset);
    offset_ = offset;
    return PlacedMatch::at(position_, offset, start + match.to);
  }
  /// Edits begin and end where matches do.
  void learn(const PlacedMatch& match) const {
    text_->learn(match.position, match.from());
    text_->learn(match.position + length_, match.to());
  }

 private:
  static PlacedMatch startAt(const Text& text, Position from) {
    BytesText::Place place = text.placeOf(from);
    if (place.insidePair) place = text.placeOf(++from);
    return PlacedMatch::at(from, place.offset, place.offset);
  }

  const Text* text_;
  Position length_;
  PlacedMatch start_;
  // The last match, or the start:
  Position position_;
  std::size_t offset_;
  ByteMatcher matcher_;
};

}  // namespace pluvo::text
