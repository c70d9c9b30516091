#include "elsewhere/elsewhere.h"

#include "beginning.h"
#include "blocks.h"
#include "memory/document.h"
#include "unshown.h"

#include <algorithm>

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

/// Looks through each text as it is told.
class Looker : public formats::OtherTexts {
 public:
  Looker(const engine::Request& request, const Beginning& beginning, Elsewhere& found)
      : request_(request), beginning_(beginning), found_(found) {}

  void story(formats::Story kind, model::Content content) override {
    const bool hasBlocks = beginning_.standsIn(content, request_.showFieldCodes);
    if (!hasBlocks && !hasUnshown(content.visibility)) return;
    const auto document = memory::MemoryDocument::create(std::move(content));
    countUnshown(document->model(), beginning_, request_.showFieldCodes, found_);
    if (hasBlocks) found_.stories[static_cast<std::size_t>(kind)] += countBlocks(document, request_);
  }
  void unreached(formats::Unreached kind, std::u16string_view text) override {
    found_.unreached[static_cast<std::size_t>(kind)] += beginning_.countIn(text);
  }
  void notLookedInto(formats::Opaque kind) override {
    found_.notLookedInto[static_cast<std::size_t>(kind)] = true;
  }
  void damaged(std::string_view part, std::string_view why) override {
    found_.damaged.push_back({std::string(part), std::string(why)});
  }

 private:
  const engine::Request& request_;
  const Beginning& beginning_;
  Elsewhere& found_;
};

}  // namespace

Elsewhere lookElsewhere(const formats::Source& source, const model::Model& main,
                        const engine::Request& request) {
  Elsewhere found;
  const Beginning beginning(request);
  if (beginning.empty()) return found;
  countUnshown(main, beginning, request.showFieldCodes, found);
  Looker looker(request, beginning, found);
  source.tellOtherTexts(main, looker);
  return found;
}

}  // namespace pluvo::elsewhere
