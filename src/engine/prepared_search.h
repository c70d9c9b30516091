#pragma once

#include "engine/request.h"
#include "trail.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace pluvo::engine {

/// Line feeds go, manual line breaks become paragraph marks.
std::u16string NormalizeSearchText(Trail& trail, std::u16string_view text);

/// How many paragraph marks the text holds. No pass asks for it.
std::int16_t CountParagraphMarks(Trail& trail, std::u16string_view text);

/// A text as it is searched for: whole, where the limits are lifted. Else neither more of it than the
/// word processor finds nor a paragraph mark; the part cut off is compared where the rest was found.
struct SearchText {
  SearchText() = default;
  SearchText(std::u16string normalizedText, bool liftLimits);

  bool empty() const { return whole ? whole->empty() : search.empty(); }

  /// None with the limits kept. The others are then for those.
  std::shared_ptr<const std::u16string> whole;
  bool wholeHasLineEnd = false;
  std::u16string full;
  std::u16string search;
  bool cut = false;
};

/// A request made ready for a pass.
struct PreparedSearch {
  PreparedSearch() = default;
  PreparedSearch(Trail& trail, const Request& request);

  bool operates() const { return request.operation >= kInsert && request.operation <= kHighlight; }

  Request request;
  SearchText begin;
  SearchText end;
  SearchText inside;
  bool wholeWords = false;   ///< false also where a text was cut
  std::u16string insertion;  ///< the text, with the extra space on the block's side
};

}  // namespace pluvo::engine
