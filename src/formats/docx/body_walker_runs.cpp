// What stands in runs: text, the elements that are characters, and fields.
#include "base/utf.h"
#include "body_walker.h"
#include "document/content_builder.h"
#include "text_decoding.h"

#include <algorithm>
#include <charconv>

namespace pluvo::docx {

using xml::Token;

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
    case Name::endnoteReference:
      return reference(text::kNoteReference, token, name);
    case Name::commentReference:
      return reference(text::kCommentReference, token, name);
    case Name::alternateContent: {
      const Offset begin = scanner_.begin();
      events_->aside(begin);
      if (token == Token::start) alternativeInRun();
      if (!walksEveryStory()) return;
      scanner_.resumeAt(begin);
      return enterOutside(name, scanner_.next());
    }
    case Name::ruby:
      return ruby(token);
    case Name::drawing:
    case Name::pict:
    case Name::object:
    case Name::contentPart:
      events_->aside(scanner_.begin());
      if (walksEveryStory()) return descend(name, token);
      [[fallthrough]];
    default: {
      const Offset begin = scanner_.begin();
      if (const char16_t unit = characterOf(name, token); unit != 0)
        return singleFrom(begin, unit, token, name, {});
      break;
    }
  }
  skip(token);
}

void BodyWalker::reference(char16_t unit, Token token, Name name) {
  const std::string id = attributeValue(Name::id);
  single(unit, token, name, id);
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
      const bool fit = unit >= 0x20 && unit < 0xFFFE && !base::isSurrogate(unit);
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
  events_->character(unit, {begin, scanner_.end()}, name, reference);
  advance(1);
}

void BodyWalker::fieldCharacter(Token token) {
  const std::string type = attributeValue(Name::fldCharType);
  if (type == "begin") {
    single(text::kFieldBegin, token, Name::fldChar);
    openField({});
  } else if (type == "separate" && !fields_.empty() && !fields_.back().inResult) {
    single(text::kFieldSeparator, token, Name::fldChar);
    fields_.back().inResult = true;
  } else if (type == "end" && !fields_.empty() && !fields_.back().simple) {
    single(text::kFieldEnd, token, Name::fldChar);
    fields_.pop_back();
  } else {
    skip(token);
  }
}

bool BodyWalker::inCode() const {
  return std::any_of(fields_.rbegin(), fields_.rend(), [](const OpenField& f) { return !f.inResult; });
}

void BodyWalker::openField(OpenField field) {
  if (fields_.size() == document::ContentBuilder::kDeepest) {
    throw errors::DocumentError(errors::Problem::tooLarge,
                                "The document has fields nested " +
                                    std::to_string(document::ContentBuilder::kDeepest) +
                                    " deep, which is more than is worked on.");
  }
  fields_.push_back(field);
}

void BodyWalker::enterSimpleField(Token token) {
  units_.clear();
  appendUtf8(units_, attributeValue(Name::instr));
  openField({true, true});
  push(Name::fldSimple, token, Context::inlines);
  const Tag tag = stack_.back().tag;
  events_->simpleField(tag, units_);
  advance(units_.size() + 2);
  events_->open(tag);
  if (token == Token::empty) leave({scanner_.end(), scanner_.end()});
}

/// And those of the runs that follow, so far as the way to them is known.
void BodyWalker::textElement(Token token) {
  if (followed_ != Followed::none) rememberWay();
  readText(token);
  while (passToNextRun()) {
  }
}

void BodyWalker::readText(Token token) {
  TextElement element;
  element.tag = scanner_.qualifiedName();
  const bool preserved = preserves();
  element.extent = tokenExtent();
  units_.clear();
  textTokens_ = 0;
  collectText(token);
  const Offset inner = element.extent.end;
  element.extent.end = scanner_.end();
  if (!plain_.empty()) {
    element.bytes = preserved ? plain_ : withoutOuterBlanks(plain_);
  } else {
    if (textTokens_ == 1 && textToken_.end - textToken_.begin == units_.size()) {
      element.bytes = scanner_.bytes(textToken_.begin, textToken_.end);
    }
    if (!preserved) trimBlanks(units_, element.bytes);
    element.units = units_;
  }
  tellText(element, preserved, scanner_.bytes(inner, scanner_.begin()));
}

void BodyWalker::tellText(TextElement element, bool preserved, std::string_view inner) {
  if (element.length() == 0) return;
  // Where an element around preserves blanks, they could not be written without becoming text.
  if (!preserved && !stack_.back().preserves) outerBlanks(inner, element.leading, element.trailing);
  events_->text(element);
  advance(element.length());
}

