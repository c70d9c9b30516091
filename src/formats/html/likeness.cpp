#include "likeness.h"

#include "base/ascii.h"
#include "formats/signature.h"
#include "style.h"
#include "tokens.h"
#include "utf16_bytes.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace pluvo::formats::html {

Likeness likenessOf(base::ByteSpan file, bool isNamedSo) {
  const std::size_t looked = isNamedSo ? file.size() : std::size_t{1} << 16U;
  constexpr std::size_t kHead = 4096;
  if (signatureOf(file)) return Likeness::none;
  std::string_view bytes(reinterpret_cast<const char*>(file.data()), std::min(file.size(), looked));
  std::string converted;
  if (bytes.starts_with(kLittleMark) || bytes.starts_with(kBigMark)) {
    converted = utf8Of(bytes.substr(2), bytes.starts_with(kLittleMark));
    bytes = converted;
  }
  if (bytes.starts_with(kUtf8Mark)) bytes.remove_prefix(kUtf8Mark.size());
  if (bytes.starts_with("%!PS")) return Likeness::none;
  const std::string head = base::asciiLower(bytes.substr(0, kHead));
  if ((head.starts_with("mime-version:") || head.starts_with("from:")) &&
      head.find("mime-version:") != head.npos && head.find("multipart/related") != head.npos)
    return Likeness::webArchive;
  Tokens tokens(bytes, 0, bytes.size());
  bool isFirst = true;
  for (Token token = tokens.next(); token.kind != Token::Kind::end; token = tokens.next()) {
    const std::string_view inside = bytes.substr(token.inside.begin, token.inside.size());
    if (token.kind == Token::Kind::startTag) {
      return isFirst && base::equalsIgnoringAsciiCase(inside, "html") ? Likeness::certain : Likeness::byName;
    }
    if (token.kind == Token::Kind::endTag) return Likeness::byName;
    if (token.kind == Token::Kind::text) isFirst = isFirst && withoutBlanks(inside).empty();
    if (token.kind == Token::Kind::declaration && isFirst &&
        base::startsWithIgnoringAsciiCase(inside, "doctype html"))
      return Likeness::certain;
  }
  return Likeness::none;
}

}  // namespace pluvo::formats::html
