#include "unshown.h"

#include "places.h"

#include <algorithm>
#include <array>

namespace pluvo::elsewhere {

using formats::Unreached;
using text::Position;
using text::Visibility;
using Shown = text::RunMap<Visibility>;

namespace {

/// Counts matches, in a text shown so, in which a character of the file stands at a place that is sought.
template <class Places, class IsSought>
class Touching {
 public:
  Touching(const document::Story& story, const Beginning& beginning, const Shown& shown, const Places& places,
           IsSought isSought)
      : story_(story), beginning_(beginning), shown_(shown), places_(places), isSought_(isSought) {}

  /// After a match that stands at no such place, the search goes on where one can reach the next of them.
  std::int64_t count() const {
    std::int64_t count = 0;
    Position from = 0;
    while (const auto match =
               beginning_.search().find(story_.text(), shown_, text::View::results, from, story_.length())) {
      const auto next = nextSought(match->from);
      if (!next) break;
      const Position reach = *next < match->to ? match->from : before(*next);
      from = match->from < reach ? reach : match->to;
      if (*next < match->to && touches({*next, match->to})) ++count;
    }
    return count;
  }

 private:
  std::optional<Position> nextSought(Position from) const {
    while (from < places_.length()) {
      const auto run = places_.runAt(from);
      if (isSought_(run.value)) return from;
      from = run.to;
    }
    return std::nullopt;
  }

  /// The first position from which a match can reach the one given.
  Position before(Position position) const {
    Position left = beginning_.length() - 1;
    while (position > 0 && left > 0) {
      const auto run = shown_.runAt(position - 1);
      const Position length = position - run.from;
      if (run.value != text::kNowhere && length >= left) return position - left;
      if (run.value != text::kNowhere) left -= length;
      position = run.from;
    }
    return position;
  }

  bool touches(text::Span span) const {
    for (Position at = span.from; at < span.to;) {
      const auto run = places_.runAt(at);
      const Position end = std::min(run.to, span.to);
      while (at < end && isSought_(run.value)) {
        const text::Piece piece = story_.text().pieceAt(at);
        if (!piece.isNew()) return true;
        at += piece.length;
      }
      at = std::max(at, end);
    }
    return false;
  }

  const document::Story& story_;
  const Beginning& beginning_;
  const Shown& shown_;
  const Places& places_;
  IsSought isSought_;
};

class Unshown {
 public:
  Unshown(const document::Story& story, const Beginning& beginning, text::View view)
      : story_(story),
        beginning_(beginning),
        other_(view == text::View::results ? text::View::codes : text::View::results),
        places_(placesOf(story, view)) {
    for (const auto& run : places_.runs()) met_[static_cast<std::size_t>(run.value)] = true;
  }

  std::int64_t count(Place sought) const {
    if (!met_[static_cast<std::size_t>(sought)]) return 0;
    const Shown shown = sought == Place::otherSide ? shownOnOtherSide() : shownWith(sought);
    return Touching(story_, beginning_, shown, places_, [&](Place place) { return place == sought; }).count();
  }

 private:
  Shown shownWith(Place sought) const {
    Shown shown;
    for (const auto& run : places_.runs()) {
      const bool is = run.value == Place::shown || run.value == sought;
      shown.append(run.to - run.from, is ? text::kEverywhere : text::kNowhere);
    }
    return shown;
  }

  /// Marks show beside codes, so that no match runs from a code into the text beside it.
  Shown shownOnOtherSide() const {
    Shown shown;
    for (const auto& run : places_.runs()) {
      if (run.value == Place::otherSide || (run.value == Place::mark && other_ == text::View::codes)) {
        shown.append(run.to - run.from, text::kEverywhere);
        continue;
      }
      for (const auto& part : story_.visibility().runs(run.from, run.to))
        shown.append(part.to - part.from,
                     text::isVisible(part.value, other_) ? text::kEverywhere : text::kNowhere);
    }
    return shown;
  }

  const document::Story& story_;
  const Beginning& beginning_;
  text::View other_;
  text::RunMap<Place> places_;
  std::array<bool, 5> met_{};
};

}  // namespace

bool hasUnshown(const text::RunMap<Visibility>& visibility) {
  return visibility.runCount() > 1 || (visibility.length() > 0 && visibility.valueAt(0) != text::kEverywhere);
}

void countUnshown(const document::Story& story, const Beginning& beginning, bool fieldCodes,
                  Elsewhere& found) {
  if (!hasUnshown(story.visibility())) return;
  const text::View view = fieldCodes ? text::View::codes : text::View::results;
  if (!hasMarks(story)) {
    const Shown everything(story.length(), text::kEverywhere);
    const auto isHidden = [&](Visibility shown) { return !text::isVisible(shown, view); };
    found.unreached[static_cast<std::size_t>(Unreached::hidden)] +=
        Touching(story, beginning, everything, story.visibility(), isHidden).count();
    return;
  }
  const Unshown unshown(story, beginning, view);
  const auto add = [&](Unreached kind, Place place) {
    found.unreached[static_cast<std::size_t>(kind)] += unshown.count(place);
  };
  add(Unreached::hidden, Place::hidden);
  add(fieldCodes ? Unreached::fieldResults : Unreached::fieldCodes, Place::otherSide);
  add(Unreached::computed, Place::computed);
}

}  // namespace pluvo::elsewhere
