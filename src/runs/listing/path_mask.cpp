#include "runs/path_mask.h"

#include "base/names.h"

#include <algorithm>
#include <cstddef>

namespace pluvo::runs {
namespace {

[[noreturn]] void refuse(std::string_view mask, const char* why) {
  throw MaskError("the mask '" + std::string(mask) + "' can match nothing: " + why);
}

constexpr const char* kNoWayUp =
    "masks match paths below the folder named. Name that folder, or a path in it, as in 'old/*'.";
constexpr const char* kNoRoot =
    "masks match paths below the folder named, which do not begin with a slash. For entries right in "
    "that folder begin with './'.";
constexpr const char* kNoFolderItself =
    "it means the folder that is named, and masks match only paths below it.";

template <class Text>
std::vector<Text> stepsOf(Text path) {
  std::vector<Text> steps;
  for (std::size_t from = 0; from <= path.size();) {
    const std::size_t to = std::min(path.find('/', from), path.size());
    if (to > from) steps.push_back(path.substr(from, to - from));
    from = to + 1;
  }
  return steps;
}

}  // namespace

PathMask::PathMask(std::string_view text) {
  if (text.starts_with('/')) refuse(text, kNoRoot);
  foldersOnly_ = text.ends_with('/');
  anywhere_ = text.substr(0, text.size() - (foldersOnly_ ? 1 : 0)).find('/') == std::string_view::npos;
  for (const std::string_view step : stepsOf(text)) {
    if (step == "..") refuse(text, kNoWayUp);
    if (step == ".") continue;
    if (step == "**") {
      steps_.emplace_back(std::nullopt);
    } else {
      steps_.emplace_back(scanner::Mask(base::nameText(step)));
    }
  }
  if (steps_.empty()) refuse(text, kNoFolderItself);
  if (!steps_.back()) steps_.insert(steps_.end() - 1, scanner::Mask(u"*"));
}

bool PathMask::matches(std::u16string_view path, bool isFolder) const {
  if (foldersOnly_ && !isFolder) return false;
  return matchesSteps(anywhere_ ? path.substr(path.rfind(u'/') + 1) : path);
}

bool PathMask::takesFile(std::u16string_view path) const {
  if (!foldersOnly_) return matches(path, false);
  for (std::size_t end = path.find(u'/'); end != std::u16string_view::npos; end = path.find(u'/', end + 1))
    if (matches(path.substr(0, end), true)) return true;
  return false;
}

bool PathMask::matchesSteps(std::u16string_view path) const {
  const std::vector<std::u16string_view> names = stepsOf(path);
  std::optional<std::size_t> any;  ///< the last ** that was passed
  std::size_t anyEnd = 0;          ///< of the characters it takes
  std::size_t next = 0;
  std::size_t at = 0;
  while (next < steps_.size() || at < names.size()) {
    if (next < steps_.size() && !steps_[next]) {
      any = next++;
      anyEnd = at;
    } else if (next < steps_.size() && at < names.size() && steps_[next]->matches(names[at])) {
      ++next;
      ++at;
    } else {
      // The last ** takes one step more.
      if (!any || anyEnd == names.size()) return false;
      at = ++anyEnd;
      next = *any + 1;
    }
  }
  return true;
}

}  // namespace pluvo::runs
