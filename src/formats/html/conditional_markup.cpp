#include "conditional_markup.h"

#include "conditions.h"

namespace pluvo::formats::html {

void ConditionalMarkup::comment(const Token& token) {
  const Condition condition = conditionOfComment(around_.in(token.inside));
  const bool isFinished = token.inside.end < token.extent.end;
  if (condition.kind == Condition::Kind::hidden && condition.holds && isFinished && !isInside()) {
    Inline element;
    element.name = Name::conditional;
    element.tag = {token.extent.begin, token.inside.begin + condition.contentFrom};
    element.tagName = {token.extent.begin, token.extent.begin};
    element.state = around_.inlines.state();
    if (around_.inlines.push(element)) {
      around_.applyState();
      end_ = token.extent.end;
      outerEnd_ = around_.tokens.end();
      around_.tokens.goTo(element.tag.end);
      around_.tokens.endAt(token.inside.begin + condition.contentTo);
      return around_.events.inlineTag(element.tag);
    }
  }
  if (condition.kind == Condition::Kind::revealed) return declaration(token);
  around_.events.aside(condition.kind == Condition::Kind::none ? Aside::comment : Aside::markup,
                       token.extent);
}

void ConditionalMarkup::leave() {
  const Extent close{around_.tokens.end(), end_};
  around_.inlines.closeThrough(Name::conditional);
  around_.applyState();
  around_.tokens.endAt(outerEnd_);
  around_.tokens.goTo(end_);
  around_.tokens.forgetUnfinished();
  end_ = 0;
  around_.events.inlineTag(close);
}

/// Markup under a condition that does not hold is passed by up to its end.
void ConditionalMarkup::declaration(const Token& token) {
  const std::string_view inside = around_.in(token.inside);
  Condition condition =
      token.kind == Token::Kind::comment ? conditionOfComment(inside) : conditionOfDeclaration(inside);
  if (condition.kind != Condition::Kind::revealed || condition.holds || lacksEndIf_)
    return around_.events.aside(Aside::markup, token.extent);
  Tokens ahead = around_.tokens;
  for (Token next = ahead.next(); next.kind != Token::Kind::end; next = ahead.next()) {
    if (next.kind == Token::Kind::startTag && (traitsOf(next.name) & kRaw) != 0) ahead.skipRaw(next);
    if (next.kind == Token::Kind::comment)
      condition = conditionOfComment(around_.in(next.inside));
    else if (next.kind == Token::Kind::declaration)
      condition = conditionOfDeclaration(around_.in(next.inside));
    else
      continue;
    if (condition.kind != Condition::Kind::end) continue;
    around_.tokens.goTo(next.extent.end);
    return around_.events.aside(Aside::label, {token.extent.begin, next.extent.end});
  }
  lacksEndIf_ = true;
  around_.events.aside(Aside::markup, token.extent);
}

}  // namespace pluvo::formats::html
