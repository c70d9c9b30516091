#include "line.h"

#include "base/utf.h"
#include "errors/document_error.h"
#include "new_text.h"
#include "text/positions.h"

#include <string>

namespace pluvo::formats::html {

void Line::begin(const Place& itsPlace) {
  place = itsPlace;
  markup.begin(place.from, place.inlinesFrom, place.block.preformatted);
  isClean = isBeside = folds = true;
  const bool isPre = place.block.name == Name::pre || place.block.name == Name::listing;
  atPreStart = isPre && place.from == place.block.tag.end;
  afterInvalid = endsInLineEnd = isOpen = false;
}

bool Line::keepsBlanks(std::int32_t inlines) const {
  const State::Blanks blanks = stateOf(inlines).blanks;
  return blanks == State::Blanks::asAround ? place.block.preformatted : blanks == State::Blanks::count;
}

bool Line::isInComment(std::int32_t inlines) const {
  if (!walker.inlines().has(Name::conditional) && inlines < 0) return false;
  return markup.outside(inlines, [](const Inline& element) { return element.name == Name::conditional; }) !=
         inlines;
}

void Line::wrote(bool blanksFold) {
  folds = blanksFold;
  isOpen = true;
  atPreStart = endsInLineEnd = afterInvalid = false;
}

void Line::put(std::u16string_view units, std::int32_t inlines) {
  while (!units.empty()) {
    const base::Utf16Character first = base::firstOfUtf16(units);
    if (base::isSurrogate(first.point))
      throw errors::DocumentError(errors::Problem::encoding,
                                  "The changes leave half of a character, which a page cannot hold; change "
                                  "the whole character.");
    putUnit(first.point, inlines);
    units.remove_prefix(first.units);
  }
}

void Line::putUnit(char32_t point, std::int32_t inlines) {
  const bool keeps = keepsBlanks(inlines);
  std::string bytes;
  switch (point) {
    case U' ':
      if (!keeps && folds) return protectBlank(inlines);
      markup.put(" ");
      return wrote(!keeps);
    case text::kTab:
      markup.put(keeps ? "\t"
                       : "<span style='mso-tab-count:1" + markup.against() + "'>&nbsp;&nbsp;&nbsp; </span>");
      return wrote(false);
    case text::kLineBreak:
      markup.put("<br>");
      return wrote(true);
    case text::kPageBreak:
      markup.put("<br clear=all style='mso-special-character:line-break;page-break-before:always'>");
      return wrote(true);
    case text::kColumnBreak:
      markup.put("<br clear=all style='mso-column-break-before:always'>");
      return wrote(true);
    default:
      break;
  }
  if (afterInvalid && point < 0x80) {
    bytes = "&#" + std::to_string(static_cast<std::uint32_t>(point)) + ";";
  } else {
    appendCharacter(bytes, point, page.charset(), isInComment(inlines));
  }
  markup.put(bytes);
  wrote(false);
}

void Line::protectBlank(std::int32_t inlines) {
  markup.put(stateOf(inlines).spaceRun
                 ? std::string("&nbsp;")
                 : "<span style='mso-spacerun:yes" + markup.against() + "'>&nbsp;</span>");
  wrote(false);
}

}  // namespace pluvo::formats::html
