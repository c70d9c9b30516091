#pragma once

#include "document/story.h"
#include "text/positions.h"

#include <cstdint>
#include <functional>
#include <string_view>
#include <utility>

namespace pluvo::document {

/// One step from the original text to the edited one, in document order.
struct Step {
  enum class Kind : std::uint8_t { keep, drop, put };
  Kind kind = Kind::keep;
  /// keep and drop: the first original character. put: the original character beside which the new text
  /// stands.
  text::Position original = 0;
  text::Position length = 0;
  text::Position at = 0;  ///< keep and put: where it stands in the edited text
  bool after = false;     ///< put: after its character instead of before it
  std::u16string_view units{};
};

/// The steps one after the other, made from the pieces of the text as they are asked for: there may be
/// millions. The text must not change meanwhile.
class StepReader {
 public:
  explicit StepReader(const text::PieceText& text) : text_(&text) {}
  /// Returns false after the last step, and leaves `step` as it is then.
  bool next(Step& step);

 private:
  void enterGap();
  bool dropTo(text::Position end, Step& step);

  const text::PieceText* text_;
  std::size_t piece_ = 0;
  text::Position at_ = 0;       ///< of the piece in the edited text
  text::Position reached_ = 0;  ///< original characters kept or dropped
  // New text between two kept pieces, and the text dropped there:
  bool inGap_ = false;
  text::Piece put_;           ///< piece_, where that is new
  text::Piece kept_;          ///< the next kept piece; an empty one at the end of the text
  std::size_t gapEnd_ = 0;    ///< its number
  text::Position least_ = 0;  ///< where new text may stand at the earliest
};

/// How the edited text comes from the original one, as steps a walk over the original can follow. New text
/// stands beside a character that is its neighbour, in the order of the text.
class EditScript {
 public:
  explicit EditScript(const Story& story) : text_(&story.text()), reader_(*text_) { advance(); }

  /// Takes the steps that concern original characters up to end, the new text after the last of them
  /// included: visit(const Step&), cut to them.
  template <class Visit>
  void take(text::Position end, Visit visit);

  /// Whether all of the original characters from the place reached up to end go.
  bool dropsAllTo(text::Position end) const;

  /// From the first to after the last of these original characters that stay, none of which was taken; empty
  /// where none does.
  text::Span keptOf(text::Span original) const;

  /// All steps, whatever was taken: visit(const Step&).
  template <class Visit>
  void forEachStep(Visit visit) const {
    Step step;
    for (StepReader reader(*text_); reader.next(step);) visit(std::as_const(step));
  }

 private:
  void advance() {
    hasStep_ = reader_.next(step_);
    taken_ = 0;
  }

  const text::PieceText* text_;
  StepReader reader_;
  Step step_;
  bool hasStep_ = false;
  text::Position taken_ = 0;  ///< original characters taken of the step
};

/// The stretches of the original text that an edit or a change of highlight touches, in order; no two touch
/// each other.
void forEachTouchedSpan(const EditScript& script, const Story& story,
                        const text::RunMap<std::uint8_t>& originalHighlight,
                        const std::function<void(text::Span)>& visit);

template <class Visit>
void EditScript::take(text::Position end, Visit visit) {
  for (; hasStep_; advance()) {
    if (step_.original >= end) return;
    if (step_.kind == Step::Kind::put) {
      visit(std::as_const(step_));
      continue;
    }
    Step part = step_;
    part.original += taken_;
    part.at += taken_;
    part.length -= taken_;
    if (part.original >= end) return;
    if (part.original + part.length > end) {
      part.length = end - part.original;
      taken_ += part.length;
      visit(part);
      return;
    }
    visit(part);
  }
}

}  // namespace pluvo::document
