#include "range.h"

#include "base/text.h"
#include "find.h"
#include "member.h"

#include <algorithm>
#include <utility>

namespace pluvo::memory {

using document::Model;
using text::Span;

MemoryRange::MemoryRange(std::shared_ptr<MemoryDocument> document, Span span)
    : document_(std::move(document)), range_(document_->model().liveRanges(), span) {}

MemoryRange::~MemoryRange() = default;

Span MemoryRange::span() {
  document_->model();  // a closed document has no positions
  return range_.span();
}

std::int32_t MemoryRange::Start() {
  return member(u"Range.Start", [&] { return span().from; });
}

void MemoryRange::Start(std::int32_t position) {
  member(u"Range.Start", [&] {
    document_->requirePosition(position);
    set({position, std::max(position, span().to)});
  });
}

std::int32_t MemoryRange::End() {
  return member(u"Range.End", [&] { return span().to; });
}

void MemoryRange::End(std::int32_t position) {
  member(u"Range.End", [&] {
    document_->requirePosition(position);
    set({std::min(position, span().from), position});
  });
}

void MemoryRange::SetRange(std::int32_t start, std::int32_t end) {
  member(u"Range.SetRange", [&] { set(document_->spanOf(start, end)); });
}

std::u16string MemoryRange::Text() {
  return member(u"Range.Text", [&] { return document_->model().visibleText(span(), document_->view()); });
}

void MemoryRange::Text(const std::u16string& text) {
  member(u"Range.Text", [&] {
    Model& model = editable(text);
    set(model.replace(span(), text, document_->view()));
  });
}

std::int32_t MemoryRange::MoveStart(word::WdUnits unit, word::MoveCount count) {
  return member(u"Range.MoveStart", [&] {
    const auto moved = document_->model().move(span().from, unit, word::valueOf(count), document_->view());
    Start(moved.position);
    return moved.moved;
  });
}

std::int32_t MemoryRange::MoveEnd(word::WdUnits unit, word::MoveCount count) {
  return member(u"Range.MoveEnd", [&] {
    const auto moved = document_->model().move(span().to, unit, word::valueOf(count), document_->view());
    End(moved.position);
    return moved.moved;
  });
}

void MemoryRange::Select() {
  member(u"Range.Select", [&] { document_->select(span()); });
}

void MemoryRange::InsertBefore(const std::u16string& text) {
  member(u"Range.InsertBefore", [&] {
    if (span().empty()) return Text(text);
    growOver(editable(text).insertBefore(span().from, text));
  });
}

void MemoryRange::InsertAfter(const std::u16string& text) {
  member(u"Range.InsertAfter", [&] {
    if (span().empty()) return Text(text);
    growOver(editable(text).insertBehind(span().to, text));
  });
}

std::int32_t MemoryRange::Delete() {
  return member(u"Range.Delete", [&] {
    if (span().empty()) return 0;
    Model& model = editable({});
    const auto before = model.stamp();
    model.replace(span(), {}, document_->view());
    return model.stamp() != before ? 1 : 0;
  });
}

void MemoryRange::HighlightColorIndex(std::int32_t colour) {
  member(u"Range.HighlightColorIndex", [&] {
    document_->requireHighlightable(colour);
    document_->model().highlight(span(), static_cast<std::uint8_t>(colour));
  });
}

std::shared_ptr<word::Find> MemoryRange::Find() {
  if (find_ == nullptr) find_ = std::make_unique<MemoryFind>(*this);
  find_->reset();
  return {shared_from_this(), find_.get()};
}

std::int32_t MemoryRange::countOf(word::WdUnits unit) {
  return member(countOfUnit(unit), [&] { return document_->model().count(span(), unit, document_->view()); });
}

Model& MemoryRange::editable(const std::u16string& newText) {
  Model& model = document_->model();
  const bool converts = newText.find(u'\n') != newText.npos;
  document_->requireEditable(converts ? base::withParagraphMarks(newText) : newText);
  return model;
}

void MemoryRange::growOver(Span inserted) {
  if (inserted.empty()) return;
  set({std::min(span().from, inserted.from), std::max(span().to, inserted.to)});
}

}  // namespace pluvo::memory
