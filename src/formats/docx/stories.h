#pragma once

#include "budget.h"
#include "document/content.h"
#include "package.h"
#include "reader.h"
#include "xml/encoding.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::docx {

/// A place in a part at which a story stands. A text box may stand at several: one for each alternative that
/// holds it.
struct Site {
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  std::size_t story = kNone;   ///< its number in the document; none where it is not given as one
  std::size_t around = kNone;  ///< the site in this part that holds it; none where it stands by itself
  Extent extent;               ///< of its element, or, of main text, of the whole part
  /// A start tag under which the bytes of the element mean what they mean in the part. Empty for main text.
  std::shared_ptr<const std::string> scope;
  BodyMap map;                           ///< its offsets are those of the part
  text::RunMap<std::uint8_t> highlight;  ///< as it was read
};

/// The end tag of Site::scope.
inline constexpr std::string_view kScopeEnd = "</x>";
/// The element at a site, within its scope: a document to be walked by itself.
std::string standingAlone(const Site& site, base::ByteSpan part);

/// A part and its stories, in the order of the start tags: a story within another comes after it.
struct StoryPart {
  std::string name;
  xml::Utf8Part part;
  std::vector<Site> sites;
};

struct Stories {
  std::vector<document::Content> contents;
  std::vector<StoryPart> parts;  ///< the main part first, and main text its first site
};

/// Main text alone.
Stories withMainTextAlone(std::string partName, xml::Utf8Part part, ReadBody mainText);

/// All stories, in the order of formats::Opened::stories. A header or footer that no section has is one, too.
/// It leaves out separators of notes, boxes that no character of another story stands for, and every story of
/// a part that cannot be read. tellOtherTexts tells of those.
Stories withAllStories(const Package& package, xml::Utf8Part part, ReadBody mainText, const Styles& styles);

}  // namespace pluvo::docx
