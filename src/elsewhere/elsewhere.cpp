#include "elsewhere/elsewhere.h"

#include "beginning.h"
#include "blocks.h"
#include "memory/document.h"
#include "unshown.h"

#include <algorithm>
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

/// Looks through each text as it is told, for one request after the other.
class Looker : public formats::OtherTexts {
 public:
  Looker(const std::vector<Sought>& all, Elsewhere& found) : all_(all), found_(found) {}

  void story(formats::OtherStory kind, document::Content content) override {
    const bool unshown = hasUnshown(content.visibility);
    for (const Sought& each : all_) {
      const bool hasBlocks = each.beginning.standsIn(content, each.request.showFieldCodes);
      if (!hasBlocks && !unshown) continue;
      const auto document = memory::MemoryDocument::create(content);
      countUnshown(document->mainText(), each.beginning, each.request.showFieldCodes, found_);
      if (hasBlocks) found_.stories[static_cast<std::size_t>(kind)] += countBlocks(document, each.request);
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
  const std::vector<Sought>& all_;
  Elsewhere& found_;
};

}  // namespace

Elsewhere lookElsewhere(const formats::Source& source, const document::Story& main,
                        std::span<const engine::Request> requests) {
  Elsewhere found;
  std::vector<Sought> all;
  for (const engine::Request& request : requests) {
    Sought sought(request);
    if (!sought.beginning.empty()) all.push_back(std::move(sought));
  }
  if (all.empty()) return found;
  for (const Sought& each : all) countUnshown(main, each.beginning, each.request.showFieldCodes, found);
  Looker looker(all, found);
  source.tellOtherTexts(main, looker);
  return found;
}

}  // namespace pluvo::elsewhere
