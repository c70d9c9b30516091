#include "document/edit_policy.h"

#include "controls.h"
#include "nesting.h"

#include <algorithm>
#include <optional>

namespace pluvo::document {

using text::Position;
using text::Span;
using text::Visibility;

namespace {

std::int32_t tableAt(const Story& story, Position position) {
  return position < 0 ? kNone : story.structure().valueAt(position).table;
}

std::int32_t fieldAt(const Story& story, Position position) {
  return position < 0 ? kNone : story.structure().valueAt(position).field;
}

bool endsWithMark(std::u16string_view text) { return !text.empty() && text.back() == text::kParagraphMark; }

/// The parts of a span that go by the rules for fields and tables.
class Cover {
 public:
  Cover(const Story& story, Span span, text::View view)
      : story_(story),
        view_(view),
        tables_(story.tables(), over(story.tables(), tableAt, span.from),
                over(story.tables(), tableAt, span.to)),
        fields_(story.fields(), over(story.fields(), fieldAt, span.from),
                over(story.fields(), fieldAt, span.to)) {
    for (const auto& run : story.structure().runs(span.from, span.to)) {
      take({run.from, run.to}, run.value);
    }
  }

  std::vector<Span> spans;

 private:
  /// The innermost table (or field) that reaches over a position, on both sides of it.
  template <class Nested>
  std::int32_t over(const std::vector<Nested>& all, std::int32_t (*innermostAt)(const Story&, Position),
                    Position position) const {
    return commonOf(all, innermostAt(story_, position - 1), innermostAt(story_, position));
  }

  void take(Span run, const Structure& structure) {
    const auto field = fields_.placeOf(structure.field);
    const bool keepsCellMarks = tables_.holds(structure.table);
    if (field.partly == kNone || field.wholly != kNone) {
      const bool goes = field.partly == kNone || text::isVisible(aroundOf(field.wholly), view_);
      if (goes && keepsCellMarks) takeAllBut(run, text::kCellMark, text::kCellMark);
      if (goes && !keepsCellMarks) add(run);
      return;
    }
    for (const auto& shown : story_.visibility().runs(run.from, run.to)) {
      if (!text::isVisible(shown.value, view_)) continue;
      takeAllBut({shown.from, shown.to}, text::kFieldBegin, text::kFieldEnd, keepsCellMarks);
    }
  }

  Visibility aroundOf(std::int32_t field) const {
    return story_.fields()[static_cast<std::size_t>(field)].around;
  }

  void takeAllBut(Span span, char16_t first, char16_t last, bool orCellMark = false) {
    story_.text().forEachStretch(span.from, span.to, [&](Position start, const text::Stretch& stretch) {
      for (Position i = 0; i < stretch.length; ++i) {
        const char16_t unit = stretch[i];
        const bool stays = (unit >= first && unit <= last) || (orCellMark && unit == text::kCellMark);
        if (!stays) add({start + i, start + i + 1});
      }
      return true;
    });
  }

  void add(Span span) {
    if (!spans.empty() && spans.back().to == span.from) {
      spans.back().to = span.to;
    } else {
      spans.push_back(span);
    }
  }

