#include "asides.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string>
#include <string_view>

namespace pluvo::docx {

namespace {

using namespace std::string_view_literals;

bool mayHoldText(std::string_view aside) {
  constexpr std::size_t kMostLookedAt = std::size_t{1} << 14U;
  constexpr std::array kPictures = {"drawing"sv, "pict"sv};
  constexpr std::array kSigns = {"txbxContent"sv, "descr"sv, "title"sv, "textpath"sv, "alt"sv,
                                 ":t>"sv,         ":t "sv,   "<t>"sv,   "<t "sv};
  aside = aside.substr(0, kMostLookedAt);
  const std::string_view name = aside.substr(1, aside.find_first_of(" \t\r\n/>") - 1);
  const std::string_view local = name.substr(name.find(':') + 1);
  const std::size_t end = aside.find("</" + std::string(name) + ">");
  if (end == std::string_view::npos ||
      std::find(kPictures.begin(), kPictures.end(), local) == kPictures.end())
    return true;
  aside = aside.substr(0, end);
  return std::any_of(kSigns.begin(), kSigns.end(),
                     [&](std::string_view sign) { return aside.find(sign) != std::string_view::npos; });
}

}  // namespace

std::vector<Offset> placesWithText(base::ByteSpan mainPart, const BodyMap& map) {
  const std::string_view bytes(reinterpret_cast<const char*>(mainPart.data()), mainPart.size());
  std::vector<Offset> places;
  std::copy_if(map.asides.begin(), map.asides.end(), std::back_inserter(places),
               [&](Offset aside) { return mayHoldText(bytes.substr(aside)); });
  return places;
}

}  // namespace pluvo::docx
