#pragma once

#include "moved_places.h"
#include "word_file.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace pluvo::doc {

/// Bytes of the Data stream that a character stands for, or a paragraph.
struct DataStretch {
  text::Position at = 0;  ///< the character, or the paragraph's mark
  std::size_t from = 0;
  std::size_t to = 0;
  /// A picture or what a field keeps, and no more. Where bytes say nothing of their end, all that follow
  /// count.
  bool isWhole = false;
};

/// Those of all texts, in the order of their characters.
void forEachDataStretch(const Text& text, const std::function<void(const DataStretch&)>& visit);

/// The Data stream with zeros where only characters that go stand for something; empty where nothing changes.
/// The glossary of a template is null where there is none.
std::vector<std::uint8_t> dataWithoutGone(const Text& text, const Text* glossary, const MovedPlaces& places);

}  // namespace pluvo::doc
