#pragma once

#include "document/model.h"
#include "text/positions.h"

#include <algorithm>
#include <vector>

namespace pluvo::docx {

/// What edits have left of the original text.
class Kept {
 public:
  explicit Kept(const document::Model& model) {
    model.text().forEachPiece([&](const text::Piece& piece, std::u16string_view) {
      if (!piece.isNew()) spans_.push_back({piece.original, piece.original + piece.length});
    });
  }

  /// Whether an original character is still there.
  bool holds(text::Position original) const { return holdsWhole({original, original + 1}); }
  /// Whether all of an original span is, and nothing was put into it.
  bool holdsWhole(text::Span original) const {
    const auto behind = std::upper_bound(spans_.begin(), spans_.end(), original.from,
                                         [](text::Position p, const text::Span& s) { return p < s.from; });
    return behind != spans_.begin() && original.to <= (behind - 1)->to;
  }

 private:
  std::vector<text::Span> spans_;  ///< in order; where two touch, something was put between them
};

}  // namespace pluvo::docx
