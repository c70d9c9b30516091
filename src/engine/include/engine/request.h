#pragma once

#include <cstdint>
#include <string>

namespace pluvo::engine {

enum OperationCode : std::int16_t { kNone = 0, kInsert = 1, kReplace = 2, kDelete = 3, kHighlight = 4 };
enum LocationCode : std::int16_t { kSelection = 0, kBeginning = 1, kEnding = 2, kInsideText = 3 };
enum PlaceCode : std::int16_t { kBefore = 0, kAfter = 1 };
enum UnitCode : std::int16_t { kWords = 0, kSentences = 1, kParagraphs = 2, kEntireDocument = 3 };

/// The distance that stands for none.
inline constexpr const char16_t* kSame = u"Same";

/// A text as a pass searches for it; a line end is one character 13.
struct SearchedText {
  std::u16string full;
  /// What is looked for; where it is found, the document is compared with the full text, capitals too. Empty
  /// where the text is not asked for.
  std::u16string search;

  bool cut() const { return search.size() < full.size(); }
};

/// What a pass is asked to do, as the dialog or the command line sets it: one field a choice.
struct Request {
  std::u16string beginBlock;
  std::u16string endBlock;     ///< empty: the block is its beginning alone
  std::u16string insideBlock;  ///< empty: no condition
  std::u16string unitsApart;   ///< decimal, or kSame
  std::int16_t unitsApartType = 0;
  std::int16_t operation = 0;
  std::int16_t beforeOrAfter = 0;
  std::int16_t operationLocation = 0;
  std::u16string text;  ///< to insert or to replace with
  bool wholeWords = false;
  bool matchCase = false;
  bool extraSpace = false;
  bool showFieldCodes = false;
  bool startAtTop = false;  ///< else at the start of the selection
  std::int16_t highlightColour = 0;
  bool quiet = false;
  bool confirmEach = false;
  bool liftLimits = false;
  bool operator==(const Request&) const = default;
};

}  // namespace pluvo::engine
