#include "story_parts.h"

#include "base/ascii.h"
#include "style.h"

namespace pluvo::formats::html {

namespace {

std::string_view bytesOf(const Page& page, Extent extent) {
  return page.bytes().substr(extent.begin, extent.size());
}

/// Word's names for those of the first page and of even ones begin with "f" and "e": "h1", "fh1", "eh1".
word::WdStoryType kindOf(bool isHeader, std::string_view id) {
  if (base::startsWithIgnoringAsciiCase(id, isHeader ? "fh" : "ff"))
    return isHeader ? word::wdFirstPageHeaderStory : word::wdFirstPageFooterStory;
  if (base::startsWithIgnoringAsciiCase(id, "e"))
    return isHeader ? word::wdEvenPagesHeaderStory : word::wdEvenPagesFooterStory;
  return isHeader ? word::wdPrimaryHeaderStory : word::wdPrimaryFooterStory;
}

}  // namespace

bool holdsStories(Aside kind) { return kind >= Aside::footnotes; }

Extent withinTags(const Page& page, Extent element) {
  Tokens tokens(page.bytes(), element.begin, element.end);
  const std::size_t begin = tokens.next().extent.end;
  const std::size_t close = bytesOf(page, element).rfind("</");
  const bool isClosed = close != std::string_view::npos && element.begin + close >= begin;
  return {begin, isClosed ? element.begin + close : element.end};
}

std::string noteOf(const Page& page, Extent reference) {
  Tokens tokens(page.bytes(), reference.begin, reference.end);
  std::string id;
  forEachDeclaration(attributesOf(bytesOf(page, tokens.next().extent)).style,
                     [&](std::string_view, std::string_view name, std::string_view value) {
                       if (name == "mso-footnote-id" || name == "mso-endnote-id") id = value;
                     });
  return id;
}

std::vector<StoryPart> storiesIn(const Page& page, Aside kind, Extent element) {
  Tokens tokens(page.bytes(), element.begin, element.end);
  const Attributes own = attributesOf(bytesOf(page, tokens.next().extent));
  if (kind == Aside::header || kind == Aside::footer)
    return {{kindOf(kind == Aside::header, own.id), element, withinTags(page, element), {}}};
  const word::WdStoryType storyKind = kind == Aside::footnotes  ? word::wdFootnotesStory
                                      : kind == Aside::endnotes ? word::wdEndnotesStory
                                                                : word::wdCommentsStory;
  std::vector<StoryPart> parts;
  int depth = 0;  // of elements in the note at hand; 0 between notes
  for (Token token = tokens.next(); token.kind != Token::Kind::end; token = tokens.next()) {
    if (token.kind == Token::Kind::startTag && (traitsOf(token.name) & kRaw) != 0) tokens.skipRaw(token);
    if (token.name != Name::div) continue;
    if (token.kind == Token::Kind::endTag) {
      if (depth == 0 || --depth > 0) continue;
      parts.back().content.end = token.extent.begin;
      parts.back().whole.end = token.extent.end;
    } else if (depth > 0) {
      ++depth;
    } else {
      const Attributes attributes = attributesOf(bytesOf(page, token.extent));
      if (styleOf(attributes.style).special != Style::Special::note) continue;
      parts.push_back(
          {storyKind, token.extent, {token.extent.end, token.extent.end}, std::string(attributes.id)});
      depth = 1;
    }
  }
  if (depth > 0) parts.pop_back();
  return parts;
}

}  // namespace pluvo::formats::html
