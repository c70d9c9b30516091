#pragma once

#include "text/positions.h"

#include <cstddef>
#include <span>
#include <vector>

namespace pluvo::doc {

/// Where the places of a document's texts come to lie when they are edited. Places are among all texts.
class MovedPlaces {
 public:
  /// The edits front to back: so many characters come before a place, and so many from it on go.
  void add(text::Position at, text::Position come, text::Position go);

  /// Whether a character goes.
  bool isGone(text::Position at) const;
  bool areGone(text::Span span) const;
  /// Where a character comes to lie. For one that goes, the place of the text that was around it.
  text::Position character(text::Position at) const;
  /// Where the place between two characters comes to lie: before all that is put there.
  text::Position boundary(text::Position at) const;

  bool empty() const { return changes_.empty(); }
  /// The stretches that go, in order; no two touch.
  std::vector<text::Span> gone() const;

 private:
  struct Change {
    text::Position at;
    text::Position come;
    text::Position go;
    text::Position shift;  ///< of the text before it
  };

  /// The last change at or before a place, or strictly before it; null where there is none.
  const Change* lastUpTo(text::Position at) const;
  const Change* lastBefore(text::Position at) const;

  std::vector<Change> changes_;
};

}  // namespace pluvo::doc
