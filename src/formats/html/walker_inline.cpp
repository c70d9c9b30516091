// How a walk goes through inline elements, and which of them are one character.
#include "base/ascii.h"
#include "text/positions.h"
#include "walker.h"

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

void Walker::openInline(const Token& token, const Style& style, const Attributes& attributes) {
  if (style.special != Special::none || style.tabs > 0 || style.isNoteReference) {
    if (special(token, style)) return;
    // Without an end tag it is nothing, and must not get one.
    if (isOneCharacter(style) && !state_.silent) return events_.aside(Aside::markup, token.extent);
  }
  if (token.name == Name::a) inlines_.close(Name::a, {});
  if (token.name == Name::rt || token.name == Name::rp || token.name == Name::rtc) {
    for (const Name open : {Name::rt, Name::rp, Name::rtc}) inlines_.closeThrough(open);
  }
  Inline element;
  element.name = token.name;
  element.tag = token.extent;
  element.tagName = token.inside;
  element.state = inlines_.state();
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
  inlines_.push(element);
  applyState();
  if (token.name == Name::oP) markState_ = state_;
  events_.inlineTag(token.extent);
  if (Extent filler; token.name == Name::oP && !isOpen_ && isFiller(token, filler)) {
    events_.filler(filler);
    tokens_.goTo(filler.end);
  }
}

/// What Word writes for one character, or several.
bool Walker::special(const Token& token, const Style& style) {
  Extent whole;
  if (state_.silent) return false;
  if (style.tabs > 0) {
    if (!skipElement(token, true, whole)) return false;
    putMark(Character::Kind::ordinary, text::kTab, whole, style.tabs);
    return true;
  }
  switch (style.special) {
    case Special::fieldBegin:
      if (!skipElement(token, true, whole)) return false;
      fieldMark(Character::Kind::fieldBegin, text::kFieldBegin, whole);
      return true;
    case Special::fieldSeparator:
      if (!skipElement(token, true, whole)) return false;
      fieldMark(Character::Kind::fieldSeparator, text::kFieldSeparator, whole);
      return true;
    case Special::fieldEnd:
      if (!skipElement(token, true, whole)) return false;
      fieldMark(Character::Kind::fieldEnd, text::kFieldEnd, whole);
      return true;
    case Special::commentPlace:
      if (!skipElement(token, true, whole)) return false;
      if (part_.isNote) return events_.aside(Aside::markup, whole), true;
      putMark(Character::Kind::ordinary, text::kCommentReference, whole);
      return true;
    default:
      break;
  }
  if (!style.isNoteReference || token.name != Name::a || !skipElement(token, true, whole)) return false;
  if (part(whole).find("mso-special-character") == std::string_view::npos) {
    tokens_.goTo(token.extent.end);
    return false;
  }
  if (part_.isNote) return events_.aside(Aside::markup, whole), true;
  putMark(Character::Kind::ordinary, text::kNoteReference, whole);
  return true;
}

void Walker::fieldMark(Character::Kind kind, char16_t unit, Extent bytes) {
  const bool isStray = part_.strays != nullptr && std::ranges::binary_search(*part_.strays, bytes.begin);
  if (isStray) return events_.aside(Aside::markup, bytes);
  putMark(kind, unit, bytes);
}

/// Lists of notes and comments, headers and footers.
bool Walker::otherStory(const Token& token, const Style& style) {
  Aside kind = Aside::markup;
  switch (style.special) {
    case Special::footnotes:
      kind = Aside::footnotes;
      break;
    case Special::endnotes:
      kind = Aside::endnotes;
      break;
    case Special::comments:
      kind = Aside::comments;
      break;
    case Special::header:
      kind = Aside::header;
      break;
    case Special::footer:
      kind = Aside::footer;
      break;
    default:
      return false;
  }
  Extent whole;
  if (token.name != Name::div || !skipElement(token, false, whole)) return false;
  const std::size_t at = token.extent.begin;
  if (block().name == Name::p) closeBlock(at, {at, at});
  endParagraph(at, false);
  events_.aside(kind, whole);
  events_.divides({whole.end, whole.end});
  return true;
}

