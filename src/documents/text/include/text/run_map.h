#pragma once

#include "text/positions.h"

namespace pluvo::text {

/// A value for every position of a text, kept as maximal runs of equal values. Few runs, whatever the length of
/// the text; edits that move forward are O(1) amortised, look-ups O(log runs).
///
/// To be built front to back with append, then edited in step with the text.
template <class Value>
class RunMap;

/// Which views show a character: the one with field results, the one with field codes. Hidden text is in none.
enum Visibility : std::uint8_t { kNowhere = 0, kInResults = 1, kInCodes = 2, kEverywhere = 3 };

}  // namespace pluvo::text
