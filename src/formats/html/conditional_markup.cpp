#include "conditional_markup.h"

#include "conditions.h"

namespace pluvo::formats::html {

void ConditionalMarkup::comment(const Token& token) {
  const Condition condition = conditionOfComment(walk_.in(token.inside));
  const bool isFinished = token.inside.end < token.extent.end;
  if (condition.kind == Condition::Kind::hidden && condition.holds && isFinished && !isInside()) {
    Inline element;
    element.name = Name::conditional;
    element.tag = {token.extent.begin, token.inside.begin + condition.contentFrom};
    element.tagName = {token.extent.begin, token.extent.begin};
    element.state = walk_.inlines.state();
    if (walk_.inlines.push(element)) {
      walk_.applyState();
      end_ = token.extent.end;
      outerEnd_ = walk_.tokens.end();
      walk_.tokens.goTo(element.tag.end);
      walk_.tokens.endAt(token.inside.begin + condition.contentTo);
      return walk_.events.inlineTag(element.tag);
    }
  }
  if (condition.kind == Condition::Kind::revealed) return declaration(token);
  walk_.events.aside(condition.kind == Condition::Kind::none ? Aside::comment : Aside::markup, token.extent);
}

void ConditionalMarkup::leave() {
  const Extent close{walk_.tokens.end(), end_};
  walk_.inlines.closeThrough(Name::conditional);
  walk_.applyState();
  walk_.tokens.endAt(outerEnd_);
  walk_.tokens.goTo(end_);
  walk_.tokens.forgetUnfinished();
  end_ = 0;
  walk_.events.inlineTag(close);
}

/// Markup under a condition that does not hold is passed by up to its end.
void ConditionalMarkup::declaration(const Token& token) {
  const std::string_view inside = walk_.in(token.inside);
  Condition condition =
      token.kind == Token::Kind::comment ? conditionOfComment(inside) : conditionOfDeclaration(inside);
  if (condition.kind != Condition::Kind::revealed || condition.holds || lacksEndIf_)
    return walk_.events.aside(Aside::markup, token.extent);
  Tokens ahead = walk_.tokens;
  for (Token next = ahead.next(); next.kind != Token::Kind::end; next = ahead.next()) {
    if (next.kind == Token::Kind::startTag && (traitsOf(next.name) & kRaw) != 0) ahead.skipRaw(next);
    if (next.kind == Token::Kind::comment)
      condition = conditionOfComment(walk_.in(next.inside));
    else if (next.kind == Token::Kind::declaration)
      condition = conditionOfDeclaration(walk_.in(next.inside));
    else
      continue;
    if (condition.kind != Condition::Kind::end) continue;
    walk_.tokens.goTo(next.extent.end);
    return walk_.events.aside(Aside::label, {token.extent.begin, next.extent.end});
  }
  lacksEndIf_ = true;
  walk_.events.aside(Aside::markup, token.extent);
}

}  // namespace pluvo::formats::html