/// An element up to its end tag; the walk goes on after it. Within a paragraph none that holds blocks.
bool Walker::skipElement(const Token& token, bool withinParagraph, Extent& whole) {
  const std::size_t begin = token.extent.begin;
  Unmatched& unmatched = unmatched_[static_cast<std::size_t>(token.name)];
  if (begin < unmatched.to && std::ranges::binary_search(unmatched.begins, begin)) return false;
  Tokens ahead = tokens_;
  std::vector<std::size_t> open = {begin};
  for (Token next = ahead.next(); next.kind != Token::Kind::end; next = ahead.next()) {
    if (next.kind != Token::Kind::startTag && next.kind != Token::Kind::endTag) continue;
    if (withinParagraph && (traitsOf(next.name) & kBlock) != 0) break;
    if (next.kind == Token::Kind::startTag && (traitsOf(next.name) & kRaw) != 0) ahead.skipRaw(next);
    if (next.name != token.name) continue;
    if (next.kind == Token::Kind::startTag) {
      if (token.name == Name::a) break;
      open.push_back(next.extent.begin);
      continue;
    }
    open.pop_back();
    if (!open.empty()) continue;
    whole = {begin, next.extent.end};
    tokens_.goTo(next.extent.end);
    return true;
  }
  unmatched = {ahead.at(), std::move(open)};
  return false;
}

/// A list of choices ends at the latest where the next part of a form begins, or a block.
Extent Walker::skipSelect(const Token& token) {
  Tokens ahead = tokens_;
  std::size_t end = token.extent.end;
  for (Token next = ahead.next(); next.kind != Token::Kind::end; next = ahead.next()) {
    const bool isTag = next.kind == Token::Kind::startTag || next.kind == Token::Kind::endTag;
    const bool closes = next.kind == Token::Kind::endTag && next.name == Name::select;
    const bool isOther = isTag && !closes &&
                         ((traitsOf(next.name) & kBlock) != 0 || next.name == Name::input ||
                          next.name == Name::select || next.name == Name::textarea);
    if (isOther) break;
    end = next.extent.end;
    if (closes) break;
  }
  tokens_.goTo(end);
  return {token.extent.begin, end};
}

void Walker::picture(const Token& token, const Attributes& attributes) {
  const unsigned traits = traitsOf(token.name);
  Extent whole = token.extent;
  if (token.name == Name::input && base::equalsIgnoringAsciiCase(attributes.type, "hidden"))
    return events_.aside(Aside::markup, whole);
  if (token.name == Name::select) {
    whole = skipSelect(token);
  } else if ((traits & kRaw) != 0) {
    tokens_.skipRaw(token);
    endsWithin_ = tokens_.at() >= tokens_.end();
    whole.end = tokens_.next().extent.end;
  } else if ((traits & kVoid) == 0) {
    const bool isForeign = token.name == Name::svg || token.name == Name::math;
    if (!(isForeign && token.closesItself)) skipElement(token, false, whole);
  }
  if (state_.silent) return events_.aside(Aside::label, whole);
  putMark(Character::Kind::ordinary, text::kPicture, whole);
}

/// An element without text, with its contents.
void Walker::nothing(const Token& token) {
  Extent whole = token.extent;
  Extent content{token.extent.end, token.extent.end};
  if ((traitsOf(token.name) & kRaw) != 0) {
    content = tokens_.skipRaw(token);
    whole.end = tokens_.next().extent.end;
  } else if (!skipElement(token, false, whole)) {
    return events_.aside(Aside::markup, whole);
  }
  switch (token.name) {
    case Name::style:
      if (part_.sheet == nullptr) sheet_.add(part(content));
      return events_.aside(Aside::style, whole);
    case Name::script:
      return events_.aside(Aside::script, whole);
    case Name::title:
      return events_.aside(Aside::title, whole);
    case Name::xml:
      return events_.aside(Aside::markup, whole);
    default:
      return events_.aside(Aside::content, whole);
  }
}

/// One no-break space that is all there is in a paragraph: Word shows that as empty.
bool Walker::isFiller(const Token& token, Extent& filler) const {
  std::size_t at = token.extent.end;
  const std::string_view rest = bytes_.substr(at, tokens_.end() - at);
  std::size_t length = 0;
  for (const std::string_view written : {"&nbsp;", "&#160;"}) {
    if (rest.starts_with(written)) length = written.size();
  }
  if (length == 0 && !rest.empty()) {
    const Decoded first = firstOf(page_.charset(), rest);
    if (first.point != 0xA0) return false;
    length = first.bytes;
  }
  filler = {at, at + length};
  Tokens ahead = tokens_;
  ahead.goTo(filler.end);
  constexpr int kMostTokens = 32;
  for (int i = 0; i < kMostTokens; ++i) {
    const Token next = ahead.next();
    if (next.kind == Token::Kind::end) return true;
    if ((traitsOf(next.name) & kBlock) != 0) return true;
    const bool isBlankText = next.kind == Token::Kind::text && withoutBlanks(part(next.extent)).empty();
    if (i == 0 ? next.name != Name::oP : next.kind != Token::Kind::endTag && !isBlankText) return false;
  }
  return false;
}

}  // namespace pluvo::formats::html
