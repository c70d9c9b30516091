#include "body_walker.h"

#include "model/content_builder.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <string>

namespace pluvo::docx {

using xml::Token;

namespace {

bool opens(Token token) { return token == Token::start || token == Token::empty; }

bool isMarker(Name name) { return name >= Name::bookmarkStart && name <= Name::customXmlMoveToRangeEnd; }

bool isBlank(char16_t unit) { return unit == u' ' || unit == u'\t'; }

void appendCodePoint(std::u16string& units, char32_t c) {
  if (c >= 0x10000) {
    units.push_back(static_cast<char16_t>(0xD7C0 + (c >> 10U)));
    units.push_back(static_cast<char16_t>(0xDC00 + (c & 0x3FFU)));
  } else {
    units.push_back(c == u'\n' || c == u'\r' ? u' ' : static_cast<char16_t>(c));
  }
}

constexpr std::size_t kBlock = 8;

/// Most text, a block at a time.
bool isPrintableAscii(const char* block) {
  constexpr std::uint64_t kEach = 0x0101010101010101;
  std::uint64_t bytes = 0;
  std::memcpy(&bytes, block, kBlock);
  return ((bytes | (bytes - kEach * 0x20)) & (kEach * 0x80)) == 0;
}

/// Bytes that the scanner has found to be UTF-8. A line end is a blank.
void appendUtf8(std::u16string& units, std::string_view bytes) {
  const std::size_t start = units.size();
  units.resize(start + bytes.size());
  char16_t* out = units.data() + start;
  for (std::size_t i = 0; i < bytes.size();) {
    while (bytes.size() - i >= kBlock && isPrintableAscii(bytes.data() + i)) {
      for (std::size_t n = 0; n < kBlock; ++n) out[n] = static_cast<std::uint8_t>(bytes[i + n]);
      out += kBlock;
      i += kBlock;
    }
    if (i == bytes.size()) break;
    const auto lead = static_cast<std::uint8_t>(bytes[i]);
    const auto trail = [&](std::size_t n) { return static_cast<std::uint32_t>(bytes[i + n]) & 0x3FU; };
    if (lead >= 0x20 && lead < 0x80) {
      *out++ = lead;
      ++i;
    } else if (lead < 0x20) {
      const bool pair = lead == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n';
      *out++ = lead == '\t' ? u'\t' : u' ';
      i += pair ? 2 : 1;
    } else if (lead < 0xE0) {
      *out++ = static_cast<char16_t>((lead & 0x1FU) << 6U | trail(1));
      i += 2;
    } else if (lead < 0xF0) {
      *out++ = static_cast<char16_t>((lead & 0x0FU) << 12U | trail(1) << 6U | trail(2));
      i += 3;
    } else {
      const std::uint32_t c = (lead & 0x07U) << 18U | trail(1) << 12U | trail(2) << 6U | trail(3);
      *out++ = static_cast<char16_t>(0xD7C0 + (c >> 10U));
      *out++ = static_cast<char16_t>(0xDC00 + (c & 0x3FFU));
      i += 4;
    }
  }
  units.resize(static_cast<std::size_t>(out - units.data()));
}

void trim(std::u16string& units, std::string_view& bytes) {
  const auto last = std::find_if_not(units.rbegin(), units.rend(), isBlank);
  const auto behind = static_cast<std::size_t>(last - units.rbegin());
  units.resize(units.size() - behind);
  const auto front =
      static_cast<std::size_t>(std::find_if_not(units.begin(), units.end(), isBlank) - units.begin());
  units.erase(0, front);
  if (!bytes.empty()) bytes = bytes.substr(front, units.size());
}

}  // namespace

BodyWalker::BodyWalker(files::ByteSpan part, const std::string& partName, BodyEvents& events)
    : scanner_(part, vocabulary(), partName), events_(events) {}

void BodyWalker::resumeAt(Offset offset, Position position) {
  scanner_.resumeAt(offset);
  position_ = position;
  stack_.back().endsWithParagraph = false;
}

bool BodyWalker::step() {
  const Token token = scanner_.next();
  if (token == Token::finish) {
    if (!finished_) throw scanner_.error("it has no text body");
    return false;
  }
  if (opens(token)) {
    startElement(token);
  } else if (token == Token::end && !stack_.empty()) {
    leave(tokenExtent());
  }
  return true;
}

void BodyWalker::startElement(Token token) {
  const Name name = nameOf(scanner_);
  if (stack_.empty()) {
    if (name != Name::document) throw scanner_.error("it is no WordprocessingML document");
    stack_.push_back({{name, tokenExtent(), token == Token::empty}, Context::root});
    return;
  }
  const Context context = stack_.back().within;
  if (context == Context::run) return startInRun(name, token);
  if (isMarker(name) && context != Context::root) {
    Marker marker{name, tokenExtent(), attributeValue(Name::id), attributeValue(Name::name)};
    skip(token);
    marker.extent.end = scanner_.end();
    return events_.marker(marker);
  }
  switch (name) {
    case Name::body:
      if (context == Context::root && !finished_) return enter(name, token, Context::blocks);
      break;
    case Name::p:
      if (context == Context::blocks) return enter(name, token, Context::inlines);
      break;
    case Name::tbl:
      if (context == Context::blocks) return enter(name, token, Context::table);
      break;
    case Name::tr:
      if (context == Context::table) return enter(name, token, Context::row);
      break;
    case Name::tc:
      if (context == Context::row) return enter(name, token, Context::blocks);
      break;
    case Name::r:
      if (context == Context::inlines) return enter(name, token, Context::run);
      break;
    case Name::sdt:
    case Name::sdtContent:
    case Name::customXml:
    case Name::ins:
    case Name::del:
    case Name::moveFrom:
    case Name::moveTo:
      if (context != Context::root) return enter(name, token, context);
      break;
    case Name::hyperlink:
    case Name::smartTag:
    case Name::dir:
    case Name::bdo:
      if (context == Context::inlines) return enter(name, token, context);
      break;
    case Name::alternateContent:
    case Name::choice:
    case Name::fallback:
      if (context != Context::root) return enterAlternative(name, token, context);
      break;
    case Name::fldSimple:
      if (context == Context::inlines) return enterSimpleField(token);
      break;
    case Name::oMath:
    case Name::oMathPara:
      if (context == Context::inlines) return single(text::kPicture, token, name);
      break;
    case Name::pPr:
      if (stack_.back().tag.name == Name::p) return readProperties(name, token);
      break;
    default:
      break;
  }
  skip(token);
}

void BodyWalker::enter(Name name, Token token, Context within) {
  stack_.push_back({{name, tokenExtent(), token == Token::empty}, within});
  events_.open(stack_.back().tag);
  if (token == Token::empty) leave({scanner_.end(), scanner_.end()});
}

void BodyWalker::leave(Extent endTag) {
  const Open left = stack_.back();
  switch (left.tag.name) {
    case Name::p:
      events_.paragraphMark(endTag);
      advance(1);
      break;
    case Name::body:
    case Name::tc:
      if (!left.endsWithParagraph) {
        events_.missingParagraph(left.tag.name, endTag);
        advance(1);
      }
      finished_ = finished_ || left.tag.name == Name::body;
      break;
    case Name::tr:
      if (left.hasCells) {
        events_.rowMark(endTag);
        advance(1);
      }
      break;
    case Name::fldSimple:
      if (!fields_.empty()) {
        fields_.pop_back();
        events_.endSimpleField(endTag);
        advance(1);
      }
      break;
    case Name::alternateContent:
      alternatives_.pop_back();
      break;
    case Name::document:
      stack_.pop_back();
      return;
    default:
      break;
  }
  stack_.pop_back();
  if (left.tag.name == Name::p || left.tag.name == Name::tbl) {
    blockContainer().endsWithParagraph = left.tag.name == Name::p;
  } else if (left.tag.name == Name::tc) {
    const auto row = std::find_if(stack_.rbegin(), stack_.rend(),
                                  [](const Open& open) { return open.tag.name == Name::tr; });
    row->hasCells = true;
  }
  events_.close(left.tag, endTag);
}

BodyWalker::Open& BodyWalker::blockContainer() {
  return *std::find_if(stack_.rbegin(), stack_.rend(), [](const Open& open) {
    return open.tag.name == Name::tc || open.tag.name == Name::body;
  });
}

void BodyWalker::startInRun(Name name, Token token) {
  switch (name) {
    case Name::rPr:
      if (stack_.back().tag.name == Name::r) return readProperties(name, token);
      break;
    case Name::t:
    case Name::delText:
      return textElement(token);
    case Name::instrText:
    case Name::delInstrText:
      if (inCode()) return textElement(token);
      break;
    case Name::fldChar:
      return fieldCharacter(token);
    case Name::footnoteReference:
    case Name::endnoteReference: {
      const std::string id = attributeValue(Name::id);
      return single(text::kNoteReference, token, name, id);
    }
    case Name::commentReference: {
      const std::string id = attributeValue(Name::id);
      return single(text::kCommentReference, token, name, id);
    }
    case Name::alternateContent:
      return alternativeInRun();
    default: {
      const Offset begin = scanner_.begin();
      if (const char16_t unit = characterOf(name, token); unit != 0)
        return singleFrom(begin, unit, token, name, {});
      break;
    }
  }
  skip(token);
}

char16_t BodyWalker::characterOf(Name name, Token token) {
  switch (name) {
    case Name::tab:
    case Name::ptab:
      return text::kTab;
    case Name::cr:
      return text::kLineBreak;
    case Name::br: {
      const std::string type = attributeValue(Name::type);
      if (type == "page") return text::kPageBreak;
      return type == "column" ? text::kColumnBreak : text::kLineBreak;
    }
    case Name::noBreakHyphen:
      return text::kNonBreakingHyphen;
    case Name::softHyphen:
      return text::kOptionalHyphen;
    case Name::sym: {
      const std::string code = attributeValue(Name::charCode);
      unsigned unit = 0;
      std::from_chars(code.data(), code.data() + code.size(), unit, 16);
      const bool fit = unit >= 0x20 && unit < 0xFFFE && (unit < 0xD800 || unit > 0xDFFF);
      return fit ? static_cast<char16_t>(unit) : u'(';
    }
    case Name::drawing:
      return drawingCharacter(token);
    case Name::pict:
    case Name::object:
    case Name::ruby:
    case Name::contentPart:
      return text::kPicture;
    default:
      return 0;
  }
}

/// The first element within tells a picture that floats from one in the line. Goes to the end of the drawing.
char16_t BodyWalker::drawingCharacter(Token token) {
  if (token != Token::start) return text::kPicture;
  const std::size_t depth = scanner_.depth();
  Token next = scanner_.next();
  while (next == Token::text || next == Token::comment) next = scanner_.next();
  const bool floats = opens(next) && nameOf(scanner_) == Name::drawingAnchor;
  while (scanner_.depth() >= depth) scanner_.next();
  return floats ? text::kFloatingPicture : text::kPicture;
}

void BodyWalker::single(char16_t unit, Token token, Name name, std::string_view reference) {
  singleFrom(scanner_.begin(), unit, token, name, reference);
}

void BodyWalker::singleFrom(Offset begin, char16_t unit, Token token, Name name, std::string_view reference) {
  skip(token);
  events_.character(unit, {begin, scanner_.end()}, name, reference);
  advance(1);
}

void BodyWalker::fieldCharacter(Token token) {
  const std::string type = attributeValue(Name::fldCharType);
  if (type == "begin") {
    single(text::kFieldBegin, token, Name::fldChar);
    openField({});
  } else if (type == "separate" && inCode()) {
    single(text::kFieldSeparator, token, Name::fldChar);
    fields_.back().inResult = true;
  } else if (type == "end" && !fields_.empty() && !fields_.back().simple) {
    single(text::kFieldEnd, token, Name::fldChar);
    fields_.pop_back();
  } else {
    skip(token);
  }
}

void BodyWalker::openField(OpenField field) {
  if (fields_.size() == model::ContentBuilder::kDeepest) {
    throw files::DocumentError(files::Problem::tooLarge, "The document has fields nested " +
                                                             std::to_string(model::ContentBuilder::kDeepest) +
                                                             " deep, which is more than is worked on.");
  }
  fields_.push_back(field);
}

void BodyWalker::enterSimpleField(Token token) {
  units_.clear();
  appendUtf8(units_, attributeValue(Name::instr));
  openField({true, true});
  stack_.push_back({{Name::fldSimple, tokenExtent(), token == Token::empty}, Context::inlines});
  const Tag tag = stack_.back().tag;
  events_.simpleField(tag, units_);
  advance(units_.size() + 2);
  events_.open(tag);
  if (token == Token::empty) leave({scanner_.end(), scanner_.end()});
}

void BodyWalker::textElement(Token token) {
  TextElement element;
  element.tag = scanner_.qualifiedName();
  const xml::Attribute* const space = attribute(scanner_, Name::space);
  const bool preserved = space != nullptr && scanner_.rawValue(*space) == "preserve";
  element.extent = tokenExtent();
  units_.clear();
  textTokens_ = 0;
  collectText(token);
  element.extent.end = scanner_.end();
  if (textTokens_ == 1 && textToken_.end - textToken_.begin == units_.size()) {
    element.bytes = scanner_.bytes(textToken_.begin, textToken_.end);
  }
  if (!preserved) trim(units_, element.bytes);
  if (units_.empty()) return;
  element.units = units_;
  events_.text(element);
  advance(units_.size());
}

/// The characters up to the end of the element just begun, added to units_.
void BodyWalker::collectText(Token token) {
  if (token != Token::start) return;
  for (Token next = scanner_.next(); next != Token::end; next = scanner_.next()) {
    if (next == Token::text) {
      ++textTokens_;
      textToken_ = tokenExtent();
      appendUtf8(units_, scanner_.bytes(scanner_.begin(), scanner_.end()));
    }
    if (next == Token::cdata || next == Token::reference) textTokens_ += 2;
    if (next == Token::cdata) appendUtf8(units_, scanner_.bytes(scanner_.innerBegin(), scanner_.innerEnd()));
    if (next == Token::reference) appendCodePoint(units_, scanner_.codePoint());
    if (next == Token::start) scanner_.skipElement();
  }
}

void BodyWalker::enterAlternative(Name name, Token token, Context within) {
  if (name == Name::alternateContent) {
    alternatives_.push_back(false);
    return enter(name, token, within);
  }
  if (stack_.back().tag.name != Name::alternateContent) return skip(token);
  if (!alternatives_.back() && (name == Name::fallback || understood(attributeValue(Name::requires_)))) {
    alternatives_.back() = true;
    return enter(name, token, within);
  }
  Extent extent = tokenExtent();
  skip(token);
  extent.end = scanner_.end();
  events_.passedAlternative(extent);
}

bool BodyWalker::understood(std::string_view prefixes) const {
  bool any = false;
  while (!prefixes.empty()) {
    const std::size_t blank = prefixes.find(' ');
    const std::string_view prefix = prefixes.substr(0, blank);
    prefixes = blank == std::string_view::npos ? std::string_view() : prefixes.substr(blank + 1);
    if (prefix.empty()) continue;
    const xml::NamespaceId space = scanner_.namespaceOf(prefix);
    if (space != kWord14 && space != kWord15 && space != kDrawingKnown) return false;
    any = true;
  }
  return any;
}

/// Alternatives within a run are one element to the text: what the chosen one holds.
void BodyWalker::alternativeInRun() {
  TextElement element;
  element.extent = tokenExtent();
  const std::size_t depth = scanner_.depth();
  std::size_t chosen = 0;  // the depth of the chosen one while within it
  bool any = false;
  char16_t picture = 0;
  units_.clear();
  for (Token token = scanner_.next(); token != Token::end || scanner_.depth() >= depth;
       token = scanner_.next()) {
    if (token == Token::end && scanner_.depth() < chosen) chosen = 0;
    if (!opens(token)) continue;
    const Name name = nameOf(scanner_);
    if (chosen == 0) {
      const bool take = !any && (name == Name::fallback ||
                                 (name == Name::choice && understood(attributeValue(Name::requires_))));
      if (take && token == Token::start) chosen = scanner_.depth();
      any = any || take;
      if (!take) skip(token);
    } else if (name == Name::t || name == Name::delText) {
      collectText(token);
    } else {
      const char16_t unit = characterOf(name, token);
      if (unit == text::kPicture || unit == text::kFloatingPicture) picture = unit;
      if (unit != 0) units_.push_back(unit);
      skip(token);
    }
  }
  element.extent.end = scanner_.end();
  if (picture != 0) {
    events_.character(picture, element.extent, Name::drawing, {});
    advance(1);
  } else if (!units_.empty()) {
    element.units = units_;
    events_.text(element);
    advance(units_.size());
  }
}

void BodyWalker::readProperties(Name kind, Token token) {
  properties_ = {};
  properties_.whole = tokenExtent();
  if (token == Token::start && kind == Name::rPr) {
    readLook(properties_.look, token);
  } else if (token == Token::start) {
    const std::size_t depth = scanner_.depth();
    for (Token next = scanner_.next(); next != Token::end || scanner_.depth() >= depth;
         next = scanner_.next()) {
      if (!opens(next)) continue;
      const Name name = nameOf(scanner_);
      if (name == Name::pStyle) properties_.style = attributeValue(Name::val);
      properties_.hasSection = properties_.hasSection || name == Name::sectPr;
      if (name == Name::rPr) {
        readLook(properties_.look, next);
      } else {
        skip(next);
      }
    }
  }
  properties_.whole.end = scanner_.end();
  events_.properties(kind, properties_);
}

void BodyWalker::readLook(RunLook& look, Token token) {
  if (token != Token::start) return;
  if (const LookMemory::Known* known = looks_.recall(scanner_.ahead(), scanner_.scope())) {
    look = known->look;
    scanner_.resumeAt(scanner_.end() + static_cast<Offset>(known->inner));
    scanner_.next();
    return;
  }
  const std::uint32_t scope = scanner_.scope();
  const Offset begin = scanner_.end();
  look = {};
  scanLook(look);
  looks_.remember({scanner_.bytes(begin, scanner_.end()), scanner_.begin() - begin, scope, look});
}

/// To the end of the element just begun.
void BodyWalker::scanLook(RunLook& look) {
  const std::size_t depth = scanner_.depth();
  for (Token next = scanner_.next(); next != Token::end || scanner_.depth() >= depth;
       next = scanner_.next()) {
    if (!opens(next)) continue;
    switch (nameOf(scanner_)) {
      case Name::highlight:
        look.highlight = highlightIndex(attributeValue(Name::val));
        break;
      case Name::vanish:
        look.hidden = attribute(scanner_, Name::val) == nullptr || isOn(attributeValue(Name::val))
                          ? RunLook::Hidden::yes
                          : RunLook::Hidden::no;
        break;
      case Name::rStyle:
        look.style = attributeValue(Name::val);
        break;
      default:
        break;
    }
    skip(next);
  }
}

std::string BodyWalker::attributeValue(Name name) const {
  const xml::Attribute* const found = attribute(scanner_, name);
  return found == nullptr ? std::string() : scanner_.value(*found);
}

void BodyWalker::skip(Token token) {
  if (token == Token::start) scanner_.skipElement();
}

void BodyWalker::advance(std::size_t count) {
  if (count > static_cast<std::size_t>(text::kMaxLength - position_)) {
    throw files::DocumentError(files::Problem::tooLarge, "The document's text is too long to be worked on.");
  }
  position_ += static_cast<Position>(count);
}

}  // namespace pluvo::docx
