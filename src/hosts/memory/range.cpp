#include "range.h"

#include "find.h"
#include "member.h"

#include <algorithm>
#include <utility>

namespace pluvo::memory {

using document::Story;
using text::Position;
using text::Span;

namespace {

class Block final : public word::Batch {
 public:
  Block(std::shared_ptr<MemoryDocument> document, Story& story, Span span)
      : document_(std::move(document)), story_(story) {
    story_.block(span);
  }
  Block(const Block&) = delete;
  Block& operator=(const Block&) = delete;
  ~Block() override { story_.block(std::nullopt); }

 private:
  std::shared_ptr<MemoryDocument> document_;
  Story& story_;
};

}  // namespace

MemoryRange::MemoryRange(std::shared_ptr<MemoryDocument> document, std::size_t story, Span span)
    : document_(std::move(document)), story_(story), range_(this->story().liveRanges(), span) {}

MemoryRange::~MemoryRange() = default;

Span MemoryRange::span() {
  document_->stories();  // a closed document has no positions
  return range_.span();
}

std::int32_t MemoryRange::Start() {
  return member(u"Range.Start", [&] { return span().from; });
}

void MemoryRange::Start(std::int32_t position) {
  member(u"Range.Start", [&] {
    requirePosition(story(), position);
    set({position, std::max(position, range_.span().to)});
  });
}

std::int32_t MemoryRange::End() {
  return member(u"Range.End", [&] { return span().to; });
}

void MemoryRange::End(std::int32_t position) {
  member(u"Range.End", [&] {
    requirePosition(story(), position);
    set({std::min(position, range_.span().from), position});
  });
}

void MemoryRange::SetRange(std::int32_t start, std::int32_t end) {
  member(u"Range.SetRange", [&] { set(spanOf(story(), start, end)); });
}

std::u16string MemoryRange::Text() {
  return member(u"Range.Text", [&] { return story().visibleText(span(), document_->view()); });
}

void MemoryRange::Text(const std::u16string& text) {
  member(u"Range.Text", [&] { set(editable().replace(span(), text, document_->view())); });
}

std::int32_t MemoryRange::MoveStart(word::WdUnits unit, word::MoveCount count) {
  return member(u"Range.MoveStart", [&] {
    const auto moved = story().move(span().from, unit, word::valueOf(count), document_->view());
    Start(moved.position);
    return moved.moved;
  });
}

std::int32_t MemoryRange::MoveEnd(word::WdUnits unit, word::MoveCount count) {
  return member(u"Range.MoveEnd", [&] {
    const auto moved = story().move(span().to, unit, word::valueOf(count), document_->view());
    End(moved.position);
    return moved.moved;
  });
}

void MemoryRange::Select() {
  member(u"Range.Select", [&] { document_->select(story_, span()); });
}

void MemoryRange::InsertBefore(const std::u16string& text) {
  member(u"Range.InsertBefore", [&] {
    if (span().empty()) return Text(text);
    growOver(editable().insertBefore(span().from, text));
  });
}

void MemoryRange::InsertAfter(const std::u16string& text) {
  member(u"Range.InsertAfter", [&] {
    if (span().empty()) return Text(text);
    growOver(editable().insertBehind(span().to, text));
  });
}

std::int32_t MemoryRange::Delete() {
  return member(u"Range.Delete", [&] {
    if (span().empty()) return 0;
    Story& edited = editable();
    const auto before = edited.stamp();
    edited.replace(span(), {}, document_->view());
    return edited.stamp() != before ? 1 : 0;
  });
}

void MemoryRange::HighlightColorIndex(std::int32_t colour) {
  member(u"Range.HighlightColorIndex", [&] {
    document_->requireHighlightable(colour);
    story().highlight(span(), static_cast<std::uint8_t>(colour));
  });
}

std::shared_ptr<word::Find> MemoryRange::Find() {
  if (find_ == nullptr) find_ = std::make_unique<MemoryFind>(*this);
  find_->reset();
  return {shared_from_this(), find_.get()};
}

std::unique_ptr<word::Batch> MemoryRange::beginBlock() {
  if (!story().hasVersions()) return nullptr;
  return std::make_unique<Block>(document_, story(), span());
}

std::int32_t MemoryRange::countOf(word::WdUnits unit) {
  return member(countOfUnit(unit), [&] { return story().count(span(), unit, document_->view()); });
}

word::WdStoryType MemoryRange::StoryType() {
  return member(u"Range.StoryType", [&] { return story().kind(); });
}

std::shared_ptr<word::Range> MemoryRange::NextStoryRange() {
  return member(u"Range.NextStoryRange", [&] { return document_->storyRange(story().kind(), story_ + 1); });
}

Story& MemoryRange::editable() {
  document_->requireEditable();
  return story();
}

void MemoryRange::growOver(Span inserted) {
  if (inserted.empty()) return;
  set({std::min(span().from, inserted.from), std::max(span().to, inserted.to)});
}

}  // namespace pluvo::memory
