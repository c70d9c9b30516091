#pragma once

#include "names.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace pluvo::formats::html {

/// A stretch of bytes, by where it begins and ends in the file.
struct Extent {
  std::size_t begin = 0;
  std::size_t end = 0;
  bool empty() const { return begin >= end; }
  std::size_t size() const { return end - begin; }
};

struct Token {
  enum class Kind : std::uint8_t {
    text,
    startTag,
    endTag,
    comment,      ///< <!-- … -->
    declaration,  ///< <!…>, <?…> and what else no page shows
    end,
  };
  Kind kind = Kind::end;
  Name name = Name::unknown;
  bool closesItself = false;  ///< a tag that ends in "/>"
  Extent extent;
  Extent inside;  ///< of tags the name, of comments and declarations their text
};

/// Takes the bytes of a page apart as browsers do. Markup is ASCII, whatever the encoding. Only the content
/// of raw elements is told by skipRaw.
class Tokens {
 public:
  Tokens(std::string_view bytes, std::size_t from, std::size_t to) : bytes_(bytes), at_(from), to_(to) {}

  /// The next token. A tag that the bytes end in is none: they end in front of it.
  Token next();
  std::size_t at() const { return at_; }
  void goTo(std::size_t at) { at_ = at; }
  std::size_t end() const { return to_; }
  void endAt(std::size_t to) { to_ = to; }

  /// The contents of a raw element, up to its end tag or the end of the bytes. To be called after its start
  /// tag. The end tag is the next token.
  Extent skipRaw(const Token& startTag);
  /// Where a tag, a comment or a raw element begins that the bytes end in; the end where there is none.
  std::size_t unfinished() const { return unfinished_ < to_ ? unfinished_ : to_; }
  void forgetUnfinished() { unfinished_ = kNowhere; }

 private:
  Token tag(Token::Kind kind);
  Token declarationTo(std::size_t inside);
  Token comment();
  bool beginsMarkup(std::size_t at) const;
  std::size_t endOfTag(std::size_t at) const;
  bool isEndTagOf(std::size_t at, std::string_view name) const;
  std::size_t endOfScript(std::size_t at) const;
  std::size_t find(char c, std::size_t from) const;
  std::string_view part(std::size_t from, std::size_t count) const {
    return from >= to_ ? std::string_view() : bytes_.substr(from, count < to_ - from ? count : to_ - from);
  }

  std::string_view bytes_;
  std::size_t at_;
  std::size_t to_;
  static constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);
  std::size_t unfinished_ = kNowhere;
};

/// The attributes of a tag that mean something here, as they stand in the file; of equal names the first.
struct Attributes {
  std::string_view style, cssClass, id, name, href, charset, type, httpEquiv, content, align, dir, alt, title,
      bgcolor;
  bool hasId = false;
  bool hasName = false;
  bool hasHref = false;
  bool hasOthers = false;  ///< than style
};

/// Of the bytes of a tag.
Attributes attributesOf(std::string_view tag);

/// Calls visit(name, value, extent) for each attribute of a tag; the extent lies in the tag, and has the
/// blanks in front.
template <class Visit>
void forEachAttribute(std::string_view tag, Visit visit);

constexpr bool isBlank(char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r' || c == '\f'; }
constexpr bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }

template <class Visit>
void forEachAttribute(std::string_view tag, Visit visit) {
  std::size_t at = 1;
  while (at < tag.size() && !isBlank(tag[at]) && tag[at] != '/' && tag[at] != '>') ++at;
  while (at < tag.size() && tag[at] != '>') {
    const std::size_t begin = at;
    while (at < tag.size() && (isBlank(tag[at]) || tag[at] == '/')) ++at;
    if (at >= tag.size() || tag[at] == '>') return;
    const std::size_t nameBegin = at++;
    while (at < tag.size() && !isBlank(tag[at]) && tag[at] != '/' && tag[at] != '>' && tag[at] != '=') ++at;
    const std::string_view name = tag.substr(nameBegin, at - nameBegin);
    std::size_t sign = at;
    while (sign < tag.size() && isBlank(tag[sign])) ++sign;
    std::string_view value;
    if (sign < tag.size() && tag[sign] == '=') {
      at = sign + 1;
      while (at < tag.size() && isBlank(tag[at])) ++at;
      if (at < tag.size() && (tag[at] == '"' || tag[at] == '\'')) {
        const std::size_t close = tag.find(tag[at], at + 1);
        const std::size_t end = close == tag.npos ? tag.size() : close;
        value = tag.substr(at + 1, end - at - 1);
        at = end < tag.size() ? end + 1 : end;
      } else {
        const std::size_t valueBegin = at;
        while (at < tag.size() && !isBlank(tag[at]) && tag[at] != '>') ++at;
        value = tag.substr(valueBegin, at - valueBegin);
      }
    }
    visit(name, value, Extent{begin, at});
  }
}

}  // namespace pluvo::formats::html
