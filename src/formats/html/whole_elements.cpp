#include "whole_elements.h"

#include "base/ascii.h"
#include "text/positions.h"

#include <algorithm>

namespace pluvo::formats::html {

bool WholeElements::skip(const Token& token, bool withinParagraph, Extent& whole) {
  const std::size_t begin = token.extent.begin;
  Unmatched& unmatched = unmatched_[static_cast<std::size_t>(token.name)];
  if (begin < unmatched.to && std::ranges::binary_search(unmatched.begins, begin)) return false;
  Tokens ahead = walk_.tokens;
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
    walk_.tokens.goTo(next.extent.end);
    return true;
  }
  unmatched = {ahead.at(), std::move(open)};
  return false;
}

/// A list of choices ends at the latest where the next part of a form begins, or a block.
Extent WholeElements::skipSelect(const Token& token) {
  Tokens ahead = walk_.tokens;
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
  walk_.tokens.goTo(end);
  return {token.extent.begin, end};
}

void WholeElements::picture(const Token& token, const Attributes& attributes) {
  const unsigned traits = traitsOf(token.name);
  Extent whole = token.extent;
  if (token.name == Name::input && base::equalsIgnoringAsciiCase(attributes.type, "hidden"))
    return walk_.events.aside(Aside::markup, whole);
  if (token.name == Name::select) {
    whole = skipSelect(token);
  } else if ((traits & kRaw) != 0) {
    walk_.tokens.skipRaw(token);
    walk_.endsWithin = walk_.tokens.at() >= walk_.tokens.end();
    whole.end = walk_.tokens.next().extent.end;
  } else if ((traits & kVoid) == 0) {
    const bool isForeign = token.name == Name::svg || token.name == Name::math;
    if (!(isForeign && token.closesItself)) skip(token, false, whole);
  }
  if (walk_.state.silent) return walk_.events.aside(Aside::label, whole);
  text_.putMark(Character::Kind::ordinary, text::kPicture, whole);
}

void WholeElements::nothing(const Token& token) {
  Extent whole = token.extent;
  Extent content{token.extent.end, token.extent.end};
  if ((traitsOf(token.name) & kRaw) != 0) {
    content = walk_.tokens.skipRaw(token);
    whole.end = walk_.tokens.next().extent.end;
  } else if (!skip(token, false, whole)) {
    return walk_.events.aside(Aside::markup, whole);
  }
  switch (token.name) {
    case Name::style:
      if (walk_.part.sheet == nullptr) walk_.sheet.add(walk_.in(content));
      return walk_.events.aside(Aside::style, whole);
    case Name::script:
      return walk_.events.aside(Aside::script, whole);
    case Name::title:
      return walk_.events.aside(Aside::title, whole);
    case Name::xml:
      return walk_.events.aside(Aside::markup, whole);
    default:
      return walk_.events.aside(Aside::content, whole);
  }
}

}  // namespace pluvo::formats::html
