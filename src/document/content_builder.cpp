#include "document/content_builder.h"

#include <cassert>
#include <limits>
#include <utility>

namespace pluvo::document {

using text::Position;
using text::Visibility;

namespace {

Visibility both(Visibility a, Visibility b) { return static_cast<Visibility>(a & b); }

std::int32_t parentOf(const std::vector<std::int32_t>& open) { return open.empty() ? kNone : open.back(); }

}  // namespace

Content plainContent(text::OriginalText text) {
  const Position length = text.length();
  assert(length > 0 && text[length - 1] == text::kParagraphMark);
  Content content;
  content.text = std::move(text);
  content.visibility.append(length, text::kEverywhere);
  content.highlight.append(length, 0);
  content.structure.append(length, Structure{});
  return content;
}

void ContentBuilder::append(std::u16string_view units, Look look) {
  add(units, look, here(), structureHere(look));
}

void ContentBuilder::appendAscii(std::string_view text, Look look) {
  text_.appendAscii(text);
  const Visibility shown = here();
  if (purpose_ == Purpose::search && isAlike(look.hidden ? text::kNowhere : shown)) {
    alike_ += static_cast<Position>(text.size());
    return;
  }
  addLayers(text.size(), look, shown, structureHere(look));
}

void ContentBuilder::beginField(Look look) {
  const Visibility around = look.hidden ? text::kNowhere : here();
  const std::int32_t parent = fields_.empty() ? kNone : fields_.back().field;
  content_.nesting.fields.push_back({parent, around});
  fields_.push_back({static_cast<std::int32_t>(content_.nesting.fields.size()) - 1, false});
  add(std::u16string_view(&text::kFieldBegin, 1), look, both(around, text::kInCodes), structureHere(look));
}

bool ContentBuilder::separateField(Look look) {
  if (fields_.empty() || fields_.back().inResult) return false;
  fields_.back().inResult = true;
  add(std::u16string_view(&text::kFieldSeparator, 1), look, text::kNowhere, structureHere(look));
  return true;
}

bool ContentBuilder::endField(Look look) {
  if (fields_.empty()) return false;
  const Structure structure = structureHere(look);
  const Visibility around = content_.nesting.fields[static_cast<std::size_t>(fields_.back().field)].around;
  fields_.pop_back();
  add(std::u16string_view(&text::kFieldEnd, 1), look, both(around, text::kInCodes), structure);
  return true;
}

void ContentBuilder::beginTable() {
  content_.nesting.tables.push_back({parentOf(tables_)});
  tables_.push_back(static_cast<std::int32_t>(content_.nesting.tables.size()) - 1);
}

void ContentBuilder::cellMark(Look look) {
  assert(!tables_.empty());
  append(text::kCellMark, look);
}

void ContentBuilder::rowMark(Look look) {
  assert(!tables_.empty());
  Structure structure = structureHere(look);
  structure.rowMark = true;
  add(std::u16string_view(&text::kCellMark, 1), look, here(), structure);
}

void ContentBuilder::endTable() {
  assert(!tables_.empty());
  tables_.pop_back();
}

std::int32_t ContentBuilder::addControl(Control control) {
  control.table = parentOf(tables_);
  if (control.parent != kNone) {
    const Control& around = this->control(control.parent);
    control.takesLineBreaks = control.takesLineBreaks || around.takesLineBreaks;
    control.contentLocked = control.contentLocked || around.contentLocked;
  }
  content_.nesting.controls.push_back(control);
  return static_cast<std::int32_t>(content_.nesting.controls.size()) - 1;
}

std::int8_t ContentBuilder::addRestriction(Restriction restriction) {
  auto& restrictions = content_.nesting.restrictions;
  assert(restrictions.size() < std::numeric_limits<std::int8_t>::max());
  restrictions.push_back(std::move(restriction));
  return static_cast<std::int8_t>(restrictions.size() - 1);
}

void ContentBuilder::sectionMark(Look look) {
  Structure structure = structureHere(look);
  structure.sectionMark = true;
  add(std::u16string_view(&text::kPageBreak, 1), look, here(), structure);
}

Content ContentBuilder::finish() {
  if (purpose_ == Purpose::search) {
    endAlike();
    content_.highlight.append(length(), 0);
  }
  content_.text = text_.finish();
  assert(tables_.empty() && content_.text.length() > 0);
  assert(content_.text[content_.text.length() - 1] == text::kParagraphMark);
  Content finished = std::move(content_);
  *this = ContentBuilder(purpose_);
  return finished;
}

Visibility ContentBuilder::here() const {
  if (fields_.empty()) return text::kEverywhere;
  const OpenField& open = fields_.back();
  const Visibility around = content_.nesting.fields[static_cast<std::size_t>(open.field)].around;
  return both(around, open.inResult ? text::kInResults : text::kInCodes);
}

Structure ContentBuilder::structureHere(const Look& look) const {
  Structure structure;
  if (purpose_ == Purpose::edit) {
    structure.control = look.control;
    structure.deleted = look.deleted;
    structure.restriction = look.restriction;
  }
  structure.table = parentOf(tables_);
  structure.field = fields_.empty() ? kNone : fields_.back().field;
  return structure;
}

void ContentBuilder::add(std::u16string_view units, Look look, Visibility shown, const Structure& structure) {
  text_.append(units);
  addLayers(units.size(), look, shown, structure);
}

void ContentBuilder::addLayers(std::size_t length, Look look, Visibility shown, const Structure& structure) {
  if (length == 0) return;
  assert(text_.size() <= static_cast<std::size_t>(text::kMaxLength));
  const auto count = static_cast<Position>(length);
  if (purpose_ == Purpose::search) return addAlike(count, look.hidden ? text::kNowhere : shown, structure);
  content_.visibility.append(count, look.hidden ? text::kNowhere : shown);
  content_.highlight.append(count, look.highlight);
  content_.structure.append(count, structure);
}

/// Whether text that shows so goes on with the last characters.
bool ContentBuilder::isAlike(Visibility shown) const {
  const Structure& last = alikeStructure_;
  return shown == alikeShown_ && last.table == parentOf(tables_) && !last.rowMark && !last.sectionMark &&
         last.field == (fields_.empty() ? kNone : fields_.back().field);
}

void ContentBuilder::addAlike(Position length, Visibility shown, const Structure& structure) {
  if (shown != alikeShown_ || structure != alikeStructure_) {
    endAlike();
    alikeShown_ = shown;
    alikeStructure_ = structure;
  }
  alike_ += length;
}

void ContentBuilder::endAlike() {
  content_.visibility.append(alike_, alikeShown_);
  content_.structure.append(alike_, alikeStructure_);
  alike_ = 0;
}

}  // namespace pluvo::document
