#pragma once

#include "word/enums.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>

namespace pluvo::document {

/// Where in a document a text stands, as its user sees it.
enum class Place : std::uint8_t { main, headers, footers, footnotes, endnotes, comments, boxes };
inline constexpr std::size_t kPlaces = 7;
inline constexpr std::array<Place, kPlaces> kAllPlaces = {Place::main,      Place::headers,  Place::footers,
                                                          Place::footnotes, Place::endnotes, Place::comments,
                                                          Place::boxes};

constexpr Place placeOf(word::WdStoryType kind) {
  switch (kind) {
    case word::wdFootnotesStory:
      return Place::footnotes;
    case word::wdEndnotesStory:
      return Place::endnotes;
    case word::wdCommentsStory:
      return Place::comments;
    case word::wdTextFrameStory:
      return Place::boxes;
    case word::wdEvenPagesHeaderStory:
    case word::wdPrimaryHeaderStory:
    case word::wdFirstPageHeaderStory:
      return Place::headers;
    case word::wdEvenPagesFooterStory:
    case word::wdPrimaryFooterStory:
    case word::wdFirstPageFooterStory:
      return Place::footers;
    case word::wdMainTextStory:
      break;
  }
  return Place::main;
}

/// A set of places.
class Places {
 public:
  constexpr Places() = default;
  constexpr Places(std::initializer_list<Place> places) {
    for (const Place place : places) add(place);
  }
  static constexpr Places all() {
    Places places;
    for (const Place place : kAllPlaces) places.add(place);
    return places;
  }

  constexpr void add(Place place) { bits_ = static_cast<std::uint8_t>(bits_ | bitOf(place)); }
  constexpr void remove(Place place) { bits_ = static_cast<std::uint8_t>(bits_ & ~bitOf(place)); }
  constexpr bool has(Place place) const { return (bits_ & bitOf(place)) != 0; }
  constexpr bool empty() const { return bits_ == 0; }
  constexpr bool operator==(const Places&) const = default;

 private:
  static constexpr unsigned bitOf(Place place) { return 1U << static_cast<unsigned>(place); }
  std::uint8_t bits_ = 0;
};

}  // namespace pluvo::document
