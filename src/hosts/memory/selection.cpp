#include "member.h"
#include "memory/document.h"
#include "window.h"

namespace pluvo::memory {

text::Span MemorySelection::selected() const {
  const text::Span selection = document_->selection();
  if (!selection.empty()) return selection;
  const auto next = selectedStory().move(selection.from, word::wdCharacter, 1, document_->view());
  return {selection.from, next.position};
}

document::Story& MemorySelection::selectedStory() const {
  return document_->stories().story(document_->selectedStory());
}

word::WdStoryType MemorySelection::StoryType() {
  return member(u"Selection.StoryType", [&] { return selectedStory().kind(); });
}

std::int32_t MemorySelection::story() { return static_cast<std::int32_t>(document_->selectedStory()); }

std::int32_t MemorySelection::Start() {
  return member(u"Selection.Start", [&] { return document_->selection().from; });
}

std::u16string MemorySelection::Text() {
  return member(u"Selection.Text",
                [&] { return selectedStory().visibleText(selected(), document_->view()); });
}

void MemorySelection::SetRange(std::int32_t start, std::int32_t end) {
  member(u"Selection.SetRange", [&] { document_->select({start, end}); });
}

std::int32_t MemorySelection::countOf(word::WdUnits unit) {
  return member(countOfUnit(unit),
                [&] { return selectedStory().count(selected(), unit, document_->view()); });
}

}  // namespace pluvo::memory
