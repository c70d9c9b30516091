#include "document/edit_script.h"

#include <algorithm>
#include <optional>

namespace pluvo::document {

using text::Position;
using text::Span;

namespace {

/// Hands spans on, joined where they touch.
class Joined {
 public:
  explicit Joined(const std::function<void(Span)>& visit) : visit_(visit) {}

  void add(Span span) {
    if (last_ && last_->to >= span.from) {
      last_->to = std::max(last_->to, span.to);
    } else {
      flush();
      last_ = span;
    }
  }
  void flush() {
    if (last_) visit_(*last_);
    last_.reset();
  }

 private:
  const std::function<void(Span)>& visit_;
  std::optional<Span> last_;
};

using Highlight = text::RunMap<std::uint8_t>;

/// The run that holds a position, remembered for the next, which is seldom in another.
class LastRun {
 public:
  explicit LastRun(const Highlight& map) : map_(map) {}
  const Highlight::Run& at(Position position) {
    if (position < run_.from || position >= run_.to) run_ = map_.runAt(position);
    return run_;
  }

 private:
  const Highlight& map_;
  Highlight::Run run_;
};

/// Where in a kept stretch the highlight is another than it was.
void addRecoloured(Joined& spans, const Step& kept, const Highlight& now, const Highlight& original) {
  const Position shift = kept.original - kept.at;
  const auto before = original.runs(kept.original, kept.original + kept.length);
  auto was = before.begin();
  for (const auto& run : now.runs(kept.at, kept.at + kept.length)) {
    const Span colour{run.from + shift, run.to + shift};
    while (was != before.end()) {
      const auto old = *was;
      const Span common{std::max(colour.from, old.from), std::min(colour.to, old.to)};
      if (!common.empty() && old.value != run.value) spans.add(common);
      if (old.to > colour.to) break;
      ++was;
    }
  }
}

/// The place of new text among original characters: before or after each of them.
Position placeOf(const text::Piece& put) { return put.anchor * 2 + (put.afterAnchor ? 1 : 0); }

}  // namespace

/// New text of a gap stands beside its neighbours: the kept characters on its sides and the dropped ones
/// within.
bool StepReader::next(Step& step) {
  if (!inGap_) enterGap();
  if (piece_ < gapEnd_) {
    const bool isLast = kept_.original == text_->original().length();
    const Position most = isLast ? (kept_.original - 1) * 2 + 1 : kept_.original * 2;
    const Position place = std::clamp(put_.anchor < 0 ? least_ : placeOf(put_), least_, most);
    const bool after = place % 2 == 1;
    if (dropTo(std::min(place / 2 + (after ? 1 : 0), kept_.original), step)) return true;
    step = {Step::Kind::put, place / 2, put_.length, at_, after, text_->addedText(put_)};
    least_ = place;
    if (++piece_ < gapEnd_) put_ = text_->piece(piece_);
  } else {
    if (dropTo(kept_.original, step)) return true;
    if (piece_ == text_->pieceCount()) return false;
    step = {Step::Kind::keep, kept_.original, kept_.length, at_};
    reached_ += kept_.length;
    inGap_ = false;
    ++piece_;
  }
  at_ += step.length;
  return true;
}

void StepReader::enterGap() {
  inGap_ = true;
  least_ = reached_ == 0 ? 0 : (reached_ - 1) * 2 + 1;
  const std::size_t count = text_->pieceCount();
  for (gapEnd_ = piece_; gapEnd_ < count; ++gapEnd_) {
    kept_ = text_->piece(gapEnd_);
    if (!kept_.isNew()) return;
    if (gapEnd_ == piece_) put_ = kept_;
  }
  kept_ = {0, text_->original().length()};
}

/// False where there is nothing to drop.
bool StepReader::dropTo(Position end, Step& step) {
  if (end <= reached_) return false;
  step = {Step::Kind::drop, reached_, end - reached_};
  reached_ = end;
  return true;
}

bool EditScript::dropsAllTo(Position end) const {
  if (!hasStep_) return true;
  Step step = step_;
  if (step.kind == Step::Kind::keep && step.length <= taken_) step.kind = Step::Kind::drop;  // is past
  StepReader ahead = reader_;
  do {
    if (step.original >= end) return true;
    if (step.kind == Step::Kind::keep) return false;
  } while (ahead.next(step));
  return true;
}

Span EditScript::keptOf(Span original) const {
  Span kept{original.to, original.to};
  if (!hasStep_) return kept;
  Step step = step_;
  StepReader ahead = reader_;
  do {
    if (step.original >= original.to) break;
    if (step.kind != Step::Kind::keep || step.original + step.length <= original.from) continue;
    const Position from = std::max(step.original, original.from);
    kept = {std::min(kept.from, from), std::min(step.original + step.length, original.to)};
  } while (ahead.next(step));
  return kept;
}

void forEachTouchedSpan(const EditScript& script, const Story& story,
                        const text::RunMap<std::uint8_t>& originalHighlight,
                        const std::function<void(Span)>& visit) {
  Joined spans(visit);
  LastRun now(story.highlight());
  LastRun before(originalHighlight);
  script.forEachStep([&](const Step& step) {
    switch (step.kind) {
      case Step::Kind::keep:
        if (const auto& run = now.at(step.at), &was = before.at(step.original);
            step.length <= run.to - step.at && step.length <= was.to - step.original) {
          if (run.value != was.value) spans.add({step.original, step.original + step.length});
          break;
        }
        addRecoloured(spans, step, story.highlight(), originalHighlight);
        break;
      case Step::Kind::drop:
        spans.add({step.original, step.original + step.length});
        break;
      case Step::Kind::put:
        spans.add({step.original, step.original + 1});
        break;
    }
  });
  spans.flush();
}

}  // namespace pluvo::document
