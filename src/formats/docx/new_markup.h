#pragma once

#include "base/utf.h"
#include "edited_part.h"
#include "properties.h"

#include <string>
#include <string_view>
#include <vector>

/// Markup for new text and new marks, of which the edited document knows highlight and deletion.
namespace pluvo::docx {

/// Visits the stretches of one colour: visit(from, count, colour). A character of two units is not divided.
template <class Visit>
void forEachColour(const document::Story& story, Position at, std::u16string_view units, Visit visit);

/// Visits the stretches that are deleted and those that are not: visit(from, count, deleted).
template <class Visit>
void forEachFate(const document::Story& story, Position at, std::u16string_view units, Visit visit);

/// The local name of the element around text where the edit has come to.
std::string_view textName(const EditedPart& part, bool deleted);

/// The start tag of a tracked deletion like the one met last.
std::string deletionTag(EditedPart& part, const Markup& markup);

/// Deleted text beside a deleted mark takes after that.
void noteDeletion(EditedPart& part, const Properties& paragraph);

/// New text up to a mark, or the text after the last.
struct NewLine {
  std::string runs;
  std::uint8_t markColour = 0;
  bool markDeleted = false;
};

/// New text as runs of its own.
std::vector<NewLine> newLines(EditedPart& part, const Markup& markup, const Step& put,
                              std::string_view runProperties);

/// The properties of a paragraph that a new mark ends.
std::string withNewMark(EditedPart& part, const Markup& markup, std::string_view paragraphProperties,
                        std::uint8_t colour, bool deleted, std::string_view runProperties);

/// The beginning of a paragraph.
struct ParagraphStart {
  std::string tag;
  std::string properties;
};

/// The start tag of a paragraph; of one that was split off it, that has no identity.
std::string paragraphTag(const EditedPart& part, const Markup& markup, const Tag& tag, bool splitOff);

/// The start of a paragraph like this one, for text that is split off it.
ParagraphStart startOfSplitOff(const EditedPart& part, const Markup& markup, const Tag& tag,
                               const Properties& properties);

template <class Visit>
void forEachColour(const document::Story& story, Position at, std::u16string_view units, Visit visit) {
  if (units.empty()) return;
  if (const auto run = story.highlight().runAt(at); run.to >= at + static_cast<Position>(units.size()))
    return visit(std::size_t{0}, units.size(), run.value);
  const auto past = [&](Position position) {
    const auto i = static_cast<std::size_t>(position - at);
    const bool inPair =
        i > 0 && i < units.size() && base::isLowSurrogate(units[i]) && base::isHighSurrogate(units[i - 1]);
    return inPair ? i + 1 : i;
  };
  for (const auto& run : story.highlight().runs(at, at + static_cast<Position>(units.size()))) {
    const std::size_t from = past(run.from);
    const std::size_t to = past(run.to);
    if (from < to) visit(from, to - from, run.value);
  }
}

template <class Visit>
void forEachFate(const document::Story& story, Position at, std::u16string_view units, Visit visit) {
  const Position end = at + static_cast<Position>(units.size());
  for (Position from = at; from < end;) {
    const auto first = story.structure().runAt(from);
    Position to = std::min(first.to, end);
    while (to < end && story.structure().valueAt(to).deleted == first.value.deleted)
      to = std::min(story.structure().runEnd(to), end);
    visit(static_cast<std::size_t>(from - at), static_cast<std::size_t>(to - from), first.value.deleted);
    from = to;
  }
}

}  // namespace pluvo::docx
