#include "text/search.h"

#include "characters.h"
#include "gathered.h"
#include "matcher.h"
#include "needle.h"
#include "prepared.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

namespace pluvo::text {
namespace {

constexpr Position kNowhereFound = -1;

Position cellMarkIn(const Stretch& stretch) {
  const auto length = static_cast<std::size_t>(stretch.length);
  if (stretch.wide != nullptr) {
    const std::size_t at = std::u16string_view(stretch.wide, length).find(kCellMark);
    return at == std::u16string_view::npos ? kNowhereFound : static_cast<Position>(at);
  }
  const void* const at = std::memchr(stretch.narrow, kCellMark, length);
  return at == nullptr ? kNowhereFound
                       : static_cast<Position>(static_cast<const std::uint8_t*>(at) - stretch.narrow);
}

/// A find under way: the text, how it is looked at, and what counts as a match.
struct Haystack {
  const PieceText& text;
  const RunMap<Visibility>& visibility;
  View view;

  /// The nearest visible position in front of (or at or after) position; kNowhereFound if there is none.
  Position visibleBefore(Position position) const {
    while (position > 0) {
      const auto run = visibility.runAt(position - 1);
      if (isVisible(run.value, view)) return position - 1;
      position = run.from;
    }
    return kNowhereFound;
  }
  Position visibleFrom(Position position) const {
    while (position < text.length()) {
      const auto run = visibility.runAt(position);
      if (isVisible(run.value, view)) return position;
      position = run.to;
    }
    return kNowhereFound;
  }

  bool wordEndsBefore(Position position) const {
    const Position last = visibleBefore(position);
    if (last == kNowhereFound) return false;
    const char16_t unit = text.at(last);
    if (!isLowSurrogate(unit)) return isWordCharacter(unit);
    const Position high = visibleBefore(last);
    if (high == kNowhereFound || !isHighSurrogate(text.at(high))) return false;
    return isWordCharacter(joinSurrogates(text.at(high), unit));
  }
  bool wordStartsAt(Position position) const {
    const Position first = visibleFrom(position);
    if (first == kNowhereFound) return false;
    const char16_t unit = text.at(first);
    if (!isHighSurrogate(unit)) return isWordCharacter(unit);
    const Position low = visibleFrom(first + 1);
    if (low == kNowhereFound || !isLowSurrogate(text.at(low))) return false;
    return isWordCharacter(joinSurrogates(unit, text.at(low)));
  }
};

/// One execution of a find. Long stretches are searched where they lie; short ones, and the borders between
/// stretches, are gathered first.
class Execution {
 public:
  Execution(const Needle& needle, WordEnds wholeWord, const Haystack& haystack)
      : needle_(needle),
        wholeWord_(wholeWord),
        haystack_(haystack),
        gatherLimit_(kFirstGather + 2 * needle.length()) {}

  std::optional<Span> run(Position from, Position to) {
    const std::optional<Stretch> whole = haystack_.text.wholeStretch();
    if (!whole && haystack_.visibility.runCount() == 1) {
      // Where all of it shows, as it mostly does.
      if (isVisible(haystack_.visibility.valueAt(from), haystack_.view)) takePieces(from, to);
      if (!found_) searchGathered();
      return found_;
    }
    for (const auto& run : haystack_.visibility.runs(from, to)) {
      if (isVisible(run.value, haystack_.view)) {
        if (whole && run.from == from && run.to == to) {
          searchIn(whole->part(from, to),
                   [&](std::size_t offset) { return from + static_cast<Position>(offset); });
          return found_;  // nothing lies beside it
        }
        if (whole) {
          take(run.from, whole->part(run.from, run.to));
        } else {
          takePieces(run.from, run.to);
        }
      } else if (whole && gathered_.length() > 0) {
        passOver(run.from, whole->part(run.from, run.to));
      } else if (gathered_.length() > 0) {
        passOver(run.from, run.to);
      }
      if (found_) return found_;
    }
    searchGathered();
    return found_;
  }

