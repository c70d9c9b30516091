#pragma once

#include "reader.h"
#include "story_groups.h"

#include <optional>
#include <string_view>
#include <vector>

namespace pluvo::rtf {

/// Where a story stands in the bytes, with the facts that its writer needs.
struct StoryPlace {
  word::WdStoryType kind = word::wdMainTextStory;
  Extent bytes;
  StoryBeginning beginning;  ///< nothing of main text
  TextMap map;
  /// The same text for older programs, which is edited in step …
  std::vector<StoryPlace> twins;
  /// … or groups that show them another: they go when the story is edited.
  std::vector<Extent> forOlder;
};

/// The facts about a document's bytes that its writer needs.
struct OldDocument {
  Tables tables;
  std::vector<StoryPlace> places;   ///< of each story
  std::vector<GroupInText> groups;  ///< of main text
  bool hasMoreGroups = false;
};

struct ReadDocument {
  std::vector<document::Content> stories;
  OldDocument old;
  std::optional<formats::Protection> protection;
  std::optional<formats::Reservation> reservation;
};

/// Reads main text, all other stories if asked to, and the document's tables.
ReadDocument readDocument(std::string_view file, bool allStories);

/// Stories lie in one another no deeper.
inline constexpr int kDeepestStory = 8;

}  // namespace pluvo::rtf