  const Story& story_;
  text::View view_;
  PartlyCovered<Table> tables_;
  PartlyCovered<Field> fields_;
};

/// The last paragraph mark in a span that lies directly in a table (or outside all).
std::optional<Position> lastMarkIn(const Story& story, Span span, std::int32_t table) {
  std::optional<Position> found;
  for (const auto& run : story.structure().runs(span.from, span.to)) {
    if (run.value.table != table) continue;
    for (Position i = run.to; i > run.from; --i) {
      if (!story.endsParagraph(i - 1)) continue;
      found = i - 1;
      break;
    }
  }
  return found;
}

/// The paragraph mark to be kept lest the text or the table in front of a removed span run into a table
/// after it.
std::optional<Position> keptMark(const Story& story, Span removed, bool textInFront) {
  // New text begins where the span does.
  const std::int32_t inFront = tableAt(story, textInFront ? removed.from : removed.from - 1);
  const std::int32_t after = tableAt(story, removed.to);
  const std::int32_t gap = commonOf(story.tables(), inFront, after);
  if (after == gap || (inFront == gap && !textInFront)) return std::nullopt;
  return lastMarkIn(story, removed, gap);
}

/// The field a piece of new text lies in, and which views show it.
struct Context {
  std::int32_t field;
  Visibility visibility;
};

/// Neither a field's mark nor the anchor of a comment.
bool isOrdinary(char16_t unit) {
  return unit != text::kCommentReference && (unit < text::kFieldBegin || unit > text::kFieldEnd);
}

Context plainContext(const Story& story, Position position) {
  return {fieldAt(story, position), story.visibility().valueAt(position)};
}

/// The anchor of a comment is never shown, but that says nothing of text beside it.
Position pastCommentReferences(const Story& story, Position position) {
  while (position > 0 && story.text().at(position) == text::kCommentReference) --position;
  return position;
}

Context contextAfter(const Story& story, Position position) {
  if (isOrdinary(story.text().at(position))) return plainContext(story, position);
  position = pastCommentReferences(story, position);
  const std::int32_t field = fieldAt(story, position);
  if (story.text().at(position) == text::kCommentReference) return {field, text::kEverywhere};
  if (!story.isFieldMark(position)) return {field, story.visibility().valueAt(position)};
  const Field& marked = story.fields()[static_cast<std::size_t>(field)];
  const char16_t mark = story.text().at(position);
  if (mark == text::kFieldEnd) return {marked.parent, marked.around};
  const Visibility part = mark == text::kFieldBegin ? text::kInCodes : text::kInResults;
  return {field, static_cast<Visibility>(marked.around & part)};
}

Context contextBefore(const Story& story, Position position) {
  if (isOrdinary(story.text().at(position))) return plainContext(story, position);
  if (story.text().at(position) == text::kCommentReference) return contextAfter(story, position);
  const std::int32_t field = fieldAt(story, position);
  if (!story.isFieldMark(position)) return {field, story.visibility().valueAt(position)};
  const Field& marked = story.fields()[static_cast<std::size_t>(field)];
  switch (story.text().at(position)) {
    case text::kFieldBegin:
      return {marked.parent, marked.around};
    case text::kFieldSeparator:
      return {field, static_cast<Visibility>(marked.around & text::kInCodes)};
    default:
      break;
  }
  // Hidden text in front says nothing of the place; the field's own marks do.
  for (Position front = position - 1;; --front) {
    const Context context = contextAfter(story, front);
    const bool ownMark = story.isFieldMark(front) && fieldAt(story, front) == field;
    if (ownMark || (context.field == field && context.visibility != text::kNowhere)) return context;
  }
}

bool isDeleted(const Story& story, Position position) { return story.structure().valueAt(position).deleted; }

Landing landing(const Story& story, Position at, Position anchor, bool after, std::int32_t table) {
  const Context context = after ? contextAfter(story, anchor) : contextBefore(story, anchor);
  Landing result;
  result.at = at;
  result.beside = anchor;
  result.anchor = story.text().anchorAt(anchor, after);
  result.structure.table = table;
  result.structure.field = context.field;
  result.visibility = context.visibility;
  result.highlight = story.highlight().valueAt(anchor);
  // Beside text that keeps its colour there is none to be had either.
  if (!story.restrictions().empty()) {
    const std::int8_t restriction = story.structure().valueAt(anchor).restriction;
    const bool keepsColour =
        restriction != kNone &&
        story.restrictions()[static_cast<std::size_t>(restriction)].of == Restriction::Of::colour;
    if (keepsColour) result.structure.restriction = restriction;
  }
  return result;
}

/// Text of a landing joins the paragraph of a character, which may take no living text.
void join(const Story& story, Position position, Landing& landing) {
  if (story.restrictions().empty()) return;
  const std::int8_t restriction = story.structure().valueAt(position).restriction;
  if (restriction == kNone) return;
  const Restriction::Of of = story.restrictions()[static_cast<std::size_t>(restriction)].of;
  if (of == Restriction::Of::living) landing.structure.restriction = restriction;
}

bool allDeleted(const Story& story, const std::vector<Span>& spans) {
  if (!isDeleted(story, spans.front().from)) return false;
  return std::all_of(spans.begin(), spans.end(), [&](const Span& span) {
    for (const auto& run : story.structure().runs(span.from, span.to)) {
      if (!run.value.deleted) return false;
    }
    return true;
  });
}

/// Whether there is neither table, field nor control within the span nor on its sides: then all of it goes.
bool liesAmidPlainText(const Story& story, Span span) {
  const auto around = story.structure().runAt(span.from);
  const bool reachesBeyond = (span.from == 0 || around.from < span.from) && span.to < around.to;
  return reachesBeyond && around.value.table == kNone && around.value.field == kNone &&
         around.value.control == kNone;
}

}  // namespace

Removal removalOf(const Story& story, Span span, std::u16string_view newText, text::View view) {
  const Position finalMark = story.length() - 1;
  span = {std::min(span.from, finalMark), std::min(span.to, finalMark)};
  Removal removal{span.from, {}};
  if (span.empty()) return removal;
  if (liesAmidPlainText(story, span)) {
    removal.spans.push_back(span);
    return removal;
  }

  bool first = true;
  for (const Span& covered : Cover(story, span, view).spans) {
    const bool textKept = covered.from > 0 && !story.endsParagraph(covered.from - 1);
    const bool newInFront = first && !newText.empty();
    if (first) removal.at = covered.from;
    first = false;
    Span rest = covered;
    const auto kept =
        newInFront && endsWithMark(newText) ? std::nullopt : keptMark(story, covered, newInFront || textKept);
    if (kept) {
      if (*kept > covered.from) removal.spans.push_back({covered.from, *kept});
      rest.from = *kept + 1;
    }
    if (!rest.empty()) removal.spans.push_back(rest);
  }
  return removal;
}

Landing landingAt(const Story& story, Position position, bool after, std::u16string_view newText) {
  Position at = std::min(position, story.length() - 1);
  if (after && at > 0 && story.isCellMark(at - 1)) --at;
  while (at > 0 && story.isRowMark(at)) --at;

  const std::int32_t joined = tableAt(story, at);
  const std::int32_t inFront = tableAt(story, at - 1);
  bool besideLeft = false;
  if (at != position) {
    besideLeft = at > 0 && !story.endsParagraph(at - 1);
  } else if (after && at > 0) {
    besideLeft = !story.isRowMark(at - 1) && (endsWithMark(newText) || inFront == joined);
  }
  const bool ownParagraph = besideLeft && endsWithMark(newText);
  const std::int32_t table = ownParagraph ? commonOf(story.tables(), inFront, joined) : joined;
  Landing result = landing(story, at, besideLeft ? at - 1 : at, besideLeft, table);
  result.structure.control = controlFor(story, {at, at}, besideLeft, result.structure, newText);
  result.structure.deleted = isDeleted(story, at) && (at == 0 || isDeleted(story, at - 1));
  join(story, at, result);
  return result;
}

Landing landingInsteadOf(const Story& story, const Removal& removal, std::u16string_view newText) {
  const Span span = removal.spans.front();
  const std::int32_t joined = tableAt(story, span.to);
  const std::int32_t table =
      endsWithMark(newText) ? commonOf(story.tables(), tableAt(story, span.from), joined) : joined;
  Landing result = landing(story, span.from, span.from, false, table);
  result.structure.control = controlFor(story, span, false, result.structure, newText);
  result.structure.deleted = allDeleted(story, removal.spans);
  join(story, span.to, result);
  return result;
}

}  // namespace pluvo::document
