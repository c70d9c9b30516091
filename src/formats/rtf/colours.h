#pragma once

#include "tokens.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::rtf {

/// The table that highlights name their colours by.
class Colours {
 public:
  /// Takes the colours of a table, whose bytes lie between its braces.
  void read(std::string_view bytes, Extent table);

  /// Word's index of the colour that the table has at a place: the nearest. 0 for none.
  std::uint8_t indexAt(std::int32_t place) const;

  /// The place at which exactly Word's colour stands; 0 for nowhere.
  std::int32_t placeOf(std::uint8_t index) const;
  std::int32_t count() const { return static_cast<std::int32_t>(indexes_.size()); }
  /// Whether the last colour lacks its semicolon, and counts for nothing.
  bool endsOpen() const { return endsOpen_; }

  static constexpr std::uint8_t kWordColours = 16;
  /// "\red255\green255\blue0;"
  static std::string entryOf(std::uint8_t index);

 private:
  static constexpr std::size_t kMost = 65'536;

  std::vector<std::uint8_t> indexes_;                       ///< 0 for no colour
  std::array<std::int32_t, kWordColours + 1> places_ = {};  ///< of the exact colours
  bool endsOpen_ = false;
};

}  // namespace pluvo::rtf
