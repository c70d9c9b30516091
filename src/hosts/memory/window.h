#pragma once

#include "memory/document.h"
#include "word/word_processor.h"

#include <memory>
#include <string>
#include <utility>

namespace pluvo::memory {

class MemoryView : public word::View {
 public:
  explicit MemoryView(std::shared_ptr<MemoryDocument> document) : document_(std::move(document)) {}
  void ShowFieldCodes(bool value) override { document_->showFieldCodes(value); }

 private:
  std::shared_ptr<MemoryDocument> document_;
};

/// The one window that shows a document.
class MemoryWindow : public word::Window {
 public:
  explicit MemoryWindow(std::shared_ptr<MemoryDocument> document) : document_(std::move(document)) {}
  std::shared_ptr<word::View> View() override { return std::make_shared<MemoryView>(document_); }

 private:
  std::shared_ptr<MemoryDocument> document_;
};

class MemorySelection : public word::Selection {
 public:
  explicit MemorySelection(std::shared_ptr<MemoryDocument> document) : document_(std::move(document)) {}
  std::int32_t Start() override;
  word::WdStoryType StoryType() override;
  std::int32_t story() override;
  std::u16string Text() override;
  void SetRange(std::int32_t start, std::int32_t end) override;

 protected:
  std::int32_t countOf(word::WdUnits unit) override;

 private:
  /// The selected text, or the character after the insertion point.
  text::Span selected() const;
  document::Story& selectedStory() const;

  std::shared_ptr<MemoryDocument> document_;
};

}  // namespace pluvo::memory
