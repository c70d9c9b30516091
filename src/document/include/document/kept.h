#pragma once

#include "document/edit_script.h"

#include <algorithm>
#include <vector>

namespace pluvo::document {

/// Stretches of the original text, in order.
class OriginalSpans {
 public:
  /// Whether one of them holds all of a span.
  bool hold(text::Span original) const {
    const auto after = std::upper_bound(spans_.begin(), spans_.end(), original.from,
                                        [](text::Position p, const text::Span& s) { return p < s.from; });
    return after != spans_.begin() && original.to <= (after - 1)->to;
  }
  bool empty() const { return spans_.empty(); }

 protected:
  std::vector<text::Span> spans_;
};

/// The original text that edits have left. Two stretches that touch have new text between them.
class Kept : public OriginalSpans {
 public:
  explicit Kept(const Story& story) {
    story.text().forEachPiece([&](const text::Piece& piece, std::u16string_view) {
      if (!piece.isNew()) spans_.push_back({piece.original, piece.original + piece.length});
    });
  }

  /// Whether an original character is still there.
  bool holds(text::Position original) const { return hold({original, original + 1}); }
};

/// The stretches of the original text that edits have taken, whatever was put there. No two stretches touch.
class Dropped : public OriginalSpans {
 public:
  Dropped() = default;
  explicit Dropped(const EditScript& script) {
    script.forEachStep([&](const Step& step) {
      if (step.kind != Step::Kind::drop) return;
      const text::Span span{step.original, step.original + step.length};
      if (!spans_.empty() && spans_.back().to == span.from) {
        spans_.back().to = span.to;
      } else {
        spans_.push_back(span);
      }
    });
  }
};

}  // namespace pluvo::document
