#pragma once

#include "document/document.h"
#include "document/place.h"
#include "word/enums.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::document {

/// The name that scripts and command lines use: "main", "headers", "boxes".
std::string_view keyOf(Place place);
std::optional<Place> placeNamed(std::string_view key);
/// As it stands in a sentence: "main text", "headers", "text boxes".
std::string_view wordsOf(Place place);

/// The kinds of stories that stand there.
word::StoryKinds kindsIn(Place place);
word::StoryKinds kindsIn(const Places& places);
/// The places that these kinds stand in.
Places placesOf(word::StoryKinds kinds);

/// The name of a story. The number is that among the stories of its place, from 1, in the document's
/// order; those that have gone count.
struct StoryName {
  Place place = Place::main;
  std::size_t number = 1;
};
/// "main text", "header 2", "text box 1"
std::string wordsOf(const StoryName& name);
/// Of all stories of a document, in their order.
std::vector<StoryName> storyNames(const Document& document);

}  // namespace pluvo::document
