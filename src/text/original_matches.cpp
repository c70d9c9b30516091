#include "text/original_matches.h"

#include "base/at_once.h"
#include "byte_needle.h"
#include "matcher.h"
#include "matches_ahead.h"
#include "prepared.h"
#include "text/coded_text.h"
#include "text/utf8_text.h"

#include <algorithm>
#include <optional>
#include <system_error>
#include <utility>

namespace pluvo::text {
namespace {

/// Places farther on than this are gone to at once, others from match to match.
constexpr Position kFar = 1024;

/// What is known: no match begins in [from, clear), and one at clear where isMatch.
struct Known {
  Position from = 0;
  Position clear = 0;
  bool isMatch = false;
};

/// Walker has:
/// - restart(position): goes to a place;
/// - next(end): where the next match begins, if that may be in front of end; OriginalMatches::kNone where
/// none does.
template <class Walker>
class Matches final : public OriginalMatches {
 public:
  Matches(std::shared_ptr<const Search::Prepared> prepared, const OriginalText& original)
      : prepared_(std::move(prepared)), walker_(prepared_->needle, original) {}

  Position first(Position from, Position to) override {
    if (from < known_.from || from - known_.clear > kFar) {
      walker_.restart(from);
      known_ = {from, from, false};
    }
    const auto length = static_cast<Position>(prepared_->needle.length());
    while (!known_.isMatch || known_.clear < from) {
      if (known_.clear > to - length) return kNone;
      if (known_.isMatch) known_.from = known_.clear + 1;
      const Position next = walker_.next(to - length + 1);
      known_.isMatch = next != kNone;
      known_.clear = known_.isMatch ? next : to - length + 1;
    }
    return known_.clear > to - length ? kNone : known_.clear;
  }

  bool gaveUp() const override { return walker_.gaveUp(); }

 private:
  std::shared_ptr<const Search::Prepared> prepared_;
  Walker walker_;
  Known known_;
};

/// Through units that lie in memory.
template <class Units>
class UnitWalker {
 public:
  UnitWalker(const Needle& needle, const OriginalText& original)
      : needle_(needle), original_(original), matcher_(made(0)) {}

  void restart(Position from) {
    start_ = from;
    matcher_ = made(from);
  }
  Position next(Position end) {
    matcher_.endBefore(static_cast<std::size_t>(std::max(end - start_, 0)));
    const std::size_t at = matcher_.next();
    return at == matcher_.none() ? OriginalMatches::kNone : start_ + static_cast<Position>(at);
  }
  bool gaveUp() const { return matcher_.isLinear(); }

 private:
  Matcher<Units> made(Position from) const {
    const Stretch stretch = original_.stretch(from, original_.length());
    const auto length = static_cast<std::size_t>(stretch.length);
    if constexpr (std::is_same_v<Units, NarrowUnits>) {
      return {needle_, needle_.narrow(stretch.lineFeedIsMark), length, stretch.narrow,
              needle_.narrowForms(stretch.lineFeedIsMark).data()};
    } else {
      return {needle_, needle_.wide(), length, stretch.wide};
    }
  }

  const Needle& needle_;
  OriginalText original_;
  Position start_ = 0;
  Matcher<Units> matcher_;
};

/// Finds the matches in the bytes of a text. Units are counted from match to match.
template <class Text>
class ByteFinder {
 public:
  using Match = MatchBatch::Match;

  /// From a unit on, which begins at an offset.
  ByteFinder(const Needle& needle, const Text& text, Position position, std::size_t offset)
      : text_(&text),
        start_(offset),
        position_(position),
        offset_(offset),
        matcher_(needle.in(text), text.bytes().subspan(offset)) {}

  Position position() const { return position_; }
  std::size_t offset() const { return offset_; }
  bool gaveUp() const { return matcher_.gaveUpAt().has_value(); }

  /// The next match, unless its anchor is surely not in front of a byte.
  std::optional<Match> next(std::size_t end) {
    matcher_.endBefore(end - std::min(start_, end));
    const ByteNeedle::Match match = matcher_.next();
    if (match.from == ByteNeedle::kNone) return std::nullopt;
    const std::size_t offset = start_ + match.from;
    // Nothing is asked that other threads write to all the time.
    constexpr std::size_t kNear = 1024;
    position_ = offset - offset_ > kNear ? text_->positionAt(offset)
                                         : position_ + static_cast<Position>(text_->unitsIn(offset_, offset));
    offset_ = offset;
    return Match{position_, static_cast<std::uint32_t>(offset),
                 static_cast<std::uint32_t>(start_ + match.to)};
  }

  /// All up to some way on.
  MatchBatch nextBatch() {
    constexpr std::size_t kStep = std::size_t{256} << 10U;
    searched_ = std::max(searched_, offset_) + kStep;
    MatchBatch batch;
    while (const auto match = next(searched_)) batch.matches.push_back(*match);
    batch.clearTo = searched_;
    batch.gaveUp = gaveUp();
    batch.isLast = batch.gaveUp || searched_ >= text_->bytes().size();
    return batch;
  }

