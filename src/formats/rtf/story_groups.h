#pragma once

#include "events.h"
#include "word/enums.h"

#include <string_view>
#include <vector>

namespace pluvo::rtf {

/// A group whose text is a story of its own.
struct StoryGroup {
  word::WdStoryType kind = word::wdMainTextStory;
  Extent bytes;
  std::size_t inside = 0;  ///< where its text begins
};

/// The stories that a group is, or holds.
struct StoryGroups {
  std::vector<StoryGroup> stories;
  /// Groups that show the same to older programs, and the texts in them.
  std::vector<Extent> forOlder;
  std::vector<StoryGroup> older;
};
StoryGroups storyGroupsIn(std::string_view file, const SkippedGroup& group);

}  // namespace pluvo::rtf
