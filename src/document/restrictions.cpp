// What a format cannot do in place is refused before anything changes.
#include "base/utf.h"
#include "document/edit_policy.h"
#include "errors/fault.h"
#include "nesting.h"
#include "word/faults.h"

namespace pluvo::document {

using text::Position;
using text::Span;

namespace {

const Restriction* restrictionOf(const Story& story, const Structure& structure) {
  if (structure.restriction == kNone) return nullptr;
  return &story.restrictions()[static_cast<std::size_t>(structure.restriction)];
}

std::int32_t fieldAt(const Story& story, Position position) {
  return position < 0 || position >= story.length() ? kNone : story.structure().valueAt(position).field;
}

[[noreturn]] void refuse(const Restriction& restriction) {
  throw errors::Fault(word::kCommandFailed, base::utf16(restriction.sentence)).with(restriction.problem);
}

void requireRemovable(const Story& story, Span span) {
  const auto over = [&](Position position) {
    return commonOf(story.fields(), fieldAt(story, position - 1), fieldAt(story, position));
  };
  const PartlyCovered<Field> partly(story.fields(), over(span.from), over(span.to));
  for (const auto& run : story.structure().runs(span.from, span.to)) {
    const Restriction* const restriction = restrictionOf(story, run.value);
    if (restriction == nullptr || restriction->of == Restriction::Of::highlight ||
        restriction->of == Restriction::Of::colour || restriction->of == Restriction::Of::living)
      continue;
    if (restriction->of == Restriction::Of::part && !partly.holds(run.value.field)) continue;
    refuse(*restriction);
  }
}

/// The text in front of a removed span joins what follows it.
void requireJoinable(const Story& story, Span removed) {
  const Restriction* const restriction = restrictionOf(story, story.structure().valueAt(removed.to));
  if (restriction == nullptr || restriction->of != Restriction::Of::living) return;
  for (Position at = removed.from; at > 0 && !story.endsParagraph(at - 1); --at)
    if (!story.structure().valueAt(at - 1).deleted) refuse(*restriction);
}

void requireRoomFor(const Story& story, const Landing& landing) {
  const Restriction* const joined = restrictionOf(story, landing.structure);
  if (joined != nullptr && joined->of == Restriction::Of::living && !landing.structure.deleted)
    refuse(*joined);
  const Structure beside = story.structure().valueAt(landing.beside);
  const Restriction* const restriction = restrictionOf(story, beside);
  if (restriction == nullptr) return;
  const bool within = restriction->of == Restriction::Of::part && landing.structure.field == beside.field;
  if (within || restriction->of == Restriction::Of::change) refuse(*restriction);
}

}  // namespace

void requirePossible(const Story& story, const Removal& removal, const Landing* landing) {
  if (story.restrictions().empty()) return;
  for (const Span& span : removal.spans) {
    requireRemovable(story, span);
    requireJoinable(story, span);
  }
  if (landing != nullptr) requireRoomFor(story, *landing);
}

void requirePossible(const Story& story, Span highlighted) {
  if (story.restrictions().empty()) return;
  for (const auto& run : story.structure().runs(highlighted.from, highlighted.to)) {
    const Restriction* const restriction = restrictionOf(story, run.value);
    if (restriction == nullptr) continue;
    if (restriction->of == Restriction::Of::change || restriction->of == Restriction::Of::colour)
      refuse(*restriction);
  }
}

}  // namespace pluvo::document
