#include "body_walker.h"

#include "text_decoding.h"

#include <algorithm>
#include <utility>

namespace pluvo::docx {

using xml::Token;

namespace {

bool isMarker(Name name) { return name >= Name::bookmarkStart && name <= Name::customXmlMoveToRangeEnd; }

bool isStory(Name name) {
  switch (name) {
    case Name::header:
    case Name::footer:
    case Name::footnote:
    case Name::endnote:
    case Name::comment:
    case Name::boxContent:
    case Name::entryBody:
      return true;
    default:
      return false;
  }
}

}  // namespace

BodyWalker::BodyWalker(base::ByteSpan part, const std::string& partName, BodyEvents& events, Reach reach,
                       xml::Swept swept, Told told)
    : walk_{xml::Scanner(part, vocabulary(), partName, {}, swept), &events, reach, told} {}

void BodyWalker::resumeAt(Offset offset, Position position) {
  walk_.scanner.resumeAt(offset);
  walk_.position = position;
  walk_.stack.back().endsWithParagraph = false;
}

bool BodyWalker::step() {
  const Token token = walk_.scanner.next();
  if (token == Token::finish) {
    if (!finished_ && !walk_.throughEveryStory()) walk_.scanner.damaged("it has no text body");
    return false;
  }
  runs_.follow(token);
  if (opens(token)) {
    const bool inRun = !walk_.stack.empty() && walk_.stack.back().within == Context::run;
    inRun ? takeInRun(nameOf(walk_.scanner), token) : take(nameOf(walk_.scanner), token);
  } else if (token == Token::end && !walk_.stack.empty()) {
    leave(walk_.tokenExtent());
  }
  return true;
}

void BodyWalker::take(Name name, Token token) {
  if (walk_.stack.empty()) {
    if (walk_.throughEveryStory() && name != Name::document) return takeOutside(name, token);
    if (walk_.reach == Reach::oneStory)
      return isStory(name) ? enterBody(token) : walk_.push(Name::document, token, Context::root);
    if (name != Name::document) walk_.scanner.damaged("it is no WordprocessingML document");
    return walk_.push(name, token, Context::root);
  }
  const Context context = walk_.stack.back().within;
  if (context == Context::outside) return takeOutside(name, token);
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
      if (walk_.stack.back().tag.name == Name::sdt) return control(token);
      break;
    case Name::rubyBase:
      if (context == Context::ruby) return enter(name, token, Context::inlines);
      break;
    case Name::guideText:
      if (context == Context::ruby && walk_.throughEveryStory())
        return walk_.events->guide(text_.readGuide(token));
      break;
    case Name::pPr:
      if (walk_.stack.back().tag.name == Name::p)
        return walk_.events->properties(name, properties_.read(name, token));
      break;
    default:
      if (context == Context::root && walk_.reach == Reach::oneStory && isStory(name) && !finished_)
        return enterBody(token);
      break;
  }
  walk_.skip(token);
}

void BodyWalker::takeInRun(Name name, Token token) {
  switch (runs_.take(name, token)) {
    case RunWalker::Enters::nothing:
      return;
    case RunWalker::Enters::guidedText:
      return enter(name, token, Context::ruby);
    case RunWalker::Enters::outside:
      return enterOutside(name, token);
  }
}

void BodyWalker::takeOutside(Name name, Token token) {
  if (isStory(name)) return enterStory(name, token);
  if (name != Name::drawingText) return enterOutside(name, token);
  text_.clear();
  text_.add(token);
  walk_.events->outsideText(text_.units());
}

void BodyWalker::enterOutside(Name name, Token token) {
  walk_.push(name, token, Context::outside);
  walk_.events->openOutside(walk_.stack.back().tag);
  if (token == Token::empty) leave({walk_.scanner.end(), walk_.scanner.end()});
}

void BodyWalker::enterStory(Name name, Token token) {
  suspended_.push_back({walk_.position, std::move(walk_.fields), blocks_});
  walk_.position = 0;
  walk_.fields = {};
  walk_.events->story(name);
  enterBody(token);
}

void BodyWalker::enterBody(Token token) {
  blocks_ = walk_.stack.size() + 1;
  enter(Name::body, token, Context::blocks);
}

void BodyWalker::leaveStory() {
  walk_.position = suspended_.back().position;
  walk_.fields = std::move(suspended_.back().fields);
  blocks_ = suspended_.back().blocks;
  suspended_.pop_back();
}

