#pragma once

#include "text/original.h"
#include "text/positions.h"
#include "text/search.h"

#include <memory>

namespace pluvo::text {

/// The matches of a text in an original, found one after the other. An original never changes, so what was
/// found there stays found through every edit. Questions that go front to back cost the length of the
/// original in all, and little each.
class OriginalMatches {
 public:
  /// Null where a search cannot be made so: of whole words, which depend on the text around, and of a text
  /// that has no quick test.
  static std::unique_ptr<OriginalMatches> of(const Search& search, const OriginalText& original);
  virtual ~OriginalMatches() = default;

  /// Where the first match begins that lies in [from, to) wholly; kNone where none does.
  virtual Position first(Position from, Position to) = 0;
  static constexpr Position kNone = -1;
  /// Whether comparing made so much more work than reading on that it stopped: the last answer "none" and all
  /// later ones tell nothing.
  virtual bool gaveUp() const = 0;
};

}  // namespace pluvo::text
