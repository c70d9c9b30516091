#pragma once

#include "document/live_ranges.h"
#include "memory/document.h"
#include "word/word_processor.h"

#include <algorithm>
#include <cstdint>
#include <memory>

namespace pluvo::memory {

class MemoryFind;

[[noreturn]] void refusePosition();
/// Fault 4608 for a position outside a text.
inline void requirePosition(const document::Story& story, std::int32_t position) {
  if (position < 0 || position > story.length()) refusePosition();
}
/// The span a pair of positions makes in a text: start is set first, then end. Fault 4608 outside it.
inline text::Span spanOf(const document::Story& story, std::int32_t start, std::int32_t end) {
  requirePosition(story, start);
  requirePosition(story, end);
  return {std::min(start, end), end};
}

class MemoryRange : public word::Range, public std::enable_shared_from_this<MemoryRange> {
 public:
  /// Over the story of that number.
  MemoryRange(std::shared_ptr<MemoryDocument> document, std::size_t story, text::Span span);
  ~MemoryRange() override;

  std::int32_t Start() override;
  void Start(std::int32_t position) override;
  std::int32_t End() override;
  void End(std::int32_t position) override;
  void SetRange(std::int32_t start, std::int32_t end) override;

  std::u16string Text() override;
  void Text(const std::u16string& text) override;

  std::int32_t MoveStart(word::WdUnits unit, word::MoveCount count) override;
  std::int32_t MoveEnd(word::WdUnits unit, word::MoveCount count) override;

  void Select() override;
  void InsertBefore(const std::u16string& text) override;
  void InsertAfter(const std::u16string& text) override;
  /// The number of deletions made: 1, or 0 when nothing could go.
  std::int32_t Delete() override;
  void HighlightColorIndex(std::int32_t colour) override;

  /// The same at each call, with nothing set.
  std::shared_ptr<word::Find> Find() override;
  std::unique_ptr<word::Batch> beginBlock() override;

  word::WdStoryType StoryType() override;
  std::shared_ptr<word::Range> NextStoryRange() override;

  MemoryDocument& document() { return *document_; }
  document::Story& story() { return document_->stories().story(story_); }
  text::Span span();
  void set(text::Span span) { range_.set(span); }

 protected:
  std::int32_t countOf(word::WdUnits unit) override;

 private:
  document::Story& editable();
  void growOver(text::Span inserted);

  std::shared_ptr<MemoryDocument> document_;
  std::size_t story_;
  document::LiveRange range_;
  std::unique_ptr<MemoryFind> find_;
};

}  // namespace pluvo::memory
