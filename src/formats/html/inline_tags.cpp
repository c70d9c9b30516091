#include "inline_tags.h"

#include "base/ascii.h"
#include "text/positions.h"

#include <algorithm>

namespace pluvo::formats::html {

using Special = Style::Special;

namespace {

bool isClass(const Attributes& attributes, std::string_view name) {
  return base::equalsIgnoringAsciiCase(attributes.cssClass, name);
}

void applyStyle(const Style& style, State& state) {
  state.hidden = state.hidden || style.hidden();
  state.silent = state.silent || style.special == Special::listLabel;
  state.spaceRun = state.spaceRun || style.isSpaceRun;
  state.bold = style.bold.value_or(state.bold);
  state.italic = style.italic.value_or(state.italic);
  state.underlined = style.underlined.value_or(state.underlined);
  state.struck = style.struck.value_or(state.struck);
  if (style.preformatted) state.blanks = *style.preformatted ? State::Blanks::count : State::Blanks::fold;
}

/// The style that makes an element one character, with its contents.
bool isOneCharacter(const Style& style) {
  return style.tabs > 0 || style.special == Special::fieldBegin || style.special == Special::fieldSeparator ||
         style.special == Special::fieldEnd || style.special == Special::commentPlace;
}

void applyName(Name name, State& state) {
  switch (name) {
    case Name::b:
    case Name::strong:
      state.bold = true;
      break;
    case Name::i:
    case Name::em:
      state.italic = true;
      break;
    case Name::u:
      state.underlined = true;
      break;
    case Name::s:
    case Name::strike:
      state.struck = true;
      break;
    case Name::del:
      state.deleted = true;
      break;
    case Name::ins:
      state.inserted = true;
      break;
    case Name::rt:
    case Name::rp:
    case Name::rtc:
      state.silent = true;
      break;
    default:
      break;
  }
}

}  // namespace

void InlineTags::open(const Token& token, const Style& style, const Attributes& attributes) {
  if (style.special != Special::none || style.tabs > 0 || style.isNoteReference) {
    if (takeSpecial(token, style)) return;
    // Without an end tag it is nothing, and must not get one.
    if (isOneCharacter(style) && !walk_.state.silent) return walk_.events.aside(Aside::markup, token.extent);
  }
  if (token.name == Name::a) walk_.inlines.close(Name::a, {});
  if (token.name == Name::rt || token.name == Name::rp || token.name == Name::rtc) {
    for (const Name open : {Name::rt, Name::rp, Name::rtc}) walk_.inlines.closeThrough(open);
  }
  Inline element;
  element.name = token.name;
  element.tag = token.extent;
  element.tagName = token.inside;
  element.state = walk_.inlines.state();
  element.stands = attributes.hasId || attributes.hasName;
  applyName(token.name, element.state);
  applyStyle(style, element.state);
  if (isClass(attributes, "msoDel")) element.state.deleted = true;
  if (isClass(attributes, "msoIns")) element.state.inserted = true;
  constexpr std::uint8_t kYellow = 7;
  const auto colour = style.colour()             ? style.colour()
                      : token.name == Name::mark ? std::optional(kYellow)
                                                 : std::nullopt;
  if (colour) {
    element.state.colour = *colour;
    element.carriesColour = true;
    element.isOurs = token.name == Name::span && !attributes.hasOthers && *colour != 0 &&
                     !style.preformatted && style.highlight == style.background &&
                     !styleOf(attributes.style).hasOthers;
  }
  walk_.inlines.push(element);
  walk_.applyState();
  if (token.name == Name::oP) paragraphs_.lookOfMark(walk_.state);
  walk_.events.inlineTag(token.extent);
  if (Extent filler; token.name == Name::oP && !paragraphs_.isOpen() && isFiller(token, filler)) {
    walk_.events.filler(filler);
    walk_.tokens.goTo(filler.end);
  }
}

void InlineTags::close(const Token& token) {
  bool isOpen = false;
  if (token.name == Name::ruby && walk_.inlines.has(Name::ruby)) {
    walk_.inlines.closeThrough(Name::ruby);
    isOpen = true;
  } else {
    isOpen = walk_.inlines.close(token.name, walk_.in(token.inside));
  }
  walk_.applyState();
  if (isOpen) {
    walk_.events.inlineTag(token.extent);
  } else {
    walk_.events.aside(Aside::markup, token.extent);
  }
}

/// Takes an element that Word writes for one character, or several.
bool InlineTags::takeSpecial(const Token& token, const Style& style) {
  Extent whole;
  if (walk_.state.silent) return false;
  if (style.tabs > 0) {
    if (!elements_.skip(token, true, whole)) return false;
    text_.putMark(Character::Kind::ordinary, text::kTab, whole, style.tabs);
    return true;
  }
  switch (style.special) {
    case Special::fieldBegin:
      if (!elements_.skip(token, true, whole)) return false;
      fieldMark(Character::Kind::fieldBegin, text::kFieldBegin, whole);
      return true;
    case Special::fieldSeparator:
      if (!elements_.skip(token, true, whole)) return false;
      fieldMark(Character::Kind::fieldSeparator, text::kFieldSeparator, whole);
      return true;
    case Special::fieldEnd:
      if (!elements_.skip(token, true, whole)) return false;
      fieldMark(Character::Kind::fieldEnd, text::kFieldEnd, whole);
      return true;
    case Special::commentPlace:
      if (!elements_.skip(token, true, whole)) return false;
      if (walk_.part.isNote) return walk_.events.aside(Aside::markup, whole), true;
      text_.putMark(Character::Kind::ordinary, text::kCommentReference, whole);
      return true;
    default:
      break;
  }
  if (!style.isNoteReference || token.name != Name::a || !elements_.skip(token, true, whole)) return false;
  if (walk_.in(whole).find("mso-special-character") == std::string_view::npos) {
    walk_.tokens.goTo(token.extent.end);
    return false;
  }
  if (walk_.part.isNote) return walk_.events.aside(Aside::markup, whole), true;
  text_.putMark(Character::Kind::ordinary, text::kNoteReference, whole);
  return true;
}

void InlineTags::fieldMark(Character::Kind kind, char16_t unit, Extent bytes) {
  const bool isStray =
      walk_.part.strays != nullptr && std::ranges::binary_search(*walk_.part.strays, bytes.begin);
  if (isStray) return walk_.events.aside(Aside::markup, bytes);
  text_.putMark(kind, unit, bytes);
}

/// One no-break space that is all there is in a paragraph: Word shows that as empty.
bool InlineTags::isFiller(const Token& token, Extent& filler) const {
  std::size_t at = token.extent.end;
  const std::string_view rest = walk_.bytes.substr(at, walk_.tokens.end() - at);
  std::size_t length = 0;
  for (const std::string_view written : {"&nbsp;", "&#160;"}) {
    if (rest.starts_with(written)) length = written.size();
  }
  if (length == 0 && !rest.empty()) {
    const Decoded first = firstOf(walk_.page.charset(), rest);
    if (first.point != 0xA0) return false;
    length = first.bytes;
  }
  filler = {at, at + length};
  Tokens ahead = walk_.tokens;
  ahead.goTo(filler.end);
  constexpr int kMostTokens = 32;
  for (int i = 0; i < kMostTokens; ++i) {
    const Token next = ahead.next();
    if (next.kind == Token::Kind::end) return true;
    if ((traitsOf(next.name) & kBlock) != 0) return true;
    const bool isBlankText = next.kind == Token::Kind::text && withoutBlanks(walk_.in(next.extent)).empty();
    if (i == 0 ? next.name != Name::oP : next.kind != Token::Kind::endTag && !isBlankText) return false;
  }
  return false;
}

}  // namespace pluvo::formats::html
