#pragma once

#include "engine/request.h"
#include "errors/context.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace pluvo::engine {

/// Line feeds go, manual line breaks become paragraph marks.
std::u16string NormalizeSearchText(errors::Context& context, std::u16string_view text);

/// A text that is searched for as that makes it, or, with the limits lifted, with one mark for a line end.
std::u16string normalizedText(std::u16string_view text, bool liftLimits);

/// As texts are searched for whole: every line end of any kind becomes one paragraph mark.
std::u16string withOneLineEnd(std::u16string_view text);

/// How many paragraph marks the text holds. No pass asks for it.
std::int16_t CountParagraphMarks(errors::Context& context, std::u16string_view text);

/// A text as it is searched for: whole, where the limits are lifted. Else neither more than 255 characters of
/// it nor a paragraph mark; what was cut off is compared where the rest was found.
struct SearchText {
  static constexpr std::size_t kMostForFind = 255;

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
  SearchText begin;
  SearchText end;
  SearchText inside;
  bool wholeWords = false;
  bool matchCase = false;
  std::int16_t distance = 0;
  std::int32_t location = 0;
  std::int32_t operation = 0;
  std::int32_t beforeOrAfter = 0;
  std::int32_t unitType = 0;
  /// Once a request asked for it, the space stays for the life of the engine.
  std::u16string extraSpace;
  std::int16_t highlightColour = 0;
  std::u16string text;
  bool liftLimits = false;

  /// Takes over all of the request but the distance, and leaves the normalized texts in it.
  void take(errors::Context& context, Request& request);
  /// Throws Fault where the request's distance is no number, or none of 16 bits.
  void takeDistance(const Request& request);
};

}  // namespace pluvo::engine