void BodyWalker::enter(Name name, Token token, Context within) {
  walk_.push(name, token, within);
  walk_.events->open(walk_.stack.back().tag);
  if (token == Token::empty) leave({walk_.scanner.end(), walk_.scanner.end()});
}

void BodyWalker::enterSimpleField(Token token) {
  std::u16string instruction;
  appendUtf8(instruction, valueOf(walk_.scanner, Name::instr));
  walk_.fields.begin(true);
  walk_.push(Name::fldSimple, token, Context::inlines);
  const Tag tag = walk_.stack.back().tag;
  walk_.events->simpleField(tag, instruction);
  walk_.advance(instruction.size() + 2);
  walk_.events->open(tag);
  if (token == Token::empty) leave({walk_.scanner.end(), walk_.scanner.end()});
}

void BodyWalker::enterAlternative(Name name, Token token, Context within) {
  if (name == Name::alternateContent) {
    alternatives_.push_back(false);
    return enter(name, token, within);
  }
  if (walk_.stack.back().tag.name != Name::alternateContent) return walk_.skip(token);
  if (!alternatives_.back() &&
      (name == Name::fallback || understood(walk_.scanner, valueOf(walk_.scanner, Name::requires_)))) {
    alternatives_.back() = true;
    return enter(name, token, within);
  }
  walk_.events->aside(walk_.scanner.begin());
  if (walk_.throughEveryStory()) return enterOutside(name, token);
  Extent extent = walk_.tokenExtent();
  walk_.skip(token);
  extent.end = walk_.scanner.end();
  walk_.events->passedAlternative(extent);
}

void BodyWalker::control(Token token) {
  const Offset begin = walk_.scanner.begin();
  const ControlProperties control = properties_.readControl(token);
  if (control.bound) walk_.events->aside(begin);
  walk_.events->control(control);
}

void BodyWalker::formula(Token token) {
  walk_.events->aside(walk_.scanner.begin());
  walk_.events->formula(properties_.readFormula(token, text_));
  walk_.advance(1);
}

void BodyWalker::marker(Name name, Token token) {
  Marker met{name, walk_.tokenExtent(), valueOf(walk_.scanner, Name::id), valueOf(walk_.scanner, Name::name)};
  walk_.skip(token);
  met.extent.end = walk_.scanner.end();
  walk_.events->marker(met);
}

void BodyWalker::leave(Extent endTag) {
  const Walk::Open left = walk_.stack.back();
  if (left.within == Context::outside) {
    walk_.stack.pop_back();
    return walk_.events->closeOutside(left.tag);
  }
  switch (left.tag.name) {
    case Name::p:
      walk_.events->paragraphMark(endTag);
      walk_.advance(1);
      break;
    case Name::body:
    case Name::tc:
      if (!left.endsWithParagraph) {
        walk_.events->missingParagraph(left.tag.name, endTag);
        walk_.advance(1);
      }
      finished_ = finished_ || left.tag.name == Name::body;
      break;
    case Name::tr:
      if (left.hasCells) {
        walk_.events->rowMark(endTag);
        walk_.advance(1);
      }
      break;
    case Name::fldSimple:
      if (!walk_.fields.empty()) {
        walk_.fields.end();
        walk_.events->endSimpleField(endTag);
        walk_.advance(1);
      }
      break;
    case Name::alternateContent:
      alternatives_.pop_back();
      break;
    case Name::document:
      walk_.stack.pop_back();
      return;
    default:
      break;
  }
  walk_.stack.pop_back();
  if (left.tag.name == Name::p || left.tag.name == Name::tbl) {
    blockContainer().endsWithParagraph = left.tag.name == Name::p;
  } else if (left.tag.name == Name::tc) {
    const auto row = std::find_if(walk_.stack.rbegin(), walk_.stack.rend(),
                                  [](const Walk::Open& open) { return open.tag.name == Name::tr; });
    row->hasCells = true;
  }
  walk_.events->close(left.tag, endTag);
  if (left.tag.name == Name::body && !suspended_.empty()) leaveStory();
}

Walk::Open& BodyWalker::blockContainer() {
  return *std::find_if(walk_.stack.rbegin(), walk_.stack.rend(), [](const Walk::Open& open) {
    return open.tag.name == Name::tc || open.tag.name == Name::body;
  });
}

}  // namespace pluvo::docx
