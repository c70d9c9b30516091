#pragma once

#include <cstdint>

namespace pluvo::formats {

/// How a character looks besides highlight and visibility, so far as a window on the document shows it. The
/// looks of a paragraph are told with each of its characters; its mark's word counts.
struct Appearance {
  enum class Alignment : std::uint8_t { start, centre, end };

  bool bold = false;
  bool italic = false;
  bool underlined = false;
  bool struck = false;
  bool inserted = false;     ///< in a tracked insertion; deletions are told by the story
  std::uint8_t heading = 0;  ///< 1 to 9; 0 for none
  Alignment alignment = Alignment::start;
  bool rightToLeft = false;
  std::uint8_t listLevel = 0;  ///< 1 to 9 of an item in a list; 0 for none
  /// Of the innermost table cell it lies in, in twentieths of a point; 0 outside tables and where it is not
  /// told.
  std::uint16_t cellWidth = 0;

  bool operator==(const Appearance&) const = default;
};

}  // namespace pluvo::formats