  /// In all that the view shows, gathered before.
  std::optional<Span> run(const Gathered& all, Position from, Position to) {
    const std::size_t begin = all.offset(from);
    const std::size_t end = to == haystack_.text.length() ? all.length() : all.offset(to);
    const Stretch part = all.stretch().part(static_cast<Position>(begin), static_cast<Position>(end));
    searchIn(part, [&](std::size_t offset) { return all.position(begin + offset); });
    return found_;
  }

 private:
  static constexpr std::size_t kFirstGather = 256;
  static constexpr std::size_t kLargestGather = 16384;
  static constexpr Position kSearchedInPlace = 1024;

  void takePieces(Position from, Position to) {
    haystack_.text.forEachPiece(from, to, [&](Position start, const Piece& piece) {
      take(start, piece);
      return !found_;
    });
  }

  /// Never more than the needle's length, which is a position.
  Position overlap() const { return static_cast<Position>(needle_.length()) - 1; }

  void take(Position start, const Piece& piece) {
    const BytesText* const bytes = haystack_.text.original().inBytes();
    if (!piece.isNew() && bytes != nullptr && !isShort(piece.length) && needle_.in(*bytes).probes())
      return takeBytes(start, *bytes, {piece.original, piece.original + piece.length});
    haystack_.text.visitStretches(start, piece, [&](Position from, const Stretch& stretch) {
      take(from, stretch);
      return !found_;
    });
  }

  /// Better gathered than searched by itself.
  bool isShort(Position length) const {
    return length < kSearchedInPlace || static_cast<std::size_t>(length) < 4 * needle_.length();
  }

  /// A part of the original that lies in bytes is searched in them.
  void takeBytes(Position start, const BytesText& text, Span part) {
    const OriginalText& original = haystack_.text.original();
    const Position shift = start - part.from;
    if (gathered_.length() > 0) {
      gathered_.add(start, original, part.from, part.from + overlap());
      searchGathered();
      gathered_.clear();
      if (found_) return;
    }
    searchBytes(text, part, shift);
    if (found_ || overlap() == 0) return;
    const Position rest = part.to - overlap();
    gathered_.add(rest + shift, original, rest, part.to);
  }

  /// Half of a pair at either end lies in no bytes; what begins or ends with one is searched for elsewhere.
  void searchBytes(const BytesText& text, Span part, Position shift) {
    const std::size_t end = text.placeOf(part.to).offset;
    BytesText::Place begin = text.placeOf(part.from);
    if (begin.insidePair) begin = text.placeOf(part.from + 1);
    if (end <= begin.offset) return;
    ByteMatcher matcher(needle_.in(text), text.bytes().subspan(begin.offset, end - begin.offset));
    for (auto match = matcher.next(); match.from != ByteNeedle::kNone; match = matcher.next()) {
      const Position at = text.positionAt(begin.offset + match.from);
      const auto length = static_cast<Position>(needle_.length());
      if (at < part.from || at > part.to - length) return;  // another program wrote into the file
      const Span span{at + shift, at + shift + length};
      if (!isWholeWord(span)) continue;
      found_ = span;
      return;
    }
    if (!matcher.gaveUpAt()) return;
    const Position reached =
        std::clamp(text.positionAt(begin.offset + *matcher.gaveUpAt()) - overlap(), part.from, part.to);
    haystack_.text.original().forEachStretch(reached, part.to, [&](Position offset, const Stretch& stretch) {
      gather(reached + offset + shift, stretch);
      return !found_;
    });
    if (!found_) searchGathered();
    gathered_.clear();
  }

  void take(Position start, const Stretch& stretch) {
    if (isShort(stretch.length)) return gather(start, stretch);
    if (gathered_.length() > 0) {
      gathered_.add(start, stretch.part(0, overlap()));
      searchGathered();
      gathered_.clear();
      if (found_) return;
    }
    searchIn(stretch, [&](std::size_t offset) { return start + static_cast<Position>(offset); });
    if (found_) return;
    const Position rest = stretch.length - overlap();
    if (overlap() > 0) gathered_.add(start + rest, stretch.part(rest, stretch.length));
  }

