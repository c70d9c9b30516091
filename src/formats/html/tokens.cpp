#include "tokens.h"

#include "base/ascii.h"

#include <array>
#include <cstring>

namespace pluvo::formats::html {

namespace {

constexpr std::size_t kAfterName = 1;

}  // namespace

std::size_t Tokens::find(char c, std::size_t from) const {
  if (from >= to_) return to_;
  const void* const found = std::memchr(bytes_.data() + from, c, to_ - from);
  return found == nullptr ? to_ : static_cast<std::size_t>(static_cast<const char*>(found) - bytes_.data());
}

bool Tokens::beginsMarkup(std::size_t at) const {
  if (at + 1 >= to_) return false;
  const char next = bytes_[at + 1];
  if (isLetter(next) || next == '!' || next == '?') return true;
  return next == '/' && at + 2 < to_;
}

Token Tokens::next() {
  if (at_ >= to_) return {Token::Kind::end, Name::unknown, false, {to_, to_}, {}};
  if (bytes_[at_] != '<' || !beginsMarkup(at_)) {
    const std::size_t begin = at_;
    at_ = find('<', at_ + 1);
    return {Token::Kind::text, Name::unknown, false, {begin, at_}, {begin, at_}};
  }
  const char next = bytes_[at_ + 1];
  if (isLetter(next)) return tag(Token::Kind::startTag);
  if (next == '?') return declarationTo(at_ + 1);
  if (next == '!') {
    if (part(at_ + 2, 2) == "--") return comment();
    return declarationTo(at_ + 2);
  }
  if (isLetter(bytes_[at_ + 2])) return tag(Token::Kind::endTag);
  return declarationTo(at_ + 2);
}

Token Tokens::declarationTo(std::size_t inside) {
  Token token{Token::Kind::declaration, Name::unknown, false, {at_, 0}, {inside, 0}};
  token.inside.end = find('>', inside);
  token.extent.end = token.inside.end < to_ ? token.inside.end + 1 : to_;
  if (token.inside.end >= to_) unfinished_ = token.extent.begin;
  at_ = token.extent.end;
  return token;
}

Token Tokens::comment() {
  Token token{Token::Kind::comment, Name::unknown, false, {at_, to_}, {at_ + 4, to_}};
  const std::size_t inside = at_ + 4;
  at_ = to_;
  if (part(inside, 1) == ">" || part(inside, 2) == "->") {
    at_ = inside + (bytes_[inside] == '>' ? 1 : 2);
    token.inside.end = inside;
    token.extent.end = at_;
    return token;
  }
  for (std::size_t dash = find('-', inside); dash < to_; dash = find('-', dash + 1)) {
    if (part(dash, 2) != "--") continue;
    const std::size_t close = part(dash + 2, 1) == "!" ? dash + 3 : dash + 2;
    if (part(close, 1) != ">") continue;
    at_ = close + 1;
    token.inside.end = dash;
    token.extent.end = at_;
    return token;
  }
  unfinished_ = token.extent.begin;
  return token;
}

/// Where the tag's ">" stands, as quotes allow it; the end of the bytes where there is none.
std::size_t Tokens::endOfTag(std::size_t at) const {
  enum class State : std::uint8_t { between, name, afterName, beforeValue, bare };
  for (State state = State::between; at < to_; ++at) {
    const char c = bytes_[at];
    if (c == '>') return at;
    switch (state) {
      case State::between:
      case State::afterName:
        if (isBlank(c) || (c == '/' && state == State::between)) break;
        if (c == '/')
          state = State::between;
        else if (c == '=' && state == State::afterName)
          state = State::beforeValue;
        else
          state = State::name;
        break;
      case State::name:
        if (isBlank(c))
          state = State::afterName;
        else if (c == '/')
          state = State::between;
        else if (c == '=')
          state = State::beforeValue;
        break;
      case State::beforeValue:
        if (isBlank(c)) break;
        if (c == '"' || c == '\'') {
          at = find(c, at + 1);
          state = State::between;
        } else {
          state = State::bare;
        }
        break;
      case State::bare:
        if (isBlank(c)) state = State::between;
        break;
    }
  }
  return to_;
}

Token Tokens::tag(Token::Kind kind) {
  Token token{kind, Name::unknown, false, {at_, 0}, {}};
  std::size_t end = at_ + (kind == Token::Kind::endTag ? 2 : 1);
  token.inside.begin = end;
  while (end < to_ && !isBlank(bytes_[end]) && bytes_[end] != '/' && bytes_[end] != '>') ++end;
  token.inside.end = end;
  const std::size_t close = end < to_ && bytes_[end] == '>' ? end : endOfTag(end);
  if (close >= to_) {
    unfinished_ = token.extent.begin;
    at_ = to_;
    return {Token::Kind::end, Name::unknown, false, {token.extent.begin, to_}, {}};
  }
  token.closesItself = bytes_[close - 1] == '/';
  token.extent.end = at_ = close + 1;
  token.name = nameOf(bytes_.substr(token.inside.begin, token.inside.size()));
  return token;
}

bool Tokens::isEndTagOf(std::size_t at, std::string_view name) const {
  if (part(at, 2) != "</" || !base::equalsIgnoringAsciiCase(part(at + 2, name.size()), name)) return false;
  const std::string_view after = part(at + 2 + name.size(), kAfterName);
  return !after.empty() && (isBlank(after[0]) || after[0] == '/' || after[0] == '>');
}

/// A script may hold "<!--", and within that the tags of a script.
std::size_t Tokens::endOfScript(std::size_t at) const {
  constexpr std::string_view kName = "script";
  bool escaped = false;
  bool twice = false;
  std::size_t dash = at;
  for (std::size_t open = find('<', at);; open = find('<', open + 1)) {
    // "-->" in front of it ends what "<!--" began.
    while (escaped) {
      const std::size_t close = bytes_.substr(0, open).find("-->", dash);
      if (close == std::string_view::npos) break;
      escaped = twice = false;
    }
    dash = open;
    if (open >= to_) return to_;
    if (!escaped && part(open, 4) == "<!--") {
      escaped = true;
      dash = open + 2;
    } else if (isEndTagOf(open, kName)) {
      if (!twice) return open;
      twice = false;
    } else if (escaped && !twice && base::equalsIgnoringAsciiCase(part(open + 1, kName.size()), kName)) {
      const std::string_view after = part(open + 1 + kName.size(), 1);
      twice = !after.empty() && (isBlank(after[0]) || after[0] == '/' || after[0] == '>');
    }
  }
}

Extent Tokens::skipRaw(const Token& startTag) {
  const std::size_t begin = at_;
  const std::string_view name = bytes_.substr(startTag.inside.begin, startTag.inside.size());
  if (startTag.name == Name::plaintext) {
    at_ = to_;
  } else if (startTag.name == Name::script) {
    at_ = endOfScript(at_);
  } else {
    at_ = find('<', at_);
    while (at_ < to_ && !isEndTagOf(at_, name)) at_ = find('<', at_ + 1);
  }
  if (at_ >= to_) unfinished_ = startTag.extent.begin;
  return {begin, at_};
}

Attributes attributesOf(std::string_view tag) {
  struct Wanted {
    std::string_view name;
    std::string_view Attributes::*value;
  };
  static constexpr std::array<Wanted, 14> kWanted = {{{"style", &Attributes::style},
                                                      {"class", &Attributes::cssClass},
                                                      {"id", &Attributes::id},
                                                      {"name", &Attributes::name},
                                                      {"href", &Attributes::href},
                                                      {"charset", &Attributes::charset},
                                                      {"type", &Attributes::type},
                                                      {"http-equiv", &Attributes::httpEquiv},
                                                      {"content", &Attributes::content},
                                                      {"align", &Attributes::align},
                                                      {"dir", &Attributes::dir},
                                                      {"alt", &Attributes::alt},
                                                      {"title", &Attributes::title},
                                                      {"bgcolor", &Attributes::bgcolor}}};
  Attributes attributes;
  std::uint32_t met = 0;
  forEachAttribute(tag, [&](std::string_view name, std::string_view value, const Extent&) {
    for (std::size_t i = 0; i < kWanted.size(); ++i) {
      if (!base::equalsIgnoringAsciiCase(name, kWanted[i].name)) continue;
      if ((met >> i & 1U) == 0) attributes.*kWanted[i].value = value;
      met |= 1U << i;
      attributes.hasOthers = attributes.hasOthers || i > 0;
      return;
    }
    attributes.hasOthers = true;
  });
  attributes.hasId = (met >> 2U & 1U) != 0;
  attributes.hasName = (met >> 3U & 1U) != 0;
  attributes.hasHref = (met >> 4U & 1U) != 0;
  return attributes;
}

}  // namespace pluvo::formats::html
