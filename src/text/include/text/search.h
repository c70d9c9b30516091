#pragma once

#include "text/pieces.h"
#include "text/positions.h"
#include "text/run_map.h"
#include "text/visible.h"
#include "text/visible_text.h"

#include <memory>
#include <optional>
#include <string>

namespace pluvo::text {

struct SearchFlags {
  bool matchCase = false;
  bool wholeWord = false;
  bool operator==(const SearchFlags&) const = default;
};

/// A literal search for one text, prepared once and used as often as wanted, also by several threads at once:
///
/// - No character of the text searched for has a meaning of its own.
/// - An empty text is never found, nor is one that holds a cell mark: a match does not leave its cell.
/// - Case: two units are equal when Unicode's simple case folding makes them one unit, which keeps lengths.
///   Letters outside the Basic Multilingual Plane are compared as they are, and so are unpaired surrogates.
/// - Straight and typographic quotes are different characters.
/// - A paragraph mark in the text searched for is found as a paragraph mark or a manual line break.
/// - Whole word: the visible characters beside the match are neither letters, digits nor combining marks,
///   also where they lie outside the searched span. Apostrophes, hyphens and low lines are none of these:
///   John is found in John's, in John-Paul and in a blank filled in as __John__. A side at which the text
///   searched for has a line end is free.
/// - Characters that the view does not show are passed over. A match may run across them, and its span
///   covers those between its first and last visible character. A hidden cell mark still ends its cell.
///
/// Stretches of the text are searched where they lie. The cost is linear in the span searched and the length
/// of the text searched for, whatever they hold. Memory beside the text is a few times that length.
class Search {
 public:
  struct Prepared;

  /// What a thread searched for last is prepared once.
  Search(std::u16string_view needle, SearchFlags flags);

  /// The first match that lies in [from, to) wholly.
  std::optional<Span> find(const PieceText& text, const RunMap<Visibility>& visibility, View view,
                           Position from, Position to) const;
  /// The same, where what the view shows has been gathered.
  std::optional<Span> find(const VisibleText& shown, const PieceText& text,
                           const RunMap<Visibility>& visibility, View view, Position from, Position to) const;

 private:
  friend class OriginalMatches;
  class Memory;
  std::shared_ptr<const Prepared> prepared_;
};

}  // namespace pluvo::text
