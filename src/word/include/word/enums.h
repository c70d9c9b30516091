#pragma once

#include <cstdint>

/// Word's enumerations as Word publishes them, so far as they are used.
namespace pluvo::word {

enum WdUnits : std::int32_t { wdCharacter = 1, wdWord = 2, wdSentence = 3, wdParagraph = 4 };

enum WdFindWrap : std::int32_t { wdFindStop = 0, wdFindContinue = 1, wdFindAsk = 2 };

/// Highlight colours; wdNoHighlight removes.
enum WdColorIndex : std::int32_t {
  wdNoHighlight = 0,
  wdBlack = 1,
  wdBlue = 2,
  wdTurquoise = 3,
  wdBrightGreen = 4,
  wdPink = 5,
  wdRed = 6,
  wdYellow = 7,
  wdWhite = 8,
  wdDarkBlue = 9,
  wdTeal = 10,
  wdGreen = 11,
  wdViolet = 12,
  wdDarkRed = 13,
  wdDarkYellow = 14,
  wdGray50 = 15,
  wdGray25 = 16,
};

enum WdProtectionType : std::int32_t {
  wdNoProtection = -1,
  wdAllowOnlyRevisions = 0,
  wdAllowOnlyComments = 1,
  wdAllowOnlyFormFields = 2,
  wdAllowOnlyReading = 3,
};

enum WdDefaultFilePath : std::int32_t { wdDocumentsPath = 0, wdUserTemplatesPath = 2 };

enum WdStoryType : std::int32_t {
  wdMainTextStory = 1,
  wdFootnotesStory = 2,
  wdEndnotesStory = 3,
  wdCommentsStory = 4,
  wdTextFrameStory = 5,  ///< text boxes
  wdEvenPagesHeaderStory = 6,
  wdPrimaryHeaderStory = 7,
  wdEvenPagesFooterStory = 8,
  wdPrimaryFooterStory = 9,
  wdFirstPageHeaderStory = 10,
  wdFirstPageFooterStory = 11,
};

/// Kinds of stories: of each the bit of its number.
using StoryKinds = std::uint16_t;
constexpr StoryKinds kindsOf(WdStoryType kind) {
  return static_cast<StoryKinds>(1U << static_cast<unsigned>(kind));
}
inline constexpr StoryKinds kMainTextAlone = kindsOf(wdMainTextStory);

}  // namespace pluvo::word
