#pragma once

#include "document/content.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace pluvo::formats {

/// Texts of a document that lie beside its main text and are read as it is.
enum class OtherStory : std::uint8_t { headers, footers, footnotes, endnotes, comments, boxes };
inline constexpr std::size_t kOtherStories = 6;

/// Places no request can reach. Those up to fieldResults a source does not tell: they lie in texts and show
/// in their layers.
enum class Unreached : std::uint8_t {
  hidden,
  fieldCodes,
  fieldResults,
  computed,  ///< what Word shows in place of the text in the file
  charts,
  formulas,
  wordArt,
  smartArt,
  guides,  ///< phonetic guides, and texts with one that are not main text
  chunks,  ///< files that Word takes into the text on opening
  pictureTexts,
  properties,
  customXml,
  variables,
  glossary,
  people,
  embedded,
  pageComments,
  scripts,
  styleSheets,
  templates,
  formFields,     ///< their texts and their choices
  earlier,        ///< what a program that saves changes alone left in the file of text that was deleted
  otherPrograms,  ///< what they put where nobody else reads it
};
inline constexpr std::size_t kUnreached = 24;

/// Parts that the search leaves out.
enum class Opaque : std::uint8_t { objects, pictures, macros, thumbnail, scriptedText };
inline constexpr std::size_t kOpaque = 5;

/// Takes the texts of a document that its main text does not hold, one at a time.
class OtherTexts {
 public:
  virtual ~OtherTexts() = default;
  /// One header, one note, one box.
  virtual void story(OtherStory kind, document::Content content) = 0;
  virtual void unreached(Unreached kind, std::u16string_view text) = 0;
  /// The same, of a text as it lies in memory.
  virtual void unreached(Unreached kind, const text::Stretch& text) {
    std::u16string units(static_cast<std::size_t>(text.length), u'\0');
    text.copyTo(units.data());
    unreached(kind, units);
  }
  virtual void notLookedInto(Opaque kind) = 0;
  /// A part that could not be read: its name in the package, and why (for the user).
  virtual void damaged(std::string_view part, std::string_view why) = 0;
};

}  // namespace pluvo::formats
