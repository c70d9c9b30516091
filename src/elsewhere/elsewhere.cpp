#include "elsewhere/elsewhere.h"

#include "beginning.h"
#include "blocks.h"
#include "memory/document.h"
#include "unshown.h"

#include <algorithm>
#include <array>
#include <functional>
#include <string>
#include <unordered_set>
#include <utility>

namespace pluvo::elsewhere {

bool Elsewhere::any() const {
  const auto counted = [](std::int64_t count) { return count > 0; };
  return std::any_of(stories.begin(), stories.end(), counted) ||
         std::any_of(unreached.begin(), unreached.end(), counted);
}

Elsewhere& Elsewhere::operator+=(const Elsewhere& other) {
  for (std::size_t i = 0; i < stories.size(); ++i) stories[i] += other.stories[i];
  for (std::size_t i = 0; i < unreached.size(); ++i) unreached[i] += other.unreached[i];
  for (std::size_t i = 0; i < notLookedInto.size(); ++i)
    notLookedInto[i] = notLookedInto[i] || other.notLookedInto[i];
  damaged.insert(damaged.end(), other.damaged.begin(), other.damaged.end());
  return *this;
}

namespace {

struct Sought {
  explicit Sought(const engine::Request& sought) : request(sought), beginning(sought) {}

  const engine::Request& request;
  Beginning beginning;
};

document::Place placeOf(formats::OtherStory kind) {
  static_assert(static_cast<int>(document::Place::headers) ==
                static_cast<int>(formats::OtherStory::headers) + 1);
  static_assert(static_cast<int>(document::Place::boxes) == static_cast<int>(formats::OtherStory::boxes) + 1);
  return static_cast<document::Place>(static_cast<int>(kind) + 1);
}

std::u16string unitsOf(const text::Stretch& stretch) {
  std::u16string units(static_cast<std::size_t>(stretch.length), u'\0');
  stretch.copyTo(units.data());
  return units;
}

std::size_t hashOf(const text::OriginalText& text) {
  return std::hash<std::u16string>()(unitsOf(text.stretch(0, text.length())));
}

/// A text as it stands now, for a document of its own.
document::Content copyOf(const document::Story& story) {
  text::OriginalTextBuilder text;
  text.expect(static_cast<std::size_t>(story.length()));
  story.text().forEachStretch(0, story.length(), [&](text::Position, const text::Stretch& stretch) {
    text.append(unitsOf(stretch));
    return true;
  });
  document::Content copy;
  copy.text = text.finish();
  copy.visibility = story.visibility();
  copy.highlight = story.highlight();
  copy.structure = story.structure();
  copy.nesting = {story.tables(), story.fields(), story.controls(), story.restrictions()};
  return copy;
}

/// Looks through each text as it is told, for one request after the other.
class Looker : public formats::OtherTexts {
 public:
  Looker(const std::vector<Sought>& all, Elsewhere& found) : all_(all), found_(found) {}

  /// The stories that the document has, as they stand now.
  void lookThrough(const document::Document& document) {
    for (std::size_t i = 0; i < document.count(); ++i) {
      const document::Story& story = document.story(i);
      const text::OriginalText& original = story.text().original();
      if (i > 0) heldAt(document::placeOf(story.kind())).insert(hashOf(original));
      if (!document.isGone(i)) lookInto(story);
    }
  }

  void story(formats::OtherStory kind, document::Content content) override {
    const document::Place place = placeOf(kind);
    auto& held = heldAt(place);
    if (const auto known = held.empty() ? held.end() : held.find(hashOf(content.text)); known != held.end()) {
      held.erase(known);
      return;
    }
    content.kind = word::wdMainTextStory;  // of a document of its own
    const bool unshown = hasUnshown(content.visibility);
    for (const Sought& each : all_) {
      const bool hasBlocks = each.beginning.standsIn(text::PieceText(content.text), content.visibility,
                                                     each.request.showFieldCodes);
      if (!hasBlocks && !unshown) continue;
      const auto document = memory::MemoryDocument::create(content);
      countUnshown(document->mainText(), each.beginning, each.request.showFieldCodes, found_);
      if (hasBlocks) add(place, document, each.request);
    }
  }
  void unreached(formats::Unreached kind, std::u16string_view text) override {
    unreached(kind, text::Stretch{nullptr, text.data(), static_cast<text::Position>(text.size()), false});
  }
  void unreached(formats::Unreached kind, const text::Stretch& text) override {
    for (const Sought& each : all_)
      found_.unreached[static_cast<std::size_t>(kind)] += each.beginning.countIn(text);
  }
  void notLookedInto(formats::Opaque kind) override {
    found_.notLookedInto[static_cast<std::size_t>(kind)] = true;
  }
  void damaged(std::string_view part, std::string_view why) override {
    found_.damaged.push_back({std::string(part), std::string(why)});
  }

 private:
  void lookInto(const document::Story& story) {
    for (const Sought& each : all_) {
      countUnshown(story, each.beginning, each.request.showFieldCodes, found_);
      const bool worksThere = (each.request.stories & word::kindsOf(story.kind())) != 0;
      if (worksThere ||
          !each.beginning.standsIn(story.text(), story.visibility(), each.request.showFieldCodes))
        continue;
      add(document::placeOf(story.kind()), memory::MemoryDocument::create(copyOf(story)), each.request);
    }
  }

  void add(document::Place place, const std::shared_ptr<memory::MemoryDocument>& document,
           const engine::Request& request) {
    found_.stories[static_cast<std::size_t>(place)] += countBlocks(document, request);
  }

  using Texts = std::unordered_multiset<std::size_t>;
  Texts& heldAt(document::Place place) { return held_.at(static_cast<std::size_t>(place)); }

  const std::vector<Sought>& all_;
  Elsewhere& found_;
  /// Of the stories that the document has, by their place: what the file has, as hashes.
  std::array<Texts, document::kPlaces> held_;
};

}  // namespace

Elsewhere lookElsewhere(const formats::Source& source, const document::Document& document,
                        std::span<const engine::Request> requests) {
  Elsewhere found;
  std::vector<Sought> all;
  for (const engine::Request& request : requests) {
    Sought sought(request);
    if (!sought.beginning.empty()) all.push_back(std::move(sought));
  }
  if (all.empty()) return found;
  Looker looker(all, found);
  looker.lookThrough(document);
  source.tellOtherTexts(document.mainText(), looker);
  return found;
}

}  // namespace pluvo::elsewhere
