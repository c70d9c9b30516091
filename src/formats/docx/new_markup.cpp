#include "new_markup.h"

#include "run_content.h"

namespace pluvo::docx {

namespace {

/// New text without paragraph marks.
std::string newRuns(EditedPart& part, const Markup& markup, std::u16string_view units, Position at,
                    std::string_view runProperties) {
  std::string result;
  forEachFate(part.story, at, units, [&](std::size_t begin, std::size_t size, bool deleted) {
    const std::u16string_view text = units.substr(begin, size);
    const std::string tag = markup.element + std::string(textName(part, deleted));
    if (deleted) result += deletionTag(part, markup);
    forEachColour(part.story, at + static_cast<Position>(begin), text,
                  [&](std::size_t from, std::size_t count, std::uint8_t colour) {
                    result += markup.tag("r") + ">" + withHighlight(runProperties, markup, colour);
                    appendContent(result, text.substr(from, count), tag, markup);
                    result += markup.endTag("r");
                  });
    if (deleted) result += markup.endTag("del");
  });
  return result;
}

}  // namespace

std::string_view textName(const EditedPart& part, bool deleted) {
  if (part.fields.inCode()) return deleted ? "delInstrText" : "instrText";
  return deleted ? "delText" : "t";
}

std::string deletionTag(EditedPart& part, const Markup& markup) {
  std::string attributes = attributesOf(part.deletion);
  if (attributes.empty()) {
    const std::string& prefix = markup.attribute;
    attributes = markup.declaration + " " + prefix + "id=\"0\" " + prefix + "author=\"\"";
  }
  return part.identifiers.withFreshIds(markup.tag("del") + attributes + ">");
}

void noteDeletion(EditedPart& part, const Properties& paragraph) {
  if (paragraph.look.deleted) part.deletion = deletionOfMark(part.output.source(paragraph.whole));
}

std::vector<NewLine> newLines(EditedPart& part, const Markup& markup, const Step& put,
                              std::string_view runProperties) {
  std::vector<NewLine> lines;
  std::size_t from = 0;
  while (true) {
    const std::size_t mark = put.units.find(text::kParagraphMark, from);
    const std::size_t to = std::min(mark, put.units.size());
    const Position at = put.at + static_cast<Position>(from);
    lines.push_back({newRuns(part, markup, put.units.substr(from, to - from), at, runProperties)});
    if (mark == std::u16string_view::npos) return lines;
    const Position markAt = put.at + static_cast<Position>(mark);
    lines.back().markColour = part.colourAt(markAt);
    lines.back().markDeleted = part.story.structure().valueAt(markAt).deleted;
    from = mark + 1;
  }
}

std::string withNewMark(EditedPart& part, const Markup& markup, std::string_view paragraphProperties,
                        std::uint8_t colour, bool deleted, std::string_view runProperties) {
  std::string properties = withMarkLike(paragraphProperties, markup, colour, runProperties);
  if (!deleted) return properties;
  std::string deletion = deletionTag(part, markup);
  deletion.insert(deletion.size() - 1, 1, '/');
  return withMarkDeletion(properties, markup, deletion);
}

std::string paragraphTag(const EditedPart& part, const Markup& markup, const Tag& tag, bool splitOff) {
  if (tag.extent.empty()) return markup.tag("p") + ">";
  const std::string_view bytes = part.output.source(tag.extent);
  return openedTag(splitOff ? startTagWithout(bytes, {"paraId", "textId"}) : std::string(bytes));
}

ParagraphStart startOfSplitOff(const EditedPart& part, const Markup& markup, const Tag& tag,
                               const Properties& properties) {
  return {paragraphTag(part, markup, tag, true), forSplitOffParagraph(part.output.source(properties.whole))};
}

}  // namespace pluvo::docx
