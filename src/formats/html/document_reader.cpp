#include "document_reader.h"

#include "errors/document_error.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace pluvo::formats::html {

using text::Position;

namespace {

constexpr std::size_t kMostStories = 65'535;

/// A note hangs on the character that refers to it by name. Comments are numbered: the first place has the
/// first of them, if there are as many.
std::vector<StoryPlace> placesOf(const Page& page, const FoundBeside& found) {
  std::unordered_map<std::string, Position> references;
  for (const auto& [at, bytes] : found.noteReferences) references.emplace(noteOf(page, bytes), at);
  std::vector<StoryPlace> places;
  std::size_t comments = 0;
  for (const auto& [kind, bytes] : found.holders) {
    for (StoryPart& part : storiesIn(page, kind, bytes)) {
      StoryPlace place{std::move(part), std::nullopt, {}};
      const auto reference = place.part.id.empty() ? references.end() : references.find(place.part.id);
      if (reference != references.end()) place.anchor = reference->second;
      if (place.part.kind == word::wdCommentsStory) ++comments;
      places.push_back(std::move(place));
    }
  }
  if (comments == found.commentPlaces.size()) {
    auto next = found.commentPlaces.begin();
    for (StoryPlace& place : places)
      if (place.part.kind == word::wdCommentsStory) place.anchor = *next++;
  }
  std::ranges::stable_sort(places, {},
                           [](const StoryPlace& place) { return document::placeOf(place.part.kind); });
  return places;
}

}  // namespace

ReadDocument readDocument(const Page& page, bool allStories) {
  ReadText main = readText(page, {{0, page.bytes().size()}});
  ReadDocument read;
  read.old = {std::move(main.map), placesOf(page, main.beside), std::move(main.sheet)};
  read.stories.push_back(std::move(main.content));
  if (!allStories) return read;
  if (read.old.places.size() > kMostStories)
    throw errors::DocumentError(
        errors::Problem::tooLarge,
        "The page has more than 65,535 headers, footers, notes and comments; divide it.");
  for (StoryPlace& place : read.old.places) {
    ReadText text = readText(page, place.partIn(read.old.sheet));
    text.content.kind = place.part.kind;
    if (place.anchor) text.content.anchors.push_back({0, *place.anchor});
    place.map = std::move(text.map);
    read.stories.push_back(std::move(text.content));
  }
  return read;
}

}  // namespace pluvo::formats::html
