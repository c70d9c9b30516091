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

std::int32_t tableAt(const Model& model, Position position) {
  return position < 0 ? kNone : model.structure().valueAt(position).table;
}

std::int32_t fieldAt(const Model& model, Position position) {
  return position < 0 ? kNone : model.structure().valueAt(position).field;
}

bool endsWithMark(std::u16string_view text) { return !text.empty() && text.back() == text::kParagraphMark; }

/// The parts of a span that go by the rules for fields and tables.
class Cover {
 public:
  Cover(const Model& model, Span span, text::View view)
      : model_(model),
        view_(view),
        tables_(model.tables(), over(model.tables(), tableAt, span.from),
                over(model.tables(), tableAt, span.to)),
        fields_(model.fields(), over(model.fields(), fieldAt, span.from),
                over(model.fields(), fieldAt, span.to)) {
    for (const auto& run : model.structure().runs(span.from, span.to)) {
      take({run.from, run.to}, run.value);
    }
  }

  std::vector<Span> spans;

 private:
  /// What reaches over a position: the innermost table (or field) on both sides of it.
  template <class Nested>
  std::int32_t over(const std::vector<Nested>& all, std::int32_t (*innermostAt)(const Model&, Position),
                    Position position) const {
    return commonOf(all, innermostAt(model_, position - 1), innermostAt(model_, position));
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
    for (const auto& shown : model_.visibility().runs(run.from, run.to)) {
      if (!text::isVisible(shown.value, view_)) continue;
      takeAllBut({shown.from, shown.to}, text::kFieldBegin, text::kFieldEnd, keepsCellMarks);
    }
  }

  Visibility aroundOf(std::int32_t field) const {
    return model_.fields()[static_cast<std::size_t>(field)].around;
  }