/// The characters up to the end of the element just begun, added to units_, or left in plain_ where they are
/// all there is and printable ASCII, as most are.
void BodyWalker::collectText(Token token) {
  plain_ = {};
  if (token != Token::start) return;
  for (Token next = scanner_.next(); next != Token::end; next = scanner_.next()) {
    if (next == Token::text) {
      ++textTokens_;
      textToken_ = tokenExtent();
      const std::string_view bytes = scanner_.bytes(scanner_.begin(), scanner_.end());
      if (textTokens_ == 1 && units_.empty() && isPrintableAscii(bytes)) {
        plain_ = bytes;
        continue;
      }
      widenPlain();
      appendUtf8(units_, bytes);
    }
    if (next == Token::cdata || next == Token::reference) widenPlain();
    if (next == Token::cdata || next == Token::reference) textTokens_ += 2;
    if (next == Token::cdata) appendUtf8(units_, scanner_.bytes(scanner_.innerBegin(), scanner_.innerEnd()));
    if (next == Token::reference) appendCodePoint(units_, scanner_.codePoint());
    if (next == Token::start) scanner_.skipElement();
  }
}

/// The base of text with a phonetic guide is text where its run holds nothing else; otherwise it is one
/// character.
void BodyWalker::ruby(Token token) {
  events_->aside(scanner_.begin());
  if (token == Token::start && rubyStandsAlone()) return enter(Name::ruby, token, Context::ruby);
  if (!walksEveryStory()) return single(text::kPicture, token, Name::ruby);
  events_->character(text::kPicture, tokenExtent(), Name::ruby, {});
  guide(token);
  advance(1);
}

bool BodyWalker::rubyStandsAlone() {
  const auto isRuby = [](const Open& open) { return open.tag.name == Name::ruby; };
  const Open& run = stack_.back();
  if (run.tag.name != Name::r || run.from != position_ || std::any_of(stack_.begin(), stack_.end(), isRuby))
    return false;
  const Offset begin = scanner_.begin();
  scanner_.skipElement();
  const std::string_view ahead = scanner_.ahead();
  const std::size_t next = std::min(ahead.find_first_not_of(" \t\r\n"), ahead.size());
  const bool alone = ahead.substr(next).starts_with("</");
  scanner_.resumeAt(begin);
  scanner_.next();
  return alone;
}

/// Looks for the places of Word's run properties: behind a math run's own ones, and in those of operators.
void BodyWalker::formula(Token token) {
  events_->aside(scanner_.begin());
  formula_ = {tokenExtent(), {}, {}, {}};
  units_.clear();
  const std::size_t depth = scanner_.depth();
  std::size_t inside = 0;  // the depth of the element whose run properties may come next
  for (Token next = token; token == Token::start && (next != Token::end || scanner_.depth() >= depth);
       next = scanner_.next()) {
    if (!opens(next)) continue;
    const Name name = nameOf(scanner_);
    if (next == Token::start && (name == Name::mathRun || name == Name::mathControlProperties)) {
      inside = scanner_.depth();
      formula_.runProperties.push_back({scanner_.end(), scanner_.end()});
    } else if (inside != 0 && name == Name::mathRunProperties) {
      skip(next);
      formula_.runProperties.back() = {scanner_.end(), scanner_.end()};
    } else if (inside != 0 && name == Name::rPr) {
      Extent& place = formula_.runProperties.back();
      place.begin = scanner_.begin();
      RunLook look;
      readLook(look, next);
      place.end = scanner_.end();
      if (formula_.runProperties.size() == 1) formula_.look = look;
      inside = 0;
    } else {
      inside = 0;
      if (name == Name::mathText && walksEveryStory()) {
        collectText(next);
        widenPlain();
      }
    }
  }
  formula_.extent.end = scanner_.end();
  if (walksEveryStory()) formula_.text = units_;
  events_->formula(formula_);
  advance(1);
}

void BodyWalker::widenPlain() {
  appendUtf8(units_, plain_);
  plain_ = {};
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
      const bool preserved = preserves();
      std::u16string before = std::move(units_);
      units_.clear();
      collectText(token);
      widenPlain();
      std::string_view none;
      if (!preserved) trimBlanks(units_, none);
      units_ = before + units_;
    } else {
      const char16_t unit = characterOf(name, token);
      if (unit == text::kPicture || unit == text::kFloatingPicture) picture = unit;
      if (unit != 0) units_.push_back(unit);
      skip(token);
    }
  }
  element.extent.end = scanner_.end();
  if (picture != 0) {
    events_->character(picture, element.extent, Name::drawing, {});
    advance(1);
  } else if (!units_.empty()) {
    element.units = units_;
    events_->text(element);
    advance(units_.size());
  }
}

}  // namespace pluvo::docx
