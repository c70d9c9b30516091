#include "charset.h"

#include "base/ascii.h"
#include "base/utf.h"
#include "code_pages/names.h"
#include "style.h"
#include "tokens.h"
#include "utf16_bytes.h"

#include <array>

namespace pluvo::formats::html {

namespace {

using code_pages::Encoding;
using namespace std::string_view_literals;

/// The names of encodings in pages, where they differ from the names elsewhere.
struct Label {
  std::string_view name;
  std::string_view labels;  ///< blanks around each
};
constexpr std::array kLabels = {
    Label{"Windows-1252", " iso-8859-1 iso8859-1 iso88591 latin1 latin-1 l1 us-ascii ascii cp819 x-cp1252 "},
    Label{"Windows-1254", " iso-8859-9 iso8859-9 latin5 l5 x-cp1254 "},
    Label{"Windows-874", " iso-8859-11 tis-620 dos-874 "},
    Label{"GB18030", " gb2312 gbk gb_2312-80 x-gbk chinese csgb2312 cp936 "},
    Label{"Shift_JIS", " x-sjis ms_kanji csshiftjis "},
    Label{"EUC-JP", " x-euc-jp "},
    Label{"EUC-KR", " ks_c_5601-1987 ks_c_5601-1989 korean ksc5601 ksc_5601 cseuckr "},
    Label{"Big5", " x-x-big5 cn-big5 csbig5 "},
    Label{"ISO-8859-8", " iso-8859-8-i logical visual "},
    Label{"Windows-1251", " x-cp1251 "},
    Label{"Windows-1250", " x-cp1250 "},
    Label{"macintosh", " x-mac-roman "},
    Label{"UTF-8", " unicode-1-1-utf-8 x-unicode20utf8 utf-16 utf-16le utf-16be "},
};

/// Bytes of ASCII may be parts of characters there, so that a tag could hide in one.
bool hidesMarkup(std::string_view label) {
  const auto begins = [&](std::string_view with) { return base::startsWithIgnoringAsciiCase(label, with); };
  return begins("iso-2022") || begins("csiso2022") || begins("hz") || begins("utf-7");
}

/// Nothing for an unknown label, after which browsers go on. One that says the file is no ASCII was read
/// as ASCII, and so is wrong.
std::optional<code_pages::Named> labelled(std::string_view label) {
  label = withoutBlanks(label);
  if (hidesMarkup(label)) throw code_pages::statefulEncoding(label);
  std::string name(label);
  const std::string wanted = " " + base::asciiLower(label) + " ";
  for (const Label& known : kLabels)
    if (known.labels.find(wanted) != std::string_view::npos) name = known.name;
  auto named = code_pages::knownEncoding(name);
  if (!named || code_pages::isUtf16(named->coding.encoding)) return std::nullopt;
  if (named->coding.page != nullptr && !named->coding.page->keepsAscii()) return std::nullopt;
  return named;
}

std::string_view valueAfter(std::string_view text, std::string_view name) {
  const std::string lower = base::asciiLower(text);
  std::size_t at = lower.find(name);
  if (at == lower.npos) return {};
  at += name.size();
  while (at < text.size() && isBlank(text[at])) ++at;
  if (at >= text.size() || text[at] != '=') return {};
  ++at;
  while (at < text.size() && (isBlank(text[at]) || text[at] == '"' || text[at] == '\'')) ++at;
  std::size_t end = at;
  while (end < text.size() && !isBlank(text[end]) && text[end] != ';' && text[end] != '"' &&
         text[end] != '\'')
    ++end;
  return text.substr(at, end - at);
}

}  // namespace

std::optional<Charset> declaredCharset(std::string_view bytes) {
  constexpr int kMostTokens = 10'000;
  std::optional<code_pages::Named> ofXml;
  Tokens tokens(bytes, 0, bytes.size());
  for (int i = 0; i < kMostTokens; ++i) {
    const Token token = tokens.next();
    if (token.kind == Token::Kind::end || token.name == Name::body) break;
    if (token.kind == Token::Kind::declaration && i < 2) {
      const std::string_view inside = bytes.substr(token.inside.begin, token.inside.size());
      if (base::startsWithIgnoringAsciiCase(inside, "?xml")) ofXml = labelled(valueAfter(inside, "encoding"));
    }
    if (token.kind != Token::Kind::startTag) continue;
    if ((traitsOf(token.name) & kRaw) != 0) tokens.skipRaw(token);
    if (token.name != Name::meta) continue;
    const Attributes attributes = attributesOf(bytes.substr(token.extent.begin, token.extent.size()));
    std::string_view label = attributes.charset;
    if (label.empty() && base::equalsIgnoringAsciiCase(withoutBlanks(attributes.httpEquiv), "content-type"))
      label = valueAfter(attributes.content, "charset");
    if (label.empty()) continue;
    if (const auto named = labelled(label)) return Charset{named->coding, named->name, true};
  }
  if (!ofXml) return std::nullopt;
  return Charset{ofXml->coding, ofXml->name, true};
}

Decoded firstOf(const Charset& charset, std::string_view bytes) {
  const auto lead = static_cast<std::uint8_t>(bytes[0]);
  switch (charset.coding.encoding) {
    case Encoding::windows1252:
      return {code_pages::unitOfWindows1252(lead), 1, true};
    case Encoding::codePage: {
      const code_pages::Character first =
          charset.coding.page->first({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
      if (!first.valid || code_pages::isStray(first.codePoint)) return {base::kReplacement, 1, false};
      return {first.codePoint, first.bytes, true};
    }
    default: {
      const base::Utf8Character first = base::firstOfUtf8(bytes);
      if (first.bytes > 0) return {first.point, first.bytes, true};
      const bool isHalf = code_pages::isUtf16(charset.coding.encoding) && isThreeByteSurrogate(bytes);
      return {base::kReplacement, static_cast<std::uint8_t>(isHalf ? 3 : 1), false};
    }
  }
}

bool appendEncoded(std::string& bytes, char32_t point, const Charset& charset) {
  if (point < 0x80) {
    bytes += static_cast<char>(point);
    return true;
  }
  if (!charset.isDeclared || base::isSurrogate(point)) return false;
  switch (charset.coding.encoding) {
    case Encoding::windows1252: {
      if (point > 0xFFFF || (point >= 0x80 && point < 0xA0)) return false;
      const auto byte = code_pages::windows1252Of(static_cast<char16_t>(point));
      if (byte) bytes += static_cast<char>(*byte);
      return byte.has_value();
    }
    case Encoding::codePage: {
      const auto encoded = charset.coding.page->encoded(point);
      if (!encoded) return false;
      for (std::size_t i = 0; i < encoded->count; ++i) bytes += static_cast<char>(encoded->bytes[i]);
      return true;
    }
    default:
      base::appendUtf8(bytes, point);
      return true;
  }
}

}  // namespace pluvo::formats::html
