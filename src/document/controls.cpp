// Which control new text lies in, what becomes of its line ends there, and what locks forbid.
#include "controls.h"

#include "errors/fault.h"
#include "nesting.h"
#include "word/faults.h"

#include <algorithm>

namespace pluvo::document {

using text::Position;
using text::Span;

namespace {

const Control& at(const Model& model, std::int32_t control) {
  return model.controls()[static_cast<std::size_t>(control)];
}

std::int32_t controlAt(const Model& model, Position position) {
  return position < 0 || position >= model.length() ? kNone : model.structure().valueAt(position).control;
}

/// The innermost one that holds whole paragraphs.
std::int32_t aroundParagraph(const Model& model, std::int32_t control) {
  while (control != kNone && at(model, control).inlined) control = at(model, control).parent;
  return control;
}

bool isWithin(const Model& model, std::int32_t control, std::int32_t outer) {
  return outer == kNone || commonOf(model.controls(), control, outer) == outer;
}

bool isPlainMark(const Model& model, Position position) {
  return position >= 0 && model.text().at(position) == text::kParagraphMark;
}

bool holdsMark(const Model& model, Span span) {
  bool found = false;
  model.text().forEachStretch(span.from, span.to, [&](Position from, const text::Stretch& stretch) {
    for (Position i = 0; i < stretch.length && !found; ++i) found = model.endsParagraph(from + i);
    return !found;
  });
  return found;
}

bool endsWithMark(std::u16string_view text) { return !text.empty() && text.back() == text::kParagraphMark; }

/// Whether a removal takes the mark of a paragraph in the control.
bool takesMarkOf(const Model& model, const Removal& removal, std::int32_t control) {
  return std::any_of(removal.spans.begin(), removal.spans.end(), [&](const Span& span) {
    for (const auto& run : model.structure().runs(span.from, span.to)) {
      if (run.value.control != kNone && isWithin(model, run.value.control, control) &&
          holdsMark(model, {run.from, run.to}))
        return true;
    }
    return false;
  });
}

[[noreturn]] void refuseContent() {
  throw errors::Fault(
      word::kCommandFailed,
      u"The text lies in a content control whose contents are locked; lift the lock in a word "
      u"processor (Developer, Properties), or choose other text.");
}

[[noreturn]] void refuseDeletion() {
  throw errors::Fault(word::kCommandFailed,
                      u"All of the text in a content control would go, and the control is locked against "
                      u"deletion; lift the lock in a word processor (Developer, Properties), or choose other "
                      u"text.");
}

void requireChangeable(const Model& model, std::int32_t control) {
  if (control != kNone && at(model, control).contentLocked) refuseContent();
}

/// Whether there is a paragraph of the control before the one at a position.
bool hasParagraphBefore(const Model& model, Position position, std::int32_t control) {
  while (position > 0 && isWithin(model, controlAt(model, position - 1), control)) {
    const Position from = model.structure().runAt(position - 1).from;
    if (holdsMark(model, {from, position})) return true;
    position = from;
  }
  return false;
}

/// A control of whole paragraphs that loses its last mark dissolves, unless an earlier or a new one stays.
void requireMarkStays(const Model& model, Span span, const Landing* landing, bool textHasMark) {
  std::int32_t control =
      commonOf(model.controls(), controlAt(model, span.from - 1), controlAt(model, span.from));
  for (; !isWithin(model, controlAt(model, span.to), control); control = at(model, control).parent) {
    const bool bringsMark =
        textHasMark && landing != nullptr && isWithin(model, landing->structure.control, control);
    const bool locked = at(model, control).deletionLocked && !at(model, control).inlined;
    if (locked && !bringsMark && !hasParagraphBefore(model, span.from, control)) refuseDeletion();
  }
}

/// What goes: controls that are covered wholly go themselves, of others the content changes.
void requireRemovable(const Model& model, Span span, const Landing* landing, bool textHasMark) {
  const auto over = [&](Position position) {
    return commonOf(model.controls(), controlAt(model, position - 1), controlAt(model, position));
  };
  const PartlyCovered<Control> partly(model.controls(), over(span.from), over(span.to));
  for (const auto& run : model.structure().runs(span.from, span.to)) {
    std::int32_t control = run.value.control;
    for (; control != kNone && !partly.holds(control); control = at(model, control).parent) {
      const Control& whole = at(model, control);
      const bool stays = landing != nullptr && landing->structure.control != kNone &&
                         isWithin(model, landing->structure.control, control) &&
                         (whole.inlined || textHasMark);
      if (whole.deletionLocked && !stays) refuseDeletion();
    }
    requireChangeable(model, control);
  }
}

}  // namespace

std::int32_t controlFor(const Model& model, Span span, bool besideLeft, const Structure& structure,
                        std::u16string_view newText) {
  if (model.controls().empty()) return kNone;
  const std::int32_t left = controlAt(model, span.from - 1);
  const std::int32_t right = controlAt(model, span.to);
  std::int32_t control = controlAt(model, besideLeft ? span.from - 1 : span.from);
  if (besideLeft && model.endsParagraph(span.from - 1)) {
    control = aroundParagraph(model, endsWithMark(newText) ? commonOf(model.controls(), left, right) : right);
  }
  const auto isOutside = [&](const Control& candidate) {
    return commonOf(model.tables(), candidate.table, structure.table) != candidate.table;
  };
  while (control != kNone) {
    const Control& candidate = at(model, control);
    const bool besideGuided = candidate.isGuided && !(left != kNone && isWithin(model, left, control) &&
                                                      right != kNone && isWithin(model, right, control));
    if (!besideGuided && !isOutside(candidate)) break;
    control = candidate.parent;
  }
  return control;
}

std::u16string fitted(const Model& model, const Landing& landing, Removal& removal, std::u16string text) {
  const std::int32_t control = landing.structure.control;
  if (control == kNone || !at(model, control).takesLineBreaks) return text;
  if (endsWithMark(text) && removal.spans.size() == 1 && isPlainMark(model, removal.spans[0].to - 1)) {
    text.pop_back();
    if (--removal.spans[0].to == removal.spans[0].from) removal.spans.clear();
  }
  // The last new mark may stand for that of the control's own paragraph, where that goes.
  const std::int32_t outer = aroundParagraph(model, control);
  const bool ownMarkGoes = outer != kNone && outer == control && takesMarkOf(model, removal, outer);
  const std::size_t last = ownMarkGoes ? text.rfind(text::kParagraphMark) : text.npos;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == text::kParagraphMark && i != last) text[i] = text::kLineBreak;
  }
  return text;
}

void requireUnlocked(const Model& model, const Removal& removal, const Landing* landing,
                     std::u16string_view newText) {
  if (model.controls().empty()) return;
  const bool textHasMark = newText.find(text::kParagraphMark) != newText.npos;
  if (landing != nullptr) requireChangeable(model, landing->structure.control);
  for (const Span& span : removal.spans) {
    const Landing* const landed = &span == removal.spans.data() ? landing : nullptr;
    requireRemovable(model, span, landed, textHasMark);
    requireMarkStays(model, span, landed, textHasMark);
    // A paragraph of which the mark in front goes takes in what is left there.
    const bool startsParagraph = span.from == 0 || model.endsParagraph(span.from - 1);
    const bool leavesNothing = newText.empty() ? startsParagraph : endsWithMark(newText);
    if (!leavesNothing && holdsMark(model, span))
      requireChangeable(model, aroundParagraph(model, controlAt(model, span.to)));
  }
}

void requireUnlocked(const Model& model, Span highlighted) {
  if (model.controls().empty()) return;
  for (const auto& run : model.structure().runs(highlighted.from, highlighted.to))
    requireChangeable(model, run.value.control);
}

}  // namespace pluvo::document
