#pragma once

#include "dispatch.h"
#include "text.h"
#include "word/word_processor.h"

#include <cstdint>
#include <memory>
#include <string>

namespace pluvo::word_com {

struct Span {
  std::int32_t start = 0;
  std::int32_t end = 0;

  bool spans() const { return start < end; }
  bool operator==(const Span&) const = default;
};

class ComRange final : public word::Range, public std::enable_shared_from_this<ComRange> {
 public:
  ComRange(Object range, Object document, bool inMainText = true)
      : range_(std::move(range)), document_(std::move(document)), inMainText_(inMainText) {}

  std::int32_t Start() override { return range_.get(L"Start").toInteger(); }
  /// Where Word moves it back, out of a field perhaps, it is the first later place that Word takes. So a
  /// search that goes on from there does not find the same text again.
  void Start(std::int32_t position) override;
  std::int32_t End() override { return range_.get(L"End").toInteger(); }
  void End(std::int32_t position) override { range_.put(L"End", Arguments().integer(position)); }
  void SetRange(std::int32_t start, std::int32_t end) override;

  std::u16string Text() override { return withCellMarks(range_.get(L"Text").toText()); }
  void Text(const std::u16string& text) override;

  std::int32_t MoveStart(word::WdUnits unit, word::MoveCount count) override;
  std::int32_t MoveEnd(word::WdUnits unit, word::MoveCount count) override;

  void Select() override { range_.call(L"Select"); }
  void InsertBefore(const std::u16string& text) override;
  void InsertAfter(const std::u16string& text) override;
  /// An empty range deletes nothing; Word would delete the character after it.
  std::int32_t Delete() override;
  void HighlightColorIndex(std::int32_t colour) override;

  std::shared_ptr<word::Find> Find() override;

  word::WdStoryType StoryType() override;
  std::shared_ptr<word::Range> NextStoryRange() override;

  Span span() { return {Start(), End()}; }
  void set(Span span) { SetRange(span.start, span.end); }
  /// The text of that stretch of its story; none where it lies outside.
  std::u16string textAt(Span span) const;

 protected:
  std::int32_t countOf(word::WdUnits unit) override;
  bool isAtMost(word::WdUnits unit, std::int32_t most) override;

 private:
  std::int32_t move(const wchar_t* method, word::WdUnits unit, word::MoveCount count) const;

  Object range_;
  Object document_;
  bool inMainText_;  ///< Document.Range knows no other
};

}  // namespace pluvo::word_com
