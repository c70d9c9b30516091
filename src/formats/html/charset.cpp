#include "charset.h"

#include "base/ascii.h"
#include "base/utf.h"
#include "code_pages/names.h"
#include "errors/document_error.h"
#include "formats/signature.h"
#include "style.h"
#include "tokens.h"

#include <algorithm>
#include <array>

namespace pluvo::formats::html {

namespace {

using code_pages::Encoding;
using errors::DocumentError;
using errors::Problem;
using namespace std::string_view_literals;

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kLittleMark = "\xFF\xFE";
constexpr std::string_view kBigMark = "\xFE\xFF";

std::string_view viewOf(base::ByteSpan bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// What pages call encodings, where that is not their name elsewhere.
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

/// The encoding of the first tag that names one in front of the body, or of an XML declaration.
std::optional<code_pages::Named> declared(std::string_view bytes) {
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
    if (auto named = labelled(label)) return named;
  }
  return ofXml;
}

char16_t unitAt(std::string_view bytes, std::size_t at, bool isLittle) {
  const auto first = static_cast<unsigned char>(bytes[at]);
  const auto second = static_cast<unsigned char>(bytes[at + 1]);
  return static_cast<char16_t>(isLittle ? second << 8 | first : first << 8 | second);
}

/// A last byte that is half of a unit is left out.
std::string utf8Of(std::string_view bytes, bool isLittle) {
  std::string text;
  text.reserve(bytes.size() / 2);
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    const char16_t unit = unitAt(bytes, at, isLittle);
    const char16_t next = at + 3 < bytes.size() ? unitAt(bytes, at + 2, isLittle) : u'\0';
    const bool isPair = base::isHighSurrogate(unit) && base::isLowSurrogate(next);
    base::appendUtf8(text, isPair ? base::joinSurrogates(unit, next) : unit);
    if (isPair) at += 2;
  }
  return text;
}

bool isThreeByteSurrogate(std::string_view bytes) {
  return bytes.size() >= 3 && bytes[0] == '\xED' && static_cast<unsigned char>(bytes[1]) >= 0xA0 &&
         base::isUtf8Follower(bytes[1]) && base::isUtf8Follower(bytes[2]);
}

/// Turns UTF-8 into UTF-16 of an order of bytes; a character may be divided between two pieces.
class Utf16Output {
 public:
  Utf16Output(bool isLittle, base::Output& out) : isLittle_(isLittle), out_(out) {}
  void write(base::ByteSpan piece) {
    rest_.append(viewOf(piece));
    convert(3);
  }
  void finish() {
    convert(0);
    flush();
  }

 private:
  void convert(std::size_t kept) {
    std::size_t at = 0;
    while (at + kept < rest_.size()) {
      const std::string_view bytes = std::string_view(rest_).substr(at);
      const base::Utf8Character first = base::firstOfUtf8(bytes);
      const bool isHalf = first.bytes == 0 && isThreeByteSurrogate(bytes);
      std::u16string units;
      base::appendUtf16(units, isHalf ? base::pointOfUtf8<3>(bytes.data()) : first.point);
      for (const char16_t unit : units) put(unit);
      at += isHalf ? 3 : std::max<std::size_t>(first.bytes, 1);
    }
    rest_.erase(0, at);
  }
  void put(char16_t unit) {
    const auto low = static_cast<std::uint8_t>(unit & 0xFFU);
    const auto high = static_cast<std::uint8_t>(unit >> 8U);
    units_.push_back(isLittle_ ? low : high);
    units_.push_back(isLittle_ ? high : low);
    constexpr std::size_t kAtOnce = 65536;
    if (units_.size() >= kAtOnce) flush();
  }
  void flush() {
    out_.write(units_);
    units_.clear();
  }

  bool isLittle_;
  base::Output& out_;
  std::string rest_;
  std::vector<std::uint8_t> units_;
};

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
  } else if (auto named = declared(bytes_)) {
    charset_ = {named->coding, named->name, true};
  } else if (base::wellFormedLength(bytes_) == bytes_.size()) {
    charset_ = {{Encoding::utf8, nullptr}, "UTF-8", false};
  } else {
    charset_ = {{Encoding::windows1252, nullptr}, "Windows-1252", false};
  }
}

void Page::write(const std::vector<base::ByteSpan>& pieces, base::Output& out) const {
  out.write(file_.view.first(markLength_));
  if (!code_pages::isUtf16(charset_.coding.encoding)) {
    for (const base::ByteSpan piece : pieces) out.write(piece);
    return;
  }
  Utf16Output units(charset_.coding.encoding == Encoding::utf16Little, out);
  for (const base::ByteSpan piece : pieces) units.write(piece);
  units.finish();
  if (file_.view.size() % 2 == 1) out.write(file_.view.last(1));
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

Likeness likenessOf(base::ByteSpan file, bool isNamedSo) {
  const std::size_t looked = isNamedSo ? file.size() : std::size_t{1} << 16U;
  constexpr std::size_t kHead = 4096;
  if (signatureOf(file)) return Likeness::none;
  std::string_view bytes = viewOf(file.first(std::min(file.size(), looked)));
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