  void takeAllBut(Span span, char16_t first, char16_t last, bool orCellMark = false) {
    model_.text().forEachStretch(span.from, span.to, [&](Position start, const text::Stretch& stretch) {
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

  const Model& model_;
  text::View view_;
  PartlyCovered<Table> tables_;
  PartlyCovered<Field> fields_;
};

/// The last paragraph mark in a span that lies directly in a table (or outside all).
std::optional<Position> lastMarkIn(const Model& model, Span span, std::int32_t table) {
  std::optional<Position> found;
  for (const auto& run : model.structure().runs(span.from, span.to)) {
    if (run.value.table != table) continue;
    for (Position i = run.to; i > run.from; --i) {
      if (!model.endsParagraph(i - 1)) continue;
      found = i - 1;
      break;
    }
  }
  return found;
}

/// The paragraph mark to be kept lest the text or the table in front of a removed span run into a table
/// behind it.
std::optional<Position> keptMark(const Model& model, Span removed, bool textInFront) {
  const std::int32_t inFront = tableAt(model, removed.from - 1);
  const std::int32_t behind = tableAt(model, removed.to);
  const std::int32_t gap = commonOf(model.tables(), inFront, behind);
  if (behind == gap || (inFront == gap && !textInFront)) return std::nullopt;
  return lastMarkIn(model, removed, gap);
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

Context plainContext(const Model& model, Position position) {
  return {fieldAt(model, position), model.visibility().valueAt(position)};
}

/// The anchor of a comment is never shown, but that says nothing of text beside it.
Position pastCommentReferences(const Model& model, Position position) {
  while (position > 0 && model.text().at(position) == text::kCommentReference) --position;
  return position;
}

Context contextBehind(const Model& model, Position position) {
  if (isOrdinary(model.text().at(position))) return plainContext(model, position);
  position = pastCommentReferences(model, position);
  const std::int32_t field = fieldAt(model, position);
  if (model.text().at(position) == text::kCommentReference) return {field, text::kEverywhere};
  if (!model.isFieldMark(position)) return {field, model.visibility().valueAt(position)};
  const Field& marked = model.fields()[static_cast<std::size_t>(field)];
  const char16_t mark = model.text().at(position);
  if (mark == text::kFieldEnd) return {marked.parent, marked.around};
  const Visibility part = mark == text::kFieldBegin ? text::kInCodes : text::kInResults;
  return {field, static_cast<Visibility>(marked.around & part)};
}

Context contextBefore(const Model& model, Position position) {
  if (isOrdinary(model.text().at(position))) return plainContext(model, position);
  if (model.text().at(position) == text::kCommentReference) return contextBehind(model, position);
  const std::int32_t field = fieldAt(model, position);
  if (!model.isFieldMark(position)) return {field, model.visibility().valueAt(position)};
  const Field& marked = model.fields()[static_cast<std::size_t>(field)];
  switch (model.text().at(position)) {
    case text::kFieldBegin:
      return {marked.parent, marked.around};
    case text::kFieldSeparator:
      return {field, static_cast<Visibility>(marked.around & text::kInCodes)};
    default:
      break;
  }
  // Hidden text in front says nothing of the place; the field's own marks do.
  for (Position front = position - 1;; --front) {
    const Context context = contextBehind(model, front);
    const bool ownMark = model.isFieldMark(front) && fieldAt(model, front) == field;
    if (ownMark || (context.field == field && context.visibility != text::kNowhere)) return context;
  }
}

bool isDeleted(const Model& model, Position position) { return model.structure().valueAt(position).deleted; }

Landing landing(const Model& model, Position at, Position anchor, bool behind, std::int32_t table) {
  const Context context = behind ? contextBehind(model, anchor) : contextBefore(model, anchor);
  Landing result;
  result.at = at;
  result.anchor = model.text().anchorAt(anchor, behind);
  result.structure.table = table;
  result.structure.field = context.field;
  result.visibility = context.visibility;
  result.highlight = model.highlight().valueAt(anchor);
  return result;
}

bool allDeleted(const Model& model, const std::vector<Span>& spans) {
  if (!isDeleted(model, spans.front().from)) return false;
  return std::all_of(spans.begin(), spans.end(), [&](const Span& span) {
    for (const auto& run : model.structure().runs(span.from, span.to)) {
      if (!run.value.deleted) return false;
    }
    return true;
  });
}

/// Whether there is neither table, field nor control within the span nor on its sides: then all of it goes.
bool liesAmidPlainText(const Model& model, Span span) {
  const auto around = model.structure().runAt(span.from);
  const bool reachesBeyond = (span.from == 0 || around.from < span.from) && span.to < around.to;
  return reachesBeyond && around.value.table == kNone && around.value.field == kNone &&
         around.value.control == kNone;
}

}  // namespace

Removal removalOf(const Model& model, Span span, std::u16string_view newText, text::View view) {
  const Position finalMark = model.length() - 1;
  span = {std::min(span.from, finalMark), std::min(span.to, finalMark)};
  Removal removal{span.from, {}};
  if (span.empty()) return removal;
  if (liesAmidPlainText(model, span)) {
    removal.spans.push_back(span);
    return removal;
  }

  bool first = true;
  for (const Span& covered : Cover(model, span, view).spans) {
    const bool textKept = covered.from > 0 && !model.endsParagraph(covered.from - 1);
    const bool newInFront = first && !newText.empty();
    if (first) removal.at = covered.from;
    first = false;
    Span rest = covered;
    const auto kept =
        newInFront && endsWithMark(newText) ? std::nullopt : keptMark(model, covered, newInFront || textKept);
    if (kept) {
      if (*kept > covered.from) removal.spans.push_back({covered.from, *kept});
      rest.from = *kept + 1;
    }
    if (!rest.empty()) removal.spans.push_back(rest);
  }
  return removal;
}

Landing landingAt(const Model& model, Position position, bool behind, std::u16string_view newText) {
  Position at = std::min(position, model.length() - 1);
  if (behind && at > 0 && model.isCellMark(at - 1)) --at;
  while (at > 0 && model.isRowMark(at)) --at;

  const std::int32_t joined = tableAt(model, at);
  const std::int32_t inFront = tableAt(model, at - 1);
  bool besideLeft = false;
  if (at != position) {
    besideLeft = at > 0 && !model.endsParagraph(at - 1);
  } else if (behind && at > 0) {
    besideLeft = !model.isRowMark(at - 1) && (endsWithMark(newText) || inFront == joined);
  }
  const bool ownParagraph = besideLeft && endsWithMark(newText);
  const std::int32_t table = ownParagraph ? commonOf(model.tables(), inFront, joined) : joined;
  Landing result = landing(model, at, besideLeft ? at - 1 : at, besideLeft, table);
  result.structure.control = controlFor(model, {at, at}, besideLeft, result.structure, newText);
  result.structure.deleted = isDeleted(model, at) && (at == 0 || isDeleted(model, at - 1));
  return result;
}

Landing landingInsteadOf(const Model& model, const Removal& removal, std::u16string_view newText) {
  const Span span = removal.spans.front();
  const std::int32_t joined = tableAt(model, span.to);
  const std::int32_t table =
      endsWithMark(newText) ? commonOf(model.tables(), tableAt(model, span.from), joined) : joined;
  Landing result = landing(model, span.from, span.from, false, table);
  result.structure.control = controlFor(model, span, false, result.structure, newText);
  result.structure.deleted = allDeleted(model, removal.spans);
  return result;
}

}  // namespace pluvo::document
