#include "page.h"

#include "base/ascii.h"
#include "base/utf.h"
#include "errors/document_error.h"
#include "style.h"
#include "tokens.h"
#include "utf16_bytes.h"

#include <algorithm>
#include <utility>

namespace pluvo::formats::html {

namespace {

using code_pages::Encoding;
using errors::DocumentError;
using errors::Problem;
using namespace std::string_view_literals;

constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

std::string_view viewOf(base::ByteSpan bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// Whether bytes are UTF-8, and not ASCII alone.
bool isUtf8BeyondAscii(const std::vector<base::ByteSpan>& pieces) {
  constexpr std::size_t kAtOnce = std::size_t{64} << 10U;
  constexpr std::size_t kLongest = 4;
  std::string bytes;  // the end of those before, which may be the beginning of a character
  bool isAscii = true;
  for (const base::ByteSpan piece : pieces) {
    for (std::size_t at = 0; at < piece.size(); at += kAtOnce) {
      bytes += viewOf(piece.subspan(at, std::min(kAtOnce, piece.size() - at)));
      isAscii = isAscii && std::ranges::all_of(bytes, [](char c) { return c >= 0; });
      bytes.erase(0, base::wellFormedLength(bytes));
      if (bytes.size() >= kLongest) return false;
    }
  }
  return bytes.empty() && !isAscii;
}

/// Where the first tags end that come before all text.
std::size_t frontOf(std::string_view bytes) {
  Tokens tokens(bytes, 0, bytes.size());
  std::size_t front = 0;
  for (Token token = tokens.next(); token.kind != Token::Kind::end; token = tokens.next()) {
    const std::string_view inside = bytes.substr(token.inside.begin, token.inside.size());
    const bool isBlank = token.kind == Token::Kind::text && withoutBlanks(inside).empty();
    const bool isDeclaration =
        token.kind == Token::Kind::declaration &&
        (base::startsWithIgnoringAsciiCase(inside, "doctype") || inside.starts_with('?'));
    const bool isPage =
        token.kind == Token::Kind::startTag && (token.name == Name::html || token.name == Name::head);
    if (!isBlank && !isDeclaration && !isPage) break;
    if (!isBlank) front = token.extent.end;
  }
  return front;
}

}  // namespace

Page::Page(base::Bytes file) : file_(std::move(file)) {
  const std::string_view all = viewOf(file_.view);
  if (all.starts_with("\xFF\xFE\0\0"sv) || all.starts_with("\0\0\xFE\xFF"sv))
    throw DocumentError(Problem::encoding,
                        "Pages in the encoding UTF-32 are not read here; save it as UTF-8.");
  const bool isLittle = all.starts_with(kLittleMark);
  if (isLittle || all.starts_with(kBigMark)) {
    converted_ = utf8Of(all.substr(kLittleMark.size()), isLittle);
    bytes_ = converted_;
    markLength_ = kLittleMark.size();
    charset_ = {{isLittle ? Encoding::utf16Little : Encoding::utf16Big, nullptr},
                isLittle ? "UTF-16LE" : "UTF-16BE",
                true};
    return;
  }
  bytes_ = all;
  if (all.size() > 3 && ((all[0] == '<' && all[1] == '\0') || (all[0] == '\0' && all[1] == '<')))
    throw DocumentError(Problem::encoding,
                        "The page is in UTF-16 and does not begin with a byte order mark; save it as UTF-8.");
  if (all.starts_with(kUtf8Mark)) {
    markLength_ = kUtf8Mark.size();
    bytes_.remove_prefix(markLength_);
    charset_ = {{Encoding::utf8, nullptr}, "UTF-8", true};
  } else if (auto charset = declaredCharset(bytes_)) {
    charset_ = *std::move(charset);
  } else if (base::wellFormedLength(bytes_) == bytes_.size()) {
    charset_ = {{Encoding::utf8, nullptr}, "UTF-8", false};
  } else {
    charset_ = {{Encoding::windows1252, nullptr}, "Windows-1252", false};
  }
}

void Page::write(const std::vector<base::ByteSpan>& pieces, base::Output& out) const {
  out.write(file_.view.first(markLength_));
  if (!code_pages::isUtf16(charset_.coding.encoding)) {
    return writeDeclared(pieces, out);
  }
  Utf16Output units(charset_.coding.encoding == Encoding::utf16Little, out);
  for (const base::ByteSpan piece : pieces) units.write(piece);
  units.finish();
  if (file_.view.size() % 2 == 1) out.write(file_.view.last(1));
}

/// Bytes that were no UTF-8 may be some without those that went. The page says then what it is.
void Page::writeDeclared(const std::vector<base::ByteSpan>& pieces, base::Output& out) const {
  constexpr std::string_view kDeclaration = "<meta charset=windows-1252>";
  const bool wasNoUtf8 = !charset_.isDeclared && charset_.coding.encoding == Encoding::windows1252;
  std::size_t front = wasNoUtf8 && isUtf8BeyondAscii(pieces) ? frontOf(bytes_) : kNowhere;
  for (base::ByteSpan piece : pieces) {
    if (front <= piece.size()) {
      out.write(piece.first(front));
      out.write({reinterpret_cast<const std::uint8_t*>(kDeclaration.data()), kDeclaration.size()});
      piece = piece.subspan(std::exchange(front, kNowhere));
    } else if (front != kNowhere) {
      front -= piece.size();
    }
    out.write(piece);
  }
}

}  // namespace pluvo::formats::html