  void gather(Position start, const Stretch& stretch) {
    gathered_.add(start, stretch);
    if (gathered_.length() < gatherLimit_) return;
    searchGathered();
    gathered_.keepLast(needle_.length() - 1);
    gatherLimit_ = std::max(gatherLimit_, std::min(2 * gatherLimit_, kLargestGather));
  }

  /// A hidden cell mark parts the text on both sides of it.
  void passOver(Position from, Position to) {
    haystack_.text.forEachStretch(
        from, to, [&](Position start, const Stretch& stretch) { return passOver(start, stretch); });
  }
  bool passOver(Position start, const Stretch& stretch) {
    const Position mark = cellMarkIn(stretch);
    if (mark == kNowhereFound) return true;
    gathered_.add(start + mark, stretch.part(mark, mark + 1));
    return false;
  }

  void searchGathered() {
    searchIn(gathered_.stretch(), [&](std::size_t offset) { return gathered_.position(offset); });
  }

  template <class PositionOf>
  void searchIn(const Stretch& stretch, PositionOf positionOf) {
    found_ = withMatcher(needle_, stretch, [&](auto matcher) -> std::optional<Span> {
      for (std::size_t at = matcher.next(); at != matcher.none(); at = matcher.next()) {
        const Span span{positionOf(at), positionOf(at + needle_.length() - 1) + 1};
        if (isWholeWord(span)) return span;
      }
      return std::nullopt;
    });
  }

  bool isWholeWord(const Span& span) const {
    if (wholeWord_.front && haystack_.wordEndsBefore(span.from)) return false;
    return !wholeWord_.back || !haystack_.wordStartsAt(span.to);
  }

  const Needle& needle_;
  WordEnds wholeWord_;
  const Haystack& haystack_;
  std::size_t gatherLimit_;
  Gathered gathered_;
  std::optional<Span> found_;
};

}  // namespace

/// The texts searched for last. A document has many texts besides its main one, and a folder has many
/// documents; preparing costs more than searching a short one.
class Search::Memory {
 public:
  std::shared_ptr<const Prepared> prepared(std::u16string_view needle, SearchFlags flags) {
    const auto found = std::find_if(known_.begin(), known_.end(), [&](const Known& known) {
      return known.prepared != nullptr && known.flags == flags && known.needle == needle;
    });
    if (found != known_.end()) return found->prepared;
    const WordEnds wholeWord = flags.wholeWord ? WordEnds::of(needle) : WordEnds{};
    std::shared_ptr<const Prepared> made(new Prepared{Needle(needle, flags.matchCase), wholeWord});
    if (needle.size() > kLongest) return made;
    known_[next_] = {std::u16string(needle), flags, made};
    next_ = (next_ + 1) % known_.size();
    return made;
  }

 private:
  static constexpr std::size_t kLongest = 1024;

  struct Known {
    std::u16string needle;
    SearchFlags flags;
    std::shared_ptr<const Prepared> prepared;
  };
  std::array<Known, 8> known_;
  std::size_t next_ = 0;
};

Search::Search(std::u16string_view needle, SearchFlags flags) {
  const bool findable = !needle.empty() && needle.find(kCellMark) == std::u16string_view::npos;
  if (!findable) return;
  thread_local Memory memory;
  prepared_ = memory.prepared(needle, flags);
}

std::optional<Span> Search::find(const PieceText& text, const RunMap<Visibility>& visibility, View view,
                                 Position from, Position to) const {
  if (prepared_ == nullptr) return std::nullopt;
  if (static_cast<std::int64_t>(to) - from < static_cast<std::int64_t>(prepared_->needle.length())) {
    return std::nullopt;
  }
  const Haystack haystack{text, visibility, view};
  return Execution(prepared_->needle, prepared_->wholeWord, haystack).run(from, to);
}

std::optional<Span> Search::find(const VisibleText& shown, const PieceText& text,
                                 const RunMap<Visibility>& visibility, View view, Position from,
                                 Position to) const {
  if (prepared_ == nullptr || from >= to) return std::nullopt;
  const Haystack haystack{text, visibility, view};
  return Execution(prepared_->needle, prepared_->wholeWord, haystack).run(shown.gathered(), from, to);
}

}  // namespace pluvo::text
