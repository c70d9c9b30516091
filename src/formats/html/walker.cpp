#include "walker.h"

#include "base/ascii.h"
#include "conditions.h"

namespace pluvo::formats::html {

Walker::Walker(const Page& page, Events& events, const Part& part)
    : page_(page),
      bytes_(page.bytes()),
      events_(events),
      tokens_(bytes_, part.bytes.begin, part.bytes.end),
      part_(part),
      sheet_(part.sheet == nullptr ? own_ : *part.sheet),
      inlines_(bytes_) {
  blocks_.emplace_back();
  blocks_.back().name = Name::html;
}

void Walker::walk() {
  for (;;) {
    const Token token = tokens_.next();
    if (token.kind != Token::Kind::end) {
      step(token);
    } else if (conditionEnd_ != 0) {
      const Extent close{tokens_.end(), conditionEnd_};
      inlines_.closeThrough(Name::conditional);
      applyState();
      tokens_.endAt(outerEnd_);
      tokens_.goTo(conditionEnd_);
      tokens_.forgetUnfinished();
      conditionEnd_ = 0;
      events_.inlineTag(close);
    } else {
      return finish();
    }
  }
}

void Walker::finish() {
  // Unseen bytes at the end of the file stay after all text.
  const std::size_t end = endsWithin_ ? tokens_.end() : tokens_.unfinished();
  const std::size_t at = endAt_ == kNowhere ? end : endAt_;
  while (!scopes_.empty()) {
    if (scopes_.back().name == Name::table) {
      closeTable(at, {at, at});
    } else {
      closeCell(at, {at, at});
    }
  }
  closeTo(1, at);
  endParagraph(at, false);
  events_.end(at);
}

void Walker::step(const Token& token) {
  switch (token.kind) {
    case Token::Kind::text:
      return text(token.extent);
    case Token::Kind::startTag:
      return startTag(token);
    case Token::Kind::endTag:
      return endTag(token);
    case Token::Kind::comment:
      return comment(token);
    default:
      return declaration(token);
  }
}

void Walker::startTag(const Token& token) {
  const unsigned traits = traitsOf(token.name);
  const std::string_view tag = part(token.extent);
  const bool hasAttributes = token.extent.end - token.inside.end > 1;
  const Attributes attributes = hasAttributes ? attributesOf(tag) : Attributes();
  if ((traits & kNothing) != 0) return nothing(token);
  if ((traits & kPicture) != 0) return picture(token, attributes);
  const Style& style = sheet_.styleOf(part(token.inside), attributes);
  if (token.name == Name::br) return lineBreak(token, style);
  if (style.special != Style::Special::none && otherStory(token, style)) return;
  if ((traits & kBlock) != 0) {
    if (token.name == Name::table) return openTable(token, style, attributes);
    if ((traits & (kTablePart | kCell)) != 0 || token.name == Name::caption)
      return tablePart(token, style, attributes);
    return openBlock(token, style, attributes);
  }
  const bool isPrefixed = tag.substr(0, token.inside.size() + 1).find(':') != tag.npos;
  if (token.name == Name::meta) return events_.aside(Aside::meta, token.extent);
  if ((traits & kVoid) != 0 || token.name == Name::head || token.name == Name::html ||
      (isPrefixed && token.closesItself))
    return events_.aside(Aside::markup, token.extent);
  openInline(token, style, attributes);
}

void Walker::endTag(const Token& token) {
  const unsigned traits = traitsOf(token.name);
  if (token.name == Name::br) return lineBreak(token, Style());
  if (token.name == Name::body || token.name == Name::html) {
    if (hasTable() || conditionEnd_ != 0) return events_.aside(Aside::markup, token.extent);
    closeTo(1, token.extent.begin);
    endParagraph(token.extent.begin, false);
    if (endAt_ == kNowhere) endAt_ = token.extent.begin;
    return events_.divides(token.extent);
  }
  if ((traits & kBlock) != 0) {
    if ((traits & (kTablePart | kCell)) != 0 || token.name == Name::caption) return endTablePart(token);
    if (closeNamed(token.name, token)) return;
    if (token.name != Name::p) return events_.aside(Aside::markup, token.extent);
    endParagraph(token.extent.begin, false);
    return events_.divides(token.extent);
  }
  bool isOpen = false;
  if (token.name == Name::ruby && inlines_.has(Name::ruby)) {
    inlines_.closeThrough(Name::ruby);
    isOpen = true;
  } else {
    isOpen = inlines_.close(token.name, part(token.inside));
  }
  applyState();
  if (isOpen) {
    events_.inlineTag(token.extent);
  } else {
    events_.aside(Aside::markup, token.extent);
  }
}

void Walker::comment(const Token& token) {
  const Condition condition = conditionOfComment(part(token.inside));
  const bool isFinished = token.inside.end < token.extent.end;
  if (condition.kind == Condition::Kind::hidden && condition.holds && isFinished && conditionEnd_ == 0) {
    Inline element;
    element.name = Name::conditional;
    element.tag = {token.extent.begin, token.inside.begin + condition.contentFrom};
    element.tagName = {token.extent.begin, token.extent.begin};
    element.state = inlines_.state();
    if (inlines_.push(element)) {
      applyState();
      conditionEnd_ = token.extent.end;
      outerEnd_ = tokens_.end();
      tokens_.goTo(element.tag.end);
      tokens_.endAt(token.inside.begin + condition.contentTo);
      return events_.inlineTag(element.tag);
    }
  }
  if (condition.kind == Condition::Kind::revealed) return declaration(token);
  events_.aside(condition.kind == Condition::Kind::none ? Aside::comment : Aside::markup, token.extent);
}

/// Markup under a condition that does not hold is passed by up to its end.
void Walker::declaration(const Token& token) {
  Condition condition = token.kind == Token::Kind::comment ? conditionOfComment(part(token.inside))
                                                           : conditionOfDeclaration(part(token.inside));
  if (condition.kind != Condition::Kind::revealed || condition.holds || lacksEndIf_)
    return events_.aside(Aside::markup, token.extent);
  Tokens ahead = tokens_;
  for (Token next = ahead.next(); next.kind != Token::Kind::end; next = ahead.next()) {
    if (next.kind == Token::Kind::startTag && (traitsOf(next.name) & kRaw) != 0) ahead.skipRaw(next);
    if (next.kind == Token::Kind::comment)
      condition = conditionOfComment(part(next.inside));
    else if (next.kind == Token::Kind::declaration)
      condition = conditionOfDeclaration(part(next.inside));
    else
      continue;
    if (condition.kind != Condition::Kind::end) continue;
    tokens_.goTo(next.extent.end);
    return events_.aside(Aside::label, {token.extent.begin, next.extent.end});
  }
  lacksEndIf_ = true;
  events_.aside(Aside::markup, token.extent);
}

}  // namespace pluvo::formats::html
