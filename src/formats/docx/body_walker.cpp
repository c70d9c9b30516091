#include "body_walker.h"

#include "document/content_builder.h"

#include <algorithm>
#include <string>

namespace pluvo::docx {

using xml::Token;

namespace {

bool isMarker(Name name) { return name >= Name::bookmarkStart && name <= Name::customXmlMoveToRangeEnd; }

}  // namespace

BodyWalker::BodyWalker(base::ByteSpan part, const std::string& partName, BodyEvents& events, Reach reach,
                       xml::Swept swept)
    : scanner_(part, vocabulary(), partName, {}, swept), events_(&events), reach_(reach) {}

void BodyWalker::resumeAt(Offset offset, Position position) {
  scanner_.resumeAt(offset);
  position_ = position;
  stack_.back().endsWithParagraph = false;
}

bool BodyWalker::step() {
  const Token token = scanner_.next();
  if (token == Token::finish) {
    if (!finished_ && !walksEveryStory()) scanner_.damaged("it has no text body");
    return false;
  }
  if (followed_ != Followed::none) follow(token);
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
    if (walksEveryStory() && name != Name::document) return startOutside(name, token);
    if (name != Name::document) scanner_.damaged("it is no WordprocessingML document");
    return push(name, token, Context::root);
  }
  const Context context = stack_.back().within;
  if (context == Context::run) return startInRun(name, token);
  if (context == Context::outside) return startOutside(name, token);
  if (isMarker(name) && context != Context::root) return marker(name, token);
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
      if (context == Context::inlines) return formula(token);
      break;
    case Name::sdtPr:
      if (stack_.back().tag.name == Name::sdt) return readControl(token);
      break;
    case Name::rubyBase:
      if (context == Context::ruby) return enter(name, token, Context::inlines);
      break;
    case Name::guideText:
      if (context == Context::ruby && walksEveryStory()) return guide(token);
      break;
    case Name::pPr:
      if (stack_.back().tag.name == Name::p) return readProperties(name, token);
      break;
    default:
      break;
  }
  skip(token);
}

void BodyWalker::push(Name name, Token token, Context within) {
  const bool keepsBlanks = preserves();
  stack_.push_back(
      {{name, tokenExtent(), token == Token::empty}, within, false, false, keepsBlanks, position_});
}

/// Blanks at the ends of text, by the element at hand or else by the nearest one around it that says so.
bool BodyWalker::preserves() const {
  if (!scanner_.attributes().empty()) {
    const xml::Attribute* const space = attribute(scanner_, Name::space);
    if (space != nullptr) return scanner_.rawValue(*space) == "preserve";
  }
  return !stack_.empty() && stack_.back().preserves;
}

void BodyWalker::enter(Name name, Token token, Context within) {
  push(name, token, within);
  events_->open(stack_.back().tag);
  if (token == Token::empty) leave({scanner_.end(), scanner_.end()});
}

void BodyWalker::leave(Extent endTag) {
  const Open left = stack_.back();
  if (left.within == Context::outside) {
    stack_.pop_back();
    return events_->closeOutside(left.tag);
  }
  switch (left.tag.name) {
    case Name::p:
      events_->paragraphMark(endTag);
      advance(1);
      break;
    case Name::body:
    case Name::tc:
      if (!left.endsWithParagraph) {
        events_->missingParagraph(left.tag.name, endTag);
        advance(1);
      }
      finished_ = finished_ || left.tag.name == Name::body;
      break;
    case Name::tr:
      if (left.hasCells) {
        events_->rowMark(endTag);
        advance(1);
      }
      break;
    case Name::fldSimple:
      if (!fields_.empty()) {
        fields_.pop_back();
        events_->endSimpleField(endTag);
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
  events_->close(left.tag, endTag);
  if (left.tag.name == Name::body && !suspended_.empty()) leaveStory();
}

BodyWalker::Open& BodyWalker::blockContainer() {
  return *std::find_if(stack_.rbegin(), stack_.rend(), [](const Open& open) {
    return open.tag.name == Name::tc || open.tag.name == Name::body;
  });
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
  events_->aside(scanner_.begin());
  if (walksEveryStory()) return enterOutside(name, token);
  Extent extent = tokenExtent();
  skip(token);
  extent.end = scanner_.end();
  events_->passedAlternative(extent);
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
  events_->properties(kind, properties_);
}

void BodyWalker::readControl(Token token) {
  ControlProperties control;
  const Offset begin = scanner_.begin();
  const std::size_t depth = scanner_.depth();
  while (token == Token::start) {
    const Token next = scanner_.next();
    if (next == Token::end && scanner_.depth() < depth) break;
    if (!opens(next)) continue;
    const Name name = nameOf(scanner_);
    switch (name) {
      case Name::lock: {
        const std::string value = attributeValue(Name::val);
        control.contentLocked = value == "contentLocked" || value == "sdtContentLocked";
        control.deletionLocked = value == "sdtLocked" || value == "sdtContentLocked";
        break;
      }
      case Name::textControl:
      case Name::dateControl:
      case Name::comboBox:
      case Name::dropDownList:
      case Name::checkbox:
        control.plain = true;
        if (walksEveryStory()) {
          readBinding(control.binding, name, next);
          continue;
        }
        break;
      case Name::dataBinding:
        events_->aside(begin);
        if (walksEveryStory()) readBinding(control.binding, name, next);
        break;
      default:
        break;
    }
    skip(next);
  }
  events_->control(control);
}

void BodyWalker::readLook(RunLook& look, Token token) {
  if (token != Token::start) return;
  if (const LookMemory::Known* known = looks_.recall(scanner_.ahead(), scanner_.scope())) {
    look = known->look;
    scanner_.resumeAt(scanner_.end() + static_cast<Offset>(known->inner));
    scanner_.next();
    return;
  }
  const xml::Scope scope = scanner_.scope();
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
      case Name::rPrChange:
        look.numbered = true;
        break;
      case Name::del:
      case Name::moveFrom:
        look.deleted = true;
        break;
      default:
        break;
    }
    skip(next);
  }
}

void BodyWalker::marker(Name name, Token token) {
  Marker met{name, tokenExtent(), attributeValue(Name::id), attributeValue(Name::name)};
  skip(token);
  met.extent.end = scanner_.end();
  events_->marker(met);
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
    throw errors::DocumentError(errors::Problem::tooLarge,
                                "The document's text is too long to be worked on.");
  }
  position_ += static_cast<Position>(count);
}

}  // namespace pluvo::docx
