#include "elsewhere/elsewhere.h"

#include "beginning.h"
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

Elsewhere lookElsewhere(const formats::Source& /*source*/, const model::Model& main,
                        const engine::Request& request) {
  Elsewhere found;
  const Beginning beginning(request);
  if (!beginning.empty()) countUnshown(main, beginning, request.showFieldCodes, found);
  return found;
}

}  // namespace pluvo::elsewhere
