#include "walker.h"

#include <optional>

namespace pluvo::formats::html {

namespace {

using Special = Style::Special;

bool isTableTag(Name name, unsigned traits) {
  return (traits & (kTablePart | kCell)) != 0 || name == Name::caption;
}

/// Lists of notes and comments, headers and footers.
std::optional<Aside> storyOf(Special special) {
  switch (special) {
    case Special::footnotes:
      return Aside::footnotes;
    case Special::endnotes:
      return Aside::endnotes;
    case Special::comments:
      return Aside::comments;
    case Special::header:
      return Aside::header;
    case Special::footer:
      return Aside::footer;
    default:
      return std::nullopt;
  }
}

}  // namespace

void Walker::walk() {
  for (;;) {
    const Token token = walk_.tokens.next();
    if (token.kind != Token::Kind::end) {
      step(token);
    } else if (conditions_.isInside()) {
      conditions_.leave();
    } else {
      return finish();
    }
  }
}

void Walker::finish() {
  // Unseen bytes at the end of the file stay after all text.
  const std::size_t end = walk_.endsWithin ? walk_.tokens.end() : walk_.tokens.unfinished();
  const std::size_t at = paragraphs_.endOfText(end);
  tables_.closeAll(at);
  blocks_.closeTo(1, at);
  paragraphs_.end(at, false);
  walk_.events.end(at);
}

void Walker::step(const Token& token) {
  switch (token.kind) {
    case Token::Kind::text:
      return text_.take(token.extent);
    case Token::Kind::startTag:
      return startTag(token);
    case Token::Kind::endTag:
      return endTag(token);
    case Token::Kind::comment:
      return conditions_.comment(token);
    default:
      return conditions_.declaration(token);
  }
}

void Walker::startTag(const Token& token) {
  const unsigned traits = traitsOf(token.name);
  const std::string_view tag = walk_.in(token.extent);
  const bool hasAttributes = token.extent.end - token.inside.end > 1;
  const Attributes attributes = hasAttributes ? attributesOf(tag) : Attributes();
  if ((traits & kNothing) != 0) return elements_.nothing(token);
  if ((traits & kPicture) != 0) return elements_.picture(token, attributes);
  const Style& style = walk_.sheet.styleOf(walk_.in(token.inside), attributes);
  if (token.name == Name::br) return text_.lineBreak(token, style);
  if (style.special != Special::none && otherStory(token, style.special)) return;
  if ((traits & kBlock) != 0) {
    if (token.name == Name::table) return tables_.open(token, style, attributes);
    if (isTableTag(token.name, traits)) return tables_.part(token, style, attributes);
    if ((traits & kRaw) != 0) return rawBlock(token);
    return blocks_.open(token, style, attributes);
  }
  const bool isPrefixed = tag.substr(0, token.inside.size() + 1).find(':') != tag.npos;
  if (token.name == Name::meta) return walk_.events.aside(Aside::meta, token.extent);
  if ((traits & kVoid) != 0 || token.name == Name::head || token.name == Name::html ||
      (isPrefixed && token.closesItself))
    return walk_.events.aside(Aside::markup, token.extent);
  inlines_.open(token, style, attributes);
}

void Walker::endTag(const Token& token) {
  const unsigned traits = traitsOf(token.name);
  if (token.name == Name::br) return text_.lineBreak(token, Style());
  if (token.name == Name::body || token.name == Name::html) return endBody(token);
  if ((traits & kBlock) == 0) return inlines_.close(token);
  if (isTableTag(token.name, traits)) return tables_.endPart(token);
  if (blocks_.closeNamed(token.name, token)) return;
  if (token.name != Name::p) return walk_.events.aside(Aside::markup, token.extent);
  paragraphs_.end(token.extent.begin, false);
  walk_.events.divides(token.extent);
}

void Walker::endBody(const Token& token) {
  if (walk_.tables.any() || conditions_.isInside()) return walk_.events.aside(Aside::markup, token.extent);
  const std::size_t at = token.extent.begin;
  blocks_.closeTo(1, at);
  paragraphs_.end(at, false);
  paragraphs_.endText(at);
  walk_.events.divides(token.extent);
}

/// Text as it stands, up to its end tag.
void Walker::rawBlock(const Token& token) {
  blocks_.makeRoomFor(token);
  blocks_.push(token, {}, {});
  walk_.events.blockBegins(walk_.blocks.inner());
  const Extent content = walk_.tokens.skipRaw(token);
  walk_.endsWithin = content.end >= walk_.tokens.end();
  text_.takeRaw(content);
  Token end = walk_.tokens.next();
  if (end.kind == Token::Kind::end) end.extent = {content.end, content.end};
  blocks_.close(content.end, end.extent);
}

bool Walker::otherStory(const Token& token, Special special) {
  const auto kind = storyOf(special);
  Extent whole;
  if (!kind || token.name != Name::div || !elements_.skip(token, false, whole)) return false;
  blocks_.endParagraph(token.extent.begin);
  walk_.events.aside(*kind, whole);
  walk_.events.divides({whole.end, whole.end});
  return true;
}

}  // namespace pluvo::formats::html
