#include "text/original_matches.h"

#include "base/at_once.h"
#include "match_finders.h"
#include "matches_ahead.h"
#include "prepared.h"
#include "text/coded_text.h"
#include "text/utf8_text.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace pluvo::text {
namespace {

/// In a text twice as large, finding match after match takes several times as long as beginning a thread.
constexpr std::size_t kLarge = std::size_t{1} << 19U;

/// Places farther on than this are gone to at once, others from match to match.
constexpr Position kFar = 1024;

/// What is known: no match begins in [from, clear), and one at clear where isMatch.
struct Known {
  Position from = 0;
  Position clear = 0;
  bool isMatch = false;
};

/// Goes through the matches that a finder finds. Where a large text has match after match, they are found
/// ahead.
template <class Finder>
class Walker {
 public:
  Walker(const Needle& needle, const OriginalText& original)
      : needle_(needle),
        original_(original),
        finder_(needle, original, 0),
        last_(finder_.start()),
        mayGoAhead_(base::partsOf(finder_.size(), kLarge) > 1) {}

  /// Goes to a place.
  void restart(Position from) {
    constexpr std::size_t kSoon = std::size_t{1} << 20U;
    // A thread costs more than some matches.
    if (ahead_ != nullptr && last_.from() - row_ < kSoon) longRow_ *= 2;
    ahead_.reset();
    finder_ = Finder(needle_, original_, from);
    last_ = finder_.start();
    startRow();
  }
  /// Where the next match begins, if that may be in front of end; OriginalMatches::kNone where none does.
  Position next(Position end) {
    const std::size_t bound = finder_.boundOf(end, last_);
    const PlacedMatch match = ahead_ != nullptr ? nextAhead(bound) : finder_.next(bound);
    if (!match.isThere()) return OriginalMatches::kNone;
    last_ = match;
    finder_.learn(match);
    if (ahead_ == nullptr && ++inRow_ == longRow_) endRow();
    return match.position;
  }
  bool gaveUp() const {
    if (ahead_ == nullptr) return finder_.gaveUp();
    return taken_ == batch_.matches.size() && batch_.gaveUp;
  }

 private:
  /// Each batch may be twice as large as the one before: a first one that is left soon costs little.
  static constexpr std::size_t kFirstBatch = 256;
  static constexpr std::size_t kLargestBatch = 4096;

  PlacedMatch nextAhead(std::size_t end) {
    while (taken_ == batch_.matches.size()) {
      if (batch_.isLast || batch_.clearTo >= end) return {};
      batch_ = ahead_->take();
      taken_ = 0;
    }
    return batch_.matches[taken_++];
  }

  /// The next matches up to some way on from a place, and so many at the most.
  static MatchBatch batchOf(Finder& finder, std::size_t from, std::size_t most) {
    constexpr std::size_t kStep = std::size_t{256} << 10U;
    MatchBatch batch;
    batch.clearTo = from + kStep;
    batch.matches.reserve(most);
    while (!finder.gaveUp()) {
      const PlacedMatch match = finder.next(batch.clearTo);
      if (!match.isThere()) break;
      batch.matches.push_back(match);
      if (batch.matches.size() < most) continue;
      batch.clearTo = match.from();
      return batch;
    }
    batch.gaveUp = finder.gaveUp();
    batch.isLast = batch.gaveUp || batch.clearTo >= finder.size();
    return batch;
  }

  void startRow() {
    inRow_ = 0;
    row_ = last_.from();
  }
  void endRow() {
    constexpr std::size_t kClose = 512;
    const bool isDense = last_.from() - row_ < longRow_ * kClose;
    startRow();
    if (!mayGoAhead_ || !isDense || finder_.gaveUp()) return;
    batch_ = {};
    taken_ = 0;
    try {
      ahead_ = std::make_unique<MatchesAhead>(
          [finder = finder_, from = last_.from(), most = kFirstBatch]() mutable {
            MatchBatch batch = batchOf(finder, from, most);
            from = batch.clearTo;
            most = std::min(2 * most, kLargestBatch);
            return batch;
          });
    } catch (const std::system_error&) {
      mayGoAhead_ = false;
    }
  }

  const Needle& needle_;
  OriginalText original_;
  Finder finder_;
  PlacedMatch last_;
  bool mayGoAhead_;
  std::size_t longRow_ = 512;  ///< so many matches are worth a thread
  std::size_t inRow_ = 0;      ///< matches since a place
  std::size_t row_ = 0;
  MatchBatch batch_;
  std::size_t taken_ = 0;
  std::unique_ptr<MatchesAhead> ahead_;
};

template <class Finder>
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
  Walker<Finder> walker_;
  Known known_;
};

template <class Finder>
std::unique_ptr<OriginalMatches> matchesOf(const std::shared_ptr<const Search::Prepared>& prepared,
                                           const OriginalText& original) {
  return std::make_unique<Matches<Finder>>(prepared, original);
}

}  // namespace

std::unique_ptr<OriginalMatches> OriginalMatches::of(const Search& search, const OriginalText& original) {
  const auto& prepared = search.prepared_;
  if (prepared == nullptr || prepared->wholeWord.front || prepared->wholeWord.back) return nullptr;
  const Needle& needle = prepared->needle;
  if (original.length() < static_cast<Position>(needle.length())) return nullptr;
  if (original.inBytes() != nullptr) {
    if (!needle.in(*original.inBytes()).probes()) return nullptr;
    if (original.utf8() != nullptr) return matchesOf<ByteFinder<Utf8Text>>(prepared, original);
    return matchesOf<ByteFinder<CodedText>>(prepared, original);
  }
  const Stretch whole = original.stretch(0, original.length());
  if (whole.wide == nullptr) {
    if (!needle.narrow(whole.lineFeedIsMark).probes) return nullptr;
    return matchesOf<UnitFinder<NarrowUnits>>(prepared, original);
  }
  if (!needle.wide().probes) return nullptr;
  if (needle.matchCase()) return matchesOf<UnitFinder<WideUnits>>(prepared, original);
  return matchesOf<UnitFinder<FoldedWideUnits>>(prepared, original);
}

}  // namespace pluvo::text
