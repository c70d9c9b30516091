#pragma once

#include "model/model.h"
#include "text/positions.h"

#include <string_view>
#include <vector>

namespace pluvo::docx {

using text::Position;

/// One step from the original text to the edited one, in document order.
struct Step {
  enum class Kind : std::uint8_t { keep, drop, put };
  Kind kind = Kind::keep;
  /// keep and drop: the first original character. put: the original character beside which the new text
  /// stands.
  Position original = 0;
  Position length = 0;
  Position at = 0;      ///< keep and put: where it stands in the edited text
  bool behind = false;  ///< put: behind its character instead of before it
  std::u16string_view units{};
};

/// How the edited text comes from the original one, as steps a walk over the original can follow. New text
/// stands beside a character that is its neighbour, in the order of the text.
class EditScript {
 public:
  explicit EditScript(const model::Model& model);

  /// Takes the steps that concern original characters up to end, the new text behind the last of them
  /// included: visit(const Step&), cut to them.
  template <class Visit>
  void take(Position end, Visit visit);

  /// Whether all of the original characters from the place reached up to end go.
  bool dropsAllTo(Position end) const;

  /// From the first to behind the last of these original characters that stay; empty where none does.
  text::Span keptOf(text::Span original) const;

  const std::vector<Step>& steps() const { return steps_; }

 private:
  void closeGap(std::vector<Step>& gap, Position from, Position to, Position originalLength);

  std::vector<Step> steps_;
  std::size_t next_ = 0;
  Position taken_ = 0;  ///< original characters taken of step next_
};

/// The stretches of the original text that an edit or a change of highlight touches, in order.
std::vector<text::Span> touchedSpans(const EditScript& script, const model::Model& model,
                                     const text::RunMap<std::uint8_t>& originalHighlight);

template <class Visit>
void EditScript::take(Position end, Visit visit) {
  for (; next_ < steps_.size(); ++next_, taken_ = 0) {
    const Step& step = steps_[next_];
    if (step.original >= end) return;
    if (step.kind == Step::Kind::put) {
      visit(step);
      continue;
    }
    Step part = step;
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

}  // namespace pluvo::docx