 private:
  const Text* text_;
  std::size_t start_;
  // The last match, or where it began:
  Position position_;
  std::size_t offset_;
  std::size_t searched_ = 0;
  ByteMatcher matcher_;
};

/// Through a text that lies in bytes. Where a large one has match after match, they are found ahead. Of each
/// kind of text one, whose calls then cost less.
template <class Text>
class ByteWalker {
 public:
  ByteWalker(const Needle& needle, const OriginalText& original)
      : needle_(needle),
        original_(original),
        mayGoAhead_(base::partsOf(original.inBytes()->bytes().size()) > 1),
        finder_(needle, text(), 0, 0) {}

  void restart(Position from) {
    ahead_.reset();
    BytesText::Place place = text().placeOf(from);
    if (place.insidePair) place = text().placeOf(++from);
    finder_ = Finder(needle_, text(), from, place.offset);
    startRow(place.offset);
    last_ = {from, static_cast<std::uint32_t>(place.offset), 0};
  }
  Position next(Position end) {
    // No unit has more bytes than CR LF in UTF-16; an anchor lies no farther on than the whole text searched
    // for.
    constexpr std::int64_t kMostBytes = 4;
    const auto most =
        kMostBytes * (end - std::int64_t{last_.position} + static_cast<std::int64_t>(needle_.length()));
    const std::size_t endOfBytes = last_.from + static_cast<std::size_t>(std::max<std::int64_t>(most, 0));
    const auto match = ahead_ != nullptr ? nextAhead(endOfBytes) : finder_.next(endOfBytes);
    if (!match) return OriginalMatches::kNone;
    last_ = *match;
    text().learn(match->position, match->from);
    text().learn(match->position + static_cast<Position>(needle_.length()), match->to);
    if (ahead_ == nullptr && ++inRow_ == kRow) endRow();
    return match->position;
  }
  bool gaveUp() const {
    if (ahead_ == nullptr) return finder_.gaveUp();
    return taken_ == batch_.matches.size() && batch_.gaveUp;
  }

 private:
  using Finder = ByteFinder<Text>;
  static constexpr std::size_t kRow = 512;

  std::optional<MatchBatch::Match> nextAhead(std::size_t end) {
    while (taken_ == batch_.matches.size()) {
      if (batch_.isLast || batch_.clearTo >= end) return std::nullopt;
      batch_ = ahead_->take();
      taken_ = 0;
    }
    return batch_.matches[taken_++];
  }

  void startRow(std::size_t offset) {
    inRow_ = 0;
    row_ = offset;
  }
  void endRow() {
    constexpr std::size_t kClose = 512;
    const std::size_t offset = finder_.offset();
    const bool isDense = offset - row_ < kRow * kClose;
    startRow(offset);
    if (!mayGoAhead_ || !isDense) return;
    batch_ = {};
    taken_ = 0;
    try {
      ahead_ = std::make_unique<MatchesAhead>([finder = finder_]() mutable { return finder.nextBatch(); });
    } catch (const std::system_error&) {
      mayGoAhead_ = false;
    }
  }

  const Text& text() const { return static_cast<const Text&>(*original_.inBytes()); }

  const Needle& needle_;
  OriginalText original_;
  bool mayGoAhead_;
  Finder finder_;
  MatchBatch::Match last_;
  std::size_t inRow_ = 0;  ///< matches since a place
  std::size_t row_ = 0;
  MatchBatch batch_;
  std::size_t taken_ = 0;
  std::unique_ptr<MatchesAhead> ahead_;
};

}  // namespace

std::unique_ptr<OriginalMatches> OriginalMatches::of(const Search& search, const OriginalText& original) {
  const auto& prepared = search.prepared_;
  if (prepared == nullptr || prepared->wholeWord.front || prepared->wholeWord.back) return nullptr;
  const Needle& needle = prepared->needle;
  if (original.length() < static_cast<Position>(needle.length())) return nullptr;
  if (original.inBytes() != nullptr) {
    if (!needle.in(*original.inBytes()).probes()) return nullptr;
    if (original.utf8() != nullptr)
      return std::make_unique<Matches<ByteWalker<Utf8Text>>>(prepared, original);
    return std::make_unique<Matches<ByteWalker<CodedText>>>(prepared, original);
  }
  const Stretch whole = original.stretch(0, original.length());
  if (whole.wide == nullptr) {
    if (!needle.narrow(whole.lineFeedIsMark).probes) return nullptr;
    return std::make_unique<Matches<UnitWalker<NarrowUnits>>>(prepared, original);
  }
  if (!needle.wide().probes) return nullptr;
  if (needle.matchCase()) return std::make_unique<Matches<UnitWalker<WideUnits>>>(prepared, original);
  return std::make_unique<Matches<UnitWalker<FoldedWideUnits>>>(prepared, original);
}

}  // namespace pluvo::text
