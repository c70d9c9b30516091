#include "table_tags.h"

namespace pluvo::formats::html {

void TableTags::open(const Token& token, const Style& style, const Attributes& attributes) {
  const std::size_t at = token.extent.begin;
  blocks_.endParagraph(at);
  if (walk_.tables.isBetweenCells()) closeTable(at, {at, at});
  blocks_.push(token, style, attributes);
  walk_.blocks.inner().align = Style::Align::start;
  walk_.tables.openTable();
  walk_.events.blockBegins(walk_.blocks.inner());
}

void TableTags::part(const Token& token, const Style& style, const Attributes& attributes) {
  OpenTables& tables = walk_.tables;
  const std::size_t at = token.extent.begin;
  if (!tables.any()) return walk_.events.aside(Aside::markup, token.extent);
  closeWithin(at);
  if (!isCell(token.name) && token.name != Name::caption) {
    if (token.name != Name::colgroup && token.name != Name::col) tables.endRow();
    if (token.name == Name::tr && style.hidden()) tables.hideRow();
    return walk_.events.divides(token.extent);
  }
  if (isCell(token.name)) {
    tables.beginCell(at);
  } else if (tables.inner().hasBegun) {
    tables.interrupt();
  }
  blocks_.push(token, style, attributes);
  tables.openCell(token.name);
  walk_.events.blockBegins(walk_.blocks.inner());
}

void TableTags::endPart(const Token& token) {
  const std::size_t at = token.extent.begin;
  if (!walk_.tables.any()) return walk_.events.aside(Aside::markup, token.extent);
  const Name inner = walk_.tables.inner().name;
  if (isCell(token.name) || token.name == Name::caption) {
    if (inner != token.name) return walk_.events.aside(Aside::markup, token.extent);
    return closeCell(at, token.extent);
  }
  if (token.name == Name::table) return closeTable(at, token.extent);
  if (inner == Name::caption || token.name == Name::colgroup)
    return walk_.events.aside(Aside::markup, token.extent);
  closeWithin(at);
  walk_.tables.endRow();
  walk_.events.divides(token.extent);
}

/// All up to the innermost table.
void TableTags::closeWithin(std::size_t at) {
  if (!walk_.tables.isBetweenCells()) closeCell(at, {at, at});
  blocks_.closeTo(walk_.tables.inner().block + 1, at);
  paragraphs_.end(at, false);
}

void TableTags::closeCell(std::size_t at, Extent endTag) {
  OpenTables& tables = walk_.tables;
  blocks_.closeTo(tables.inner().block + 1, at);
  const State markState = paragraphs_.markState();
  paragraphs_.end(at, true);
  if (isCell(tables.inner().name) && !tables.inner().endsInParagraph) paragraphs_.addToCell(at, markState);
  tables.closeCell();
  walk_.events.blockEnds(blocks_.pop(), endTag);
}

void TableTags::closeTable(std::size_t at, Extent endTag) {
  closeWithin(at);
  walk_.tables.closeTable(endTag);
  walk_.events.blockEnds(blocks_.pop(), endTag);
}

void TableTags::closeAll(std::size_t at) {
  while (walk_.tables.isInside()) {
    if (walk_.tables.isBetweenCells()) {
      closeTable(at, {at, at});
    } else {
      closeCell(at, {at, at});
    }
  }
}

}  // namespace pluvo::formats::html
