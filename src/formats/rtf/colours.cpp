#include "colours.h"

#include "damage.h"

#include <algorithm>
#include <array>

namespace pluvo::rtf {

namespace {

struct Colour {
  std::int32_t red = 0;
  std::int32_t green = 0;
  std::int32_t blue = 0;
  bool operator==(const Colour&) const = default;
};

/// In the order of Word's index, from 1.
constexpr std::array<Colour, Colours::kWordColours> kPalette = {{{0, 0, 0},
                                                                 {0, 0, 255},
                                                                 {0, 255, 255},
                                                                 {0, 255, 0},
                                                                 {255, 0, 255},
                                                                 {255, 0, 0},
                                                                 {255, 255, 0},
                                                                 {255, 255, 255},
                                                                 {0, 0, 128},
                                                                 {0, 128, 128},
                                                                 {0, 128, 0},
                                                                 {128, 0, 128},
                                                                 {128, 0, 0},
                                                                 {128, 128, 0},
                                                                 {128, 128, 128},
                                                                 {192, 192, 192}}};

std::int32_t distance(const Colour& a, const Colour& b) {
  const auto square = [](std::int32_t x) { return x * x; };
  return square(a.red - b.red) + square(a.green - b.green) + square(a.blue - b.blue);
}

std::uint8_t nearest(const Colour& colour) {
  const auto* const found =
      std::ranges::min_element(kPalette, {}, [&](const Colour& known) { return distance(known, colour); });
  return static_cast<std::uint8_t>(found - kPalette.begin() + 1);
}

constexpr std::uint8_t kBlack = 1;

}  // namespace

void Colours::read(std::string_view bytes, Extent table) {
  Tokens tokens(bytes.substr(0, table.end), table.begin);
  Colour colour;
  bool isAutomatic = true;
  endsOpen_ = false;
  const auto add = [&] {
    const std::uint8_t index = isAutomatic ? std::uint8_t{0} : nearest(colour);
    const bool isExact = index > 0 && kPalette[index - 1U] == colour;
    if (isExact && !indexes_.empty() && places_[index] == 0) places_[index] = count();
    indexes_.push_back(index);
    if (indexes_.size() > kMost) throw damaged("has more than 65,536 colours");
    colour = {};
    isAutomatic = true;
    endsOpen_ = false;
  };
  for (Token token = tokens.next(); token.kind != Token::Kind::end; token = tokens.next()) {
    if (token.kind == Token::Kind::text) {
      const std::string_view text = bytes.substr(token.extent.begin, token.extent.end - token.extent.begin);
      for (const char c : text) {
        if (c == ';') add();
      }
    } else if (token.kind == Token::Kind::word && token.word >= Word::red && token.word <= Word::blue) {
      const std::int32_t part = std::clamp(token.number, 0, 255);
      (token.word == Word::red ? colour.red : token.word == Word::green ? colour.green : colour.blue) = part;
      isAutomatic = false;
      endsOpen_ = true;
    }
  }
}

std::uint8_t Colours::indexAt(std::int32_t place) const {
  if (place <= 0) return 0;
  if (place >= count()) return kBlack;
  return indexes_[static_cast<std::size_t>(place)];
}

std::int32_t Colours::placeOf(std::uint8_t index) const { return index <= kWordColours ? places_[index] : 0; }

std::string Colours::entryOf(std::uint8_t index) {
  const Colour& colour = kPalette[index - 1U];
  return "\\red" + std::to_string(colour.red) + "\\green" + std::to_string(colour.green) + "\\blue" +
         std::to_string(colour.blue) + ";";
}

}  // namespace pluvo::rtf
