#include "open_tables.h"

#include "document/content_builder.h"
#include "errors/document_error.h"

namespace pluvo::formats::html {

void OpenTables::openTable() {
  scopes_.push_back({Name::table, blocks_.size() - 1});
  if (++tables_ > document::ContentBuilder::kDeepest)
    throw errors::DocumentError(errors::Problem::tooLarge,
                                "The page nests tables more than 1,000 deep; it cannot be worked on.");
}

void OpenTables::beginCell(std::size_t at) {
  Scope& table = scopes_.back();
  if (!table.hasBegun) events_.tableBegins(blocks_[table.block], at);
  table.hasBegun = table.rowHasCells = true;
}

void OpenTables::hideRow() {
  if (scopes_.back().rowHidden) return;
  scopes_.back().rowHidden = true;
  ++hiddenRows_;
}

void OpenTables::endRow() {
  Scope& table = scopes_.back();
  if (table.rowHasCells) events_.rowEnds();
  table.rowHasCells = false;
  if (table.rowHidden) --hiddenRows_;
  table.rowHidden = false;
}

void OpenTables::interrupt() {
  endRow();
  Scope& table = scopes_.back();
  if (table.hasBegun) events_.tableEnds({}, false);
  table.hasBegun = false;
  table.wasBroken = true;
}

void OpenTables::closeTable(Extent endTag) {
  endRow();
  const Scope table = scopes_.back();
  if (table.hasBegun) events_.tableEnds(endTag, !table.wasBroken);
  scopes_.pop_back();
  --tables_;
  if (table.hasBegun && isInside()) scopes_.back().endsInParagraph = false;
}

}  // namespace pluvo::formats::html
