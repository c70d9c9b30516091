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

const Control& at(const Story& story, std::int32_t control) {
  return story.controls()[static_cast<std::size_t>(control)];
}

std::int32_t controlAt(const Story& story, Position position) {
  return position < 0 || position >= story.length() ? kNone : story.structure().valueAt(position).control;
}

/// The innermost one that holds whole paragraphs.
std::int32_t aroundParagraph(const Story& story, std::int32_t control) {
  while (control != kNone && at(story, control).inlined) control = at(story, control).parent;
  return control;
}

bool isWithin(const Story& story, std::int32_t control, std::int32_t outer) {
  return outer == kNone || commonOf(story.controls(), control, outer) == outer;
}

bool isPlainMark(const Story& story, Position position) {
  return position >= 0 && story.text().at(position) == text::kParagraphMark;
}

bool holdsMark(const Story& story, Span span) {
  bool found = false;
  story.text().forEachStretch(span.from, span.to, [&](Position from, const text::Stretch& stretch) {
    for (Position i = 0; i < stretch.length && !found; ++i) found = story.endsParagraph(from + i);
    return !found;
  });
  return found;
}

bool endsWithMark(std::u16string_view text) { return !text.empty() && text.back() == text::kParagraphMark; }

/// Whether a removal takes the mark of a paragraph in the control.
bool takesMarkOf(const Story& story, const Removal& removal, std::int32_t control) {
  return std::any_of(removal.spans.begin(), removal.spans.end(), [&](const Span& span) {
    for (const auto& run : story.structure().runs(span.from, span.to)) {
      if (run.value.control != kNone && isWithin(story, run.value.control, control) &&
          holdsMark(story, {run.from, run.to}))
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

void requireChangeable(const Story& story, std::int32_t control) {
  if (control != kNone && at(story, control).contentLocked) refuseContent();
}

/// Whether there is a paragraph of the control before the one at a position.
bool hasParagraphBefore(const Story& story, Position position, std::int32_t control) {
  while (position > 0 && isWithin(story, controlAt(story, position - 1), control)) {
    const Position from = story.structure().runAt(position - 1).from;
    if (holdsMark(story, {from, position})) return true;
    position = from;
  }
  return false;
}

/// A control of whole paragraphs that loses its last mark dissolves, unless an earlier or a new one stays.
void requireMarkStays(const Story& story, Span span, const Landing* landing, bool textHasMark) {
  std::int32_t control =
      commonOf(story.controls(), controlAt(story, span.from - 1), controlAt(story, span.from));
  for (; !isWithin(story, controlAt(story, span.to), control); control = at(story, control).parent) {
    const bool bringsMark =
        textHasMark && landing != nullptr && isWithin(story, landing->structure.control, control);
    const bool locked = at(story, control).deletionLocked && !at(story, control).inlined;
    if (locked && !bringsMark && !hasParagraphBefore(story, span.from, control)) refuseDeletion();
  }
}

/// Controls covered wholly go; the content of others changes.
void requireRemovable(const Story& story, Span span, const Landing* landing, bool textHasMark) {
  const auto over = [&](Position position) {
    return commonOf(story.controls(), controlAt(story, position - 1), controlAt(story, position));
  };
  const PartlyCovered<Control> partly(story.controls(), over(span.from), over(span.to));
  for (const auto& run : story.structure().runs(span.from, span.to)) {
    std::int32_t control = run.value.control;
    for (; control != kNone && !partly.holds(control); control = at(story, control).parent) {
      const Control& whole = at(story, control);
      const bool stays = landing != nullptr && landing->structure.control != kNone &&
                         isWithin(story, landing->structure.control, control) &&
                         (whole.inlined || textHasMark);
      if (whole.deletionLocked && !stays) refuseDeletion();
    }
    requireChangeable(story, control);
  }
}

}  // namespace

std::int32_t controlFor(const Story& story, Span span, bool besideLeft, const Structure& structure,
                        std::u16string_view newText) {
  if (story.controls().empty()) return kNone;
  const std::int32_t left = controlAt(story, span.from - 1);
  const std::int32_t right = controlAt(story, span.to);
  std::int32_t control = controlAt(story, besideLeft ? span.from - 1 : span.from);
  if (besideLeft && story.endsParagraph(span.from - 1)) {
    control = aroundParagraph(story, endsWithMark(newText) ? commonOf(story.controls(), left, right) : right);
  }
  const auto isOutside = [&](const Control& candidate) {
    return commonOf(story.tables(), candidate.table, structure.table) != candidate.table;
  };
  while (control != kNone) {
    const Control& candidate = at(story, control);
    const bool besideGuided = candidate.isGuided && !(left != kNone && isWithin(story, left, control) &&
                                                      right != kNone && isWithin(story, right, control));
    if (!besideGuided && !isOutside(candidate)) break;
    control = candidate.parent;
  }
  return control;
}

std::u16string fitted(const Story& story, const Landing& landing, Removal& removal, std::u16string text) {
  const std::int32_t control = landing.structure.control;
  if (control == kNone || !at(story, control).takesLineBreaks) return text;
  if (endsWithMark(text) && removal.spans.size() == 1 && isPlainMark(story, removal.spans[0].to - 1)) {
    text.pop_back();
    if (--removal.spans[0].to == removal.spans[0].from) removal.spans.clear();
  }
  // The last new mark may stand for that of the control's own paragraph, where that goes.
  const std::int32_t outer = aroundParagraph(story, control);
  const bool ownMarkGoes = outer != kNone && outer == control && takesMarkOf(story, removal, outer);
  const std::size_t last = ownMarkGoes ? text.rfind(text::kParagraphMark) : text.npos;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == text::kParagraphMark && i != last) text[i] = text::kLineBreak;
  }
  return text;
}

void requireUnlocked(const Story& story, const Removal& removal, const Landing* landing,
                     std::u16string_view newText) {
  if (story.controls().empty()) return;
  const bool textHasMark = newText.find(text::kParagraphMark) != newText.npos;
  if (landing != nullptr) requireChangeable(story, landing->structure.control);
  for (const Span& span : removal.spans) {
    const Landing* const landed = &span == removal.spans.data() ? landing : nullptr;
    requireRemovable(story, span, landed, textHasMark);
    requireMarkStays(story, span, landed, textHasMark);
    // A paragraph whose preceding mark goes takes in the text left there.
    const bool startsParagraph = span.from == 0 || story.endsParagraph(span.from - 1);
    const bool leavesNothing = newText.empty() ? startsParagraph : endsWithMark(newText);
    if (!leavesNothing && holdsMark(story, span))
      requireChangeable(story, aroundParagraph(story, controlAt(story, span.to)));
  }
}

void requireUnlocked(const Story& story, Span highlighted) {
  if (story.controls().empty()) return;
  for (const auto& run : story.structure().runs(highlighted.from, highlighted.to))
    requireChangeable(story, run.value.control);
}

}  // namespace pluvo::document
