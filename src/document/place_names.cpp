#include "document/place_names.h"

#include <algorithm>
#include <array>

namespace pluvo::document {

namespace {

struct Named {
  std::string_view key;
  std::string_view words;
  std::string_view one;
};

constexpr std::array<Named, kPlaces> kNames = {{
    {"main", "main text", "main text"},
    {"headers", "headers", "header"},
    {"footers", "footers", "footer"},
    {"footnotes", "footnotes", "footnote"},
    {"endnotes", "endnotes", "endnote"},
    {"comments", "comments", "comment"},
    {"boxes", "text boxes", "text box"},
}};

const Named& namesOf(Place place) { return kNames[static_cast<std::size_t>(place)]; }

}  // namespace

std::string_view keyOf(Place place) { return namesOf(place).key; }
std::string_view wordsOf(Place place) { return namesOf(place).words; }

std::optional<Place> placeNamed(std::string_view key) {
  const auto found =
      std::find_if(kAllPlaces.begin(), kAllPlaces.end(), [&](Place place) { return keyOf(place) == key; });
  return found == kAllPlaces.end() ? std::nullopt : std::optional(*found);
}

word::StoryKinds kindsIn(Place place) {
  unsigned kinds = 0;
  for (int kind = word::wdMainTextStory; kind <= word::wdFirstPageFooterStory; ++kind) {
    const auto each = static_cast<word::WdStoryType>(kind);
    if (placeOf(each) == place) kinds |= word::kindsOf(each);
  }
  return static_cast<word::StoryKinds>(kinds);
}

word::StoryKinds kindsIn(const Places& places) {
  unsigned kinds = 0;
  for (const Place place : kAllPlaces)
    if (places.has(place)) kinds |= kindsIn(place);
  return static_cast<word::StoryKinds>(kinds);
}

Places placesOf(word::StoryKinds kinds) {
  Places places;
  for (const Place place : kAllPlaces)
    if ((kindsIn(place) & kinds) != 0) places.add(place);
  return places;
}

std::string wordsOf(const StoryName& name) {
  const std::string one(namesOf(name.place).one);
  return name.place == Place::main ? one : one + " " + std::to_string(name.number);
}

std::vector<StoryName> storyNames(const Document& document) {
  std::array<std::size_t, kPlaces> counts{};
  std::vector<StoryName> names;
  names.reserve(document.count());
  for (std::size_t i = 0; i < document.count(); ++i) {
    const Place place = placeOf(document.story(i).kind());
    names.push_back({place, ++counts[static_cast<std::size_t>(place)]});
  }
  return names;
}

}  // namespace pluvo::document
