#pragma once

#include "word/enums.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace pluvo::engine {

// A code may have any value of 16 bits. One that names no operation or no location does nothing. One that
// names no place is kBefore. Under one that names no unit every ending is too far.
enum OperationCode : std::int16_t { kNone = 0, kInsert = 1, kReplace = 2, kDelete = 3, kHighlight = 4 };
enum LocationCode : std::int16_t { kSelection = 0, kBeginning = 1, kEnding = 2, kInsideText = 3 };
enum PlaceCode : std::int16_t { kBefore = 0, kAfter = 1 };
enum UnitCode : std::int16_t { kWords = 0, kSentences = 1, kParagraphs = 2, kEntireDocument = 3 };

/// The request to a pass: one field a choice. Texts may have line ends of any kind.
struct Request {
  std::u16string begin = {};
  std::u16string end = {};     ///< empty: the block is its beginning alone
  std::u16string inside = {};  ///< empty: no condition
  std::int16_t distance = 0;   ///< how many units may lie between beginning and ending
  UnitCode unit = kEntireDocument;
  OperationCode operation = kNone;
  LocationCode location = kSelection;
  PlaceCode place = kBefore;
  std::u16string text = {};  ///< to insert or to replace with
  bool extraSpace = false;
  std::int16_t highlightColour = word::wdYellow;
  bool wholeWords = false;
  bool matchCase = false;
  bool showFieldCodes = false;
  /// Where blocks are looked for: one story after the other, in the document's order. No block crosses from
  /// one into another.
  word::StoryKinds stories = word::kMainTextAlone;
  bool startAtTop = true;    ///< else at the start of the selection
  bool confirmEach = false;  ///< in a whole pass: the observer decides about each block
  /// Lifts three limits that are kept inside Word. Search points and skipped counts have 16 bits. Endings lie
  /// before the doubled position of a rejected candidate, and before the previous block. Texts are searched
  /// for by their first line or 255 characters; without the limit they are found whole.
  bool liftLimits = false;

  bool operator==(const Request&) const = default;
};

/// A text as a pass searches for it; a line end is one character 13.
struct SearchedText {
  std::u16string full;
  /// The text to be looked for. Where it is found, the document is compared with the full text, capitals too.
  /// Empty where the text is not asked for.
  std::u16string search;

  bool cut() const { return search.size() < full.size(); }
};

/// A text as a pass searches for it.
SearchedText searchedText(std::u16string_view text, bool liftLimits);

}  // namespace pluvo::engine
