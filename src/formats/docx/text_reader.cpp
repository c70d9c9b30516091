#include "text_reader.h"

#include "base/utf.h"
#include "text_decoding.h"

#include <charconv>
#include <utility>

namespace pluvo::docx {

using xml::Token;

namespace {

/// The first element within tells a picture that floats from one in the line. Goes to the end of the drawing.
char16_t drawingCharacter(xml::Scanner& scanner, Token token) {
  if (token != Token::start) return text::kPicture;
  const std::size_t depth = scanner.depth();
  Token next = scanner.next();
  while (next == Token::text || next == Token::comment) next = scanner.next();
  const bool floats = opens(next) && nameOf(scanner) == Name::drawingAnchor;
  while (scanner.depth() >= depth) scanner.next();
  return floats ? text::kFloatingPicture : text::kPicture;
}

}  // namespace

bool understood(const xml::Scanner& scanner, std::string_view prefixes) {
  bool any = false;
  while (!prefixes.empty()) {
    const std::size_t blank = prefixes.find(' ');
    const std::string_view prefix = prefixes.substr(0, blank);
    prefixes = blank == std::string_view::npos ? std::string_view() : prefixes.substr(blank + 1);
    if (prefix.empty()) continue;
    const xml::NamespaceId space = scanner.namespaceOf(prefix);
    if (space != kWord14 && space != kWord15 && space != kDrawingKnown) return false;
    any = true;
  }
  return any;
}

char16_t characterOf(xml::Scanner& scanner, Name name, Token token) {
  switch (name) {
    case Name::tab:
    case Name::ptab:
      return text::kTab;
    case Name::cr:
      return text::kLineBreak;
    case Name::br: {
      const std::string type = valueOf(scanner, Name::type);
      if (type == "page") return text::kPageBreak;
      return type == "column" ? text::kColumnBreak : text::kLineBreak;
    }
    case Name::noBreakHyphen:
      return text::kNonBreakingHyphen;
    case Name::softHyphen:
      return text::kOptionalHyphen;
    case Name::sym: {
      const std::string code = valueOf(scanner, Name::charCode);
      unsigned unit = 0;
      std::from_chars(code.data(), code.data() + code.size(), unit, 16);
      const bool fit = unit >= 0x20 && unit < 0xFFFE && !base::isSurrogate(unit);
      return fit ? static_cast<char16_t>(unit) : u'(';
    }
    case Name::drawing:
      return drawingCharacter(scanner, token);
    case Name::pict:
    case Name::object:
    case Name::ruby:
    case Name::contentPart:
      return text::kPicture;
    default:
      return 0;
  }
}

const TextElement& TextReader::read(Token token) {
  TextElement& element = element_;
  element = {};
  element.tag = scanner_.qualifiedName();
  const bool preserved = walk_.preserves();
  element.extent = walk_.tokenExtent();
  units_.clear();
  tokens_ = 0;
  collect(token);
  const Offset inner = element.extent.end;
  element.extent.end = scanner_.end();
  if (!plain_.empty()) {
    tell(element, plain_, plainness_, preserved);
  } else {
    if (tokens_ == 1 && token_.end - token_.begin == units_.size()) {
      element.bytes = scanner_.bytes(token_.begin, token_.end);
    }
    if (!preserved) trimBlanks(units_, element.bytes);
    element.units = units_;
  }
  if (element.length() == 0) return element;
  // Where an element around preserves blanks, they could not be written without becoming text.
  if (!preserved && !walk_.stack.back().preserves)
    outerBlanks(scanner_.bytes(inner, scanner_.begin()), element.leading, element.trailing);
  return element;
}

void TextReader::tell(TextElement& element, std::string_view text, Plainness plainness, bool preserved) {
  const std::string_view plain = preserved ? text : withoutOuterBlanks(text);
  const bool isAscii = plainness == Plainness::ascii;
  if (isAscii || walk_.told == Told::bytes) {
    element.bytes = plain;
    element.count = isAscii ? plain.size() : unitsOf(plain);
    return;
  }
  units_.clear();
  appendUtf8(units_, plain);
  element.units = units_;
}

/// Adds the characters up to the end of the element just begun to units_. Where they are plain and alone, as
/// most are, plain_ has them instead.
void TextReader::collect(Token token) {
  plain_ = {};
  if (token != Token::start) return;
  for (Token next = scanner_.next(); next != Token::end; next = scanner_.next()) {
    if (next == Token::text) {
      ++tokens_;
      token_ = walk_.tokenExtent();
      const std::string_view bytes = scanner_.bytes(scanner_.begin(), scanner_.end());
      if (tokens_ == 1 && units_.empty()) plainness_ = plainnessOf(bytes);
      if (tokens_ == 1 && units_.empty() && plainness_ != Plainness::none) {
        plain_ = bytes;
        continue;
      }
      widen();
      appendUtf8(units_, bytes);
    }
    if (next == Token::cdata || next == Token::reference) widen();
    if (next == Token::cdata || next == Token::reference) tokens_ += 2;
    if (next == Token::cdata) appendUtf8(units_, scanner_.bytes(scanner_.innerBegin(), scanner_.innerEnd()));
    if (next == Token::reference) appendCodePoint(units_, scanner_.codePoint());
    if (next == Token::start) scanner_.skipElement();
  }
}

void TextReader::add(Token token) {
  collect(token);
  widen();
}

void TextReader::widen() {
  appendUtf8(units_, plain_);
  plain_ = {};
}

const std::u16string& TextReader::readGuide(Token token) {
  units_.clear();
  const std::size_t depth = scanner_.depth();
  while (token == Token::start) {
    const Token next = scanner_.next();
    if (next == Token::end && scanner_.depth() < depth) break;
    if (opens(next) && nameOf(scanner_) == Name::t) add(next);
  }
  return units_;
}

const TextReader::Alternative& TextReader::readAlternatives() {
  alternative_ = {};
  TextElement& element = alternative_.text;
  element.extent = walk_.tokenExtent();
  const std::size_t depth = scanner_.depth();
  std::size_t chosen = 0;  // the depth of the chosen one while within it
  bool any = false;
  units_.clear();
  for (Token token = scanner_.next(); token != Token::end || scanner_.depth() >= depth;
       token = scanner_.next()) {
    if (token == Token::end && scanner_.depth() < chosen) chosen = 0;
    if (!opens(token)) continue;
    const Name name = nameOf(scanner_);
    if (chosen == 0) {
      const bool take =
          !any && (name == Name::fallback ||
                   (name == Name::choice && understood(scanner_, valueOf(scanner_, Name::requires_))));
      if (take && token == Token::start) chosen = scanner_.depth();
      any = any || take;
      if (!take) walk_.skip(token);
    } else if (name == Name::t || name == Name::delText) {
      const bool preserved = walk_.preserves();
      std::u16string before = std::move(units_);
      units_.clear();
      add(token);
      std::string_view none;
      if (!preserved) trimBlanks(units_, none);
      units_ = before + units_;
    } else {
      const char16_t unit = characterOf(scanner_, name, token);
      if (unit == text::kPicture || unit == text::kFloatingPicture) alternative_.picture = unit;
      if (unit != 0) units_.push_back(unit);
      walk_.skip(token);
    }
  }
  element.extent.end = scanner_.end();
  element.units = units_;
  return alternative_;
}

}  // namespace pluvo::docx
