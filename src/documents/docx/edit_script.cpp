#include "edit_script.h"

#include <algorithm>

namespace pluvo::docx {

namespace {

using text::Span;

void addSpan(std::vector<Span>& spans, Span span) {
  if (!spans.empty() && spans.back().to >= span.from) {
    spans.back().to = std::max(spans.back().to, span.to);
  } else {
    spans.push_back(span);
  }
}

/// Where in a kept stretch the highlight is another than it was.
void addRecoloured(std::vector<Span>& spans, const Step& kept, const text::RunMap<std::uint8_t>& now,
                   const text::RunMap<std::uint8_t>& original) {
  const Position shift = kept.original - kept.at;
  const auto before = original.runs(kept.original, kept.original + kept.length);
  auto was = before.begin();
  for (const auto& run : now.runs(kept.at, kept.at + kept.length)) {
    const Span colour{run.from + shift, run.to + shift};
    while (was != before.end()) {
      const auto old = *was;
      const Span common{std::max(colour.from, old.from), std::min(colour.to, old.to)};
      if (!common.empty() && old.value != run.value) addSpan(spans, common);
      if (old.to > colour.to) break;
      ++was;
    }
  }
}

/// The place of new text among original characters: before or behind each of them.
Position placeOf(const Step& put) { return put.original * 2 + (put.behind ? 1 : 0); }

}  // namespace

EditScript::EditScript(const model::Model& model) {
  const text::PieceText& text = model.text();
  const Position originalLength = text.original().length();
  std::vector<Step> gap;
  steps_.reserve(text.pieceCount() + text.pieceCount() / 2 + 1);
  Position reached = 0;
  Position at = 0;
  text.forEachPiece([&](const text::Piece& piece, std::u16string_view units) {
    if (piece.isNew()) {
      gap.push_back({Step::Kind::put, piece.anchor, piece.length, at, piece.behindAnchor, units});
    } else {
      closeGap(gap, reached, piece.original, originalLength);
      steps_.push_back({Step::Kind::keep, piece.original, piece.length, at});
      reached = piece.original + piece.length;
    }
    at += piece.length;
  });
  closeGap(gap, reached, originalLength, originalLength);
}

/// Puts the new text of a gap beside the characters that it has as neighbours there: the kept ones on its
/// sides and the dropped ones within.
void EditScript::closeGap(std::vector<Step>& gap, Position from, Position to, Position originalLength) {
  Position least = from == 0 ? 0 : (from - 1) * 2 + 1;
  const Position most = to == originalLength ? (to - 1) * 2 + 1 : to * 2;
  Position dropped = from;
  const auto dropTo = [&](Position end) {
    if (end > dropped) steps_.push_back({Step::Kind::drop, dropped, end - dropped});
    dropped = std::max(dropped, end);
  };
  for (Step& put : gap) {
    const Position place = std::clamp(put.original < 0 ? least : placeOf(put), least, most);
    put.original = place / 2;
    put.behind = place % 2 == 1;
    dropTo(std::min(put.original + (put.behind ? 1 : 0), to));
    steps_.push_back(put);
    least = place;
  }
  dropTo(to);
  gap.clear();
}

bool EditScript::dropsAllTo(Position end) const {
  for (std::size_t i = next_; i < steps_.size() && steps_[i].original < end; ++i) {
    if (steps_[i].kind == Step::Kind::keep && (i > next_ || steps_[i].length > taken_)) return false;
  }
  return true;
}

Span EditScript::keptOf(Span original) const {
  Span kept{original.to, original.to};
  auto step = std::partition_point(steps_.begin(), steps_.end(), [&](const Step& s) {
    return s.kind == Step::Kind::put ? s.original < original.from : s.original + s.length <= original.from;
  });
  for (; step != steps_.end() && step->original < original.to; ++step) {
    if (step->kind != Step::Kind::keep) continue;
    const Position from = std::max(step->original, original.from);
    kept = {std::min(kept.from, from), std::min(step->original + step->length, original.to)};
  }
  return kept;
}

std::vector<Span> touchedSpans(const EditScript& script, const model::Model& model,
                               const text::RunMap<std::uint8_t>& originalHighlight) {
  std::vector<Span> spans;
  for (const Step& step : script.steps()) {
    switch (step.kind) {
      case Step::Kind::keep:
        addRecoloured(spans, step, model.highlight(), originalHighlight);
        break;
      case Step::Kind::drop:
        addSpan(spans, {step.original, step.original + step.length});
        break;
      case Step::Kind::put:
        addSpan(spans, {step.original, step.original + 1});
        break;
    }
  }
  return spans;
}

}  // namespace pluvo::docx
