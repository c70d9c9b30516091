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

class Unshown {
 public:
  Unshown(const document::Model& model, const Beginning& beginning, text::View view)
      : model_(model),
        beginning_(beginning),
        other_(view == text::View::results ? text::View::codes : text::View::results),
        places_(placesOf(model, view)) {
    for (const auto& run : places_.runs()) met_[static_cast<std::size_t>(run.value)] = true;
  }

  std::int64_t count(Place sought) const {
    if (!met_[static_cast<std::size_t>(sought)]) return 0;
    const Shown shown = sought == Place::otherSide ? shownOnOtherSide() : shownWith(sought);
    std::int64_t count = 0;
    Position from = 0;
    while (const auto next = nextOf(sought, from)) {
      from = std::max(from, before(shown, *next));
      const auto match =
          beginning_.search().find(model_.text(), shown, text::View::results, from, model_.length());
      if (!match) break;
      if (touches(*match, sought)) ++count;
      from = match->to;
    }
    return count;
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
      for (const auto& part : model_.visibility().runs(run.from, run.to))
        shown.append(part.to - part.from,
                     text::isVisible(part.value, other_) ? text::kEverywhere : text::kNowhere);
    }
    return shown;
  }

  std::optional<Position> nextOf(Place sought, Position from) const {
    for (const auto& run : places_.runs(from, places_.length())) {
      if (run.value == sought) return run.from;
    }
    return std::nullopt;
  }

  /// The first position from which a match can reach the one given.
  Position before(const Shown& shown, Position position) const {
    Position left = beginning_.length() - 1;
    while (position > 0 && left > 0) {
      const auto run = shown.runAt(position - 1);
      const Position length = position - run.from;
      if (run.value != text::kNowhere && length >= left) return position - left;
      if (run.value != text::kNowhere) left -= length;
      position = run.from;
    }
    return position;
  }

  /// Whether a character of the file that stands at such a place lies in the match.
  bool touches(text::Span match, Place sought) const {
    for (const auto& run : places_.runs(match.from, match.to)) {
      if (run.value != sought) continue;
      for (Position at = run.from; at < run.to;) {
        const text::Piece piece = model_.text().pieceAt(at);
        if (!piece.isNew()) return true;
        at += piece.length;
      }
    }
    return false;
  }

  const document::Model& model_;
  const Beginning& beginning_;
  text::View other_;
  text::RunMap<Place> places_;
  std::array<bool, 5> met_{};
};

}  // namespace

bool hasUnshown(const text::RunMap<Visibility>& visibility) {
  return visibility.runCount() > 1 || (visibility.length() > 0 && visibility.valueAt(0) != text::kEverywhere);
}

void countUnshown(const document::Model& model, const Beginning& beginning, bool fieldCodes,
                  Elsewhere& found) {
  if (!hasUnshown(model.visibility())) return;
  const Unshown unshown(model, beginning, fieldCodes ? text::View::codes : text::View::results);
  const auto add = [&](Unreached kind, Place place) {
    found.unreached[static_cast<std::size_t>(kind)] += unshown.count(place);
  };
  add(Unreached::hidden, Place::hidden);
  add(fieldCodes ? Unreached::fieldResults : Unreached::fieldCodes, Place::otherSide);
  add(Unreached::computed, Place::computed);
}

}  // namespace pluvo::elsewhere
