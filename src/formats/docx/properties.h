#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

/// Changes to w:rPr and w:pPr elements, given and returned as bytes; an element that is not there is an empty
/// string. Everything but what a function names keeps its bytes and its order.
namespace pluvo::docx {

/// How new elements and attributes of WordprocessingML are written where they stand.
struct Markup {
  std::string element = "w:";    ///< with the colon; empty in the default namespace
  std::string attribute = "w:";  ///< attributes need a prefix
  std::string declaration;       ///< " xmlns:…" when the attribute's prefix has to be declared

  std::string tag(std::string_view local) const { return "<" + element + std::string(local); }
  std::string endTag(std::string_view local) const { return "</" + element + std::string(local) + ">"; }
  /// An empty element with one attribute.
  std::string with(std::string_view local, std::string_view name, std::string_view value) const;
};

/// w:rPr with this highlight (0: none), in the place the schema gives it.
std::string withHighlight(std::string_view runProperties, const Markup& markup, std::uint8_t colour);

/// The w:rPr that text beside a paragraph's mark takes: the mark's, without what tells how the mark was
/// tracked.
std::string runPropertiesOfMark(std::string_view paragraphProperties);

/// w:pPr with this highlight for the paragraph's mark.
std::string withMarkHighlight(std::string_view paragraphProperties, const Markup& markup,
                              std::uint8_t colour);

/// Remembers what one of the functions above made of the last few elements: a document has many runs and
/// paragraphs and few formats.
class HighlightedProperties {
 public:
  using Make = std::string (*)(std::string_view properties, const Markup& markup, std::uint8_t colour);
  explicit HighlightedProperties(Make make) : make_(make) {}

  const std::string& of(std::string_view properties, const Markup& markup, std::uint8_t colour);

 private:
  struct Known {
    std::string before;
    std::string prefix;
    std::uint8_t colour = 0;
    std::string after;
  };
  Make make_;
  std::vector<Known> known_;
  std::size_t next_ = 0;
};

/// w:pPr with this highlight for the mark, which is hidden if and only if text with these w:rPr is. Where it
/// is so already, nothing changes.
std::string withMarkLike(std::string_view paragraphProperties, const Markup& markup, std::uint8_t colour,
                         std::string_view runProperties);

/// The w:pPr of a paragraph split off in front. It lacks the section it would end, and the tracked changes of
/// mark and properties: they stay with the old mark.
std::string forSplitOffParagraph(std::string_view paragraphProperties);

/// The empty element that says that the mark of a paragraph is deleted; empty where there is none.
std::string_view deletionOfMark(std::string_view paragraphProperties);

/// w:pPr of which the mark is deleted, as such an element says.
std::string withMarkDeletion(std::string_view paragraphProperties, const Markup& markup,
                             std::string_view deletion);

/// The attributes of a start tag, each with the blanks before it.
std::string attributesOf(std::string_view tag);

/// A start tag without the attributes of these local names.
std::string startTagWithout(std::string_view tag, std::initializer_list<std::string_view> locals);

/// <a …/> as <a …>.
std::string openedTag(std::string_view emptyTag);

}  // namespace pluvo::docx
