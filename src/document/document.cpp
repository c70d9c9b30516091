#include "document/document.h"

#include "document/place.h"

#include <algorithm>
#include <cassert>
#include <string_view>
#include <utility>

namespace pluvo::document {

Document::Document(std::vector<Content> stories, std::shared_ptr<const Medium> medium)
    : medium_(std::move(medium)) {
  assert(!stories.empty() && stories.front().kind == word::wdMainTextStory);
  stories_.reserve(stories.size());
  for (Content& content : stories) {
    rivals_.push_back(std::move(content.rivals));
    pages_.push_back({std::move(content.uses), std::move(content.part)});
    stories_.push_back(std::make_unique<Story>(std::move(content), medium_.get(), &count_));
  }
  for (std::size_t i = 0; i < stories_.size(); ++i) {
    std::vector<const Story*> others;
    for (const std::size_t rival : rivals_[i]) others.push_back(stories_[rival].get());
    stories_[i]->rivals(std::move(others));
  }
  holders_.resize(stories_.size());
  for (const auto& story : stories_) {
    for (const StoryAnchor& anchor : story->anchors()) {
      assert(anchor.story < stories_.size());
      holders_[anchor.story].anchors.push_back(anchor.position);
    }
  }
  for (const Pages& pages : pages_)
    for (const PageUse& use : pages.uses) holders_.front().anchors.push_back(use.mark);
  for (Holder& holder : holders_) std::sort(holder.anchors.begin(), holder.anchors.end());
}

Document::Document(Snapshot snapshot) {
  stories_.reserve(snapshot.size());
  for (Story::Snapshot& story : snapshot) {
    gone_.push_back(story.gone);
    stories_.push_back(std::make_unique<Story>(std::move(story)));
  }
  holders_.resize(stories_.size());
}

std::size_t Document::firstOf(word::WdStoryType kind, std::size_t i) const {
  while (i < stories_.size() && stories_[i]->kind() != kind) ++i;
  return i;
}

bool Document::isGone(std::size_t i) const {
  if (!gone_.empty()) return gone_[i];
  constexpr std::size_t kDeepest = 1000;  // stories that hang deeper stay
  Fates fates;
  return isGone(i, fates, kDeepest);
}

/// Each story is judged once, however many anchors lead to it.
bool Document::isGone(std::size_t i, Fates& fates, std::size_t depth) const {
  const std::vector<StoryAnchor>& anchors = stories_[i]->anchors();
  if (anchors.empty() || depth == 0) return false;
  // Stories that hang on one another in a ring stay: the one at hand counts as there meanwhile.
  const auto [known, isFirst] = fates.emplace(i, false);
  bool& fate = known->second;
  if (isFirst) {
    fate = std::all_of(anchors.begin(), anchors.end(), [&](const StoryAnchor& anchor) {
      return isGone(anchor) || isGone(anchor.story, fates, depth - 1);
    });
  }
  return fate;
}

bool Document::isGone(const StoryAnchor& anchor) const {
  const Story& story = *stories_[anchor.story];
  Holder& holder = holders_[anchor.story];
  if (holder.gone.empty() || holder.stamp != story.stamp()) {
    holder.stamp = story.stamp();
    holder.gone.assign(holder.anchors.size(), true);
    std::size_t next = 0;
    story.text().forEachPiece([&](const text::Piece& piece, std::u16string_view) {
      if (piece.isNew()) return;
      while (next < holder.anchors.size() && holder.anchors[next] < piece.original) ++next;
      for (; next < holder.anchors.size() && holder.anchors[next] < piece.original + piece.length; ++next)
        holder.gone[next] = false;
    });
  }
  const auto at = std::lower_bound(holder.anchors.begin(), holder.anchors.end(), anchor.position);
  return holder.gone[static_cast<std::size_t>(at - holder.anchors.begin())];
}

bool Document::changed() const {
  return std::any_of(stories_.begin(), stories_.end(), [](const auto& story) { return story->changed(); });
}

void Document::saved() {
  for (const auto& story : stories_) story->saved();
}

/// That of the first section that is left; one that no section shows is like those of most pages.
word::WdStoryType Document::kindNow(std::size_t i) const {
  const std::vector<PageUse>& uses = pages_[i].uses;
  if (uses.empty()) return stories_[i]->kind();
  for (const PageUse& use : uses)
    if (use.mark == text::kMaxLength || !isGone(StoryAnchor{0, use.mark})) return use.kind;
  return placeOf(stories_[i]->kind()) == Place::headers ? word::wdPrimaryHeaderStory
                                                        : word::wdPrimaryFooterStory;
}

Document::Snapshot Document::snapshot() const {
  Snapshot snapshot;
  snapshot.reserve(stories_.size());
  for (std::size_t i = 0; i < stories_.size(); ++i) {
    snapshot.push_back(stories_[i]->snapshot());
    snapshot.back().gone = isGone(i);
    if (i < pages_.size()) {
      snapshot.back().kind = kindNow(i);
      snapshot.back().part = pages_[i].part;
    }
    snapshot.back().twin = std::any_of(rivals_[i].begin(), rivals_[i].end(), [&](std::size_t rival) {
      return rival < i && stories_[rival]->hasText(*stories_[i]);
    });
  }
  return snapshot;
}

void Document::restore(Snapshot snapshot) {
  assert(snapshot.size() == stories_.size());
  for (std::size_t i = 0; i < gone_.size(); ++i) gone_[i] = snapshot[i].gone;
  for (std::size_t i = 0; i < stories_.size(); ++i) stories_[i]->restore(std::move(snapshot[i]));
}

void Document::observer(Observer* observer) {
  for (const auto& story : stories_) story->observer(observer);
}

}  // namespace pluvo::document
