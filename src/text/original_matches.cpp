#include "text/original_matches.h"

#include "byte_needle.h"
#include "matcher.h"
#include "prepared.h"
#include "text/coded_text.h"
#include "text/utf8_text.h"

#include <algorithm>
#include <limits>
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

/// Through a text that lies in bytes. Units are counted from match to match. Of each kind of text one, whose
/// calls then cost less.
template <class Text>
class ByteWalker {
 public:
  ByteWalker(const Needle& needle, const OriginalText& original)
      : needle_(needle), original_(original), matcher_(needle.in(text()), bytes()) {}

  void restart(Position from) {
    BytesText::Place place = text().placeOf(from);
    if (place.insidePair) place = text().placeOf(++from);
    start_ = offset_ = place.offset;
    position_ = from;
    matcher_ = ByteMatcher(needle_.in(text()), bytes().subspan(start_));
  }
  Position next(Position end) {
    // No unit has more bytes than CR LF in UTF-16; an anchor lies no farther on than the whole text searched
    // for.
    constexpr std::int64_t kMostBytes = 4;
    const auto most =
        kMostBytes * (end - std::int64_t{position_} + static_cast<std::int64_t>(needle_.length()));
    matcher_.endBefore(offset_ - start_ + static_cast<std::size_t>(std::max<std::int64_t>(most, 0)));
    const ByteNeedle::Match match = matcher_.next();
    if (match.from == ByteNeedle::kNone) return OriginalMatches::kNone;
    const std::size_t offset = start_ + match.from;
    position_ = text().positionAfter(position_, offset_, offset);
    offset_ = offset;
    text().learn(position_, offset);
    text().learn(position_ + static_cast<Position>(needle_.length()), start_ + match.to);
    return position_;
  }
  bool gaveUp() const { return matcher_.gaveUpAt().has_value(); }

 private:
  const Text& text() const { return static_cast<const Text&>(*original_.inBytes()); }
  BytesText::Bytes bytes() const { return text().bytes(); }

  const Needle& needle_;
  OriginalText original_;
  std::size_t start_ = 0;
  // The last match, or where the walk began:
  Position position_ = 0;
  std::size_t offset_ = 0;
  ByteMatcher matcher_;
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
