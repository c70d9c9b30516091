#include "document/document.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace pluvo::document {

Document::Document(std::vector<Content> stories, std::shared_ptr<const Medium> medium)
    : medium_(std::move(medium)) {
  assert(!stories.empty() && stories.front().kind == word::wdMainTextStory);
  stories_.reserve(stories.size());
  for (Content& content : stories)
    stories_.push_back(std::make_unique<Story>(std::move(content), medium_.get()));
}

std::size_t Document::firstOf(word::WdStoryType kind, std::size_t i) const {
  while (i < stories_.size() && stories_[i]->kind() != kind) ++i;
  return i;
}

bool Document::changed() const {
  return std::any_of(stories_.begin(), stories_.end(), [](const auto& story) { return story->changed(); });
}

void Document::saved() {
  for (const auto& story : stories_) story->saved();
}

Document::Snapshot Document::snapshot() const {
  Snapshot snapshot;
  snapshot.reserve(stories_.size());
  for (const auto& story : stories_) snapshot.push_back(story->snapshot());
  return snapshot;
}

void Document::restore(Snapshot snapshot) {
  assert(snapshot.size() == stories_.size());
  for (std::size_t i = 0; i < stories_.size(); ++i) stories_[i]->restore(std::move(snapshot[i]));
}

void Document::observer(Observer* observer) {
  for (const auto& story : stories_) story->observer(observer);
}

}  // namespace pluvo::document
