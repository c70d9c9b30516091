// What a walk through every story enters besides main text.
#include "body_walker.h"
#include "text_decoding.h"

#include <algorithm>

namespace pluvo::docx {

using xml::Token;

namespace {

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

/// Whether the element that these bytes begin with has the name, without its prefix.
bool beginsWith(std::string_view bytes, std::string_view local) {
  const std::size_t tag = bytes.find('<');
  if (tag == std::string_view::npos) return false;
  const std::string_view name = bytes.substr(tag + 1, bytes.find_first_of(" \t\r\n/>", tag) - tag - 1);
  return name.ends_with(local) &&
         (name.size() == local.size() || name[name.size() - local.size() - 1] == ':');
}

}  // namespace

void BodyWalker::startOutside(Name name, Token token) {
  if (isStory(name)) return enterStory(name, token);
  if (name != Name::drawingText) return enterOutside(name, token);
  units_.clear();
  collectText(token);
  widenPlain();
  events_->outsideText(units_);
}

void BodyWalker::enterOutside(Name name, Token token) {
  push(name, token, Context::outside);
  events_->openOutside(stack_.back().tag);
  if (token == Token::empty) leave({scanner_.end(), scanner_.end()});
}

void BodyWalker::enterStory(Name name, Token token) {
  suspended_.push_back({position_, std::move(fields_)});
  position_ = 0;
  fields_.clear();
  events_->story(name);
  enter(Name::body, token, Context::blocks);
}

void BodyWalker::leaveStory() {
  position_ = suspended_.back().position;
  fields_ = std::move(suspended_.back().fields);
  suspended_.pop_back();
}

/// A picture, or what else is one character, and then what is in it.
void BodyWalker::descend(Name name, Token token) {
  const bool floats =
      name == Name::drawing && token == Token::start && beginsWith(scanner_.ahead(), "anchor");
  events_->character(floats ? text::kFloatingPicture : text::kPicture, tokenExtent(), name, {});
  advance(1);
  enterOutside(name, token);
}

void BodyWalker::guide(Token token) {
  units_.clear();
  const std::size_t depth = scanner_.depth();
  while (token == Token::start) {
    const Token next = scanner_.next();
    if (next == Token::end && scanner_.depth() < depth) break;
    if (!opens(next) || nameOf(scanner_) != Name::t) continue;
    collectText(next);
    widenPlain();
  }
  events_->guide(units_);
}

/// Of a child of the control's properties; goes to the end of one that is a choice.
void BodyWalker::readBinding(Binding& binding, Name name, Token token) {
  if (name == Name::dataBinding) {
    binding.path = attributeValue(Name::xpath);
    binding.prefixes = attributeValue(Name::prefixMappings);
    binding.store = attributeValue(Name::storeItemId);
    return;
  }
  binding.formatted = binding.formatted || name == Name::dateControl || name == Name::checkbox;
  const std::size_t depth = scanner_.depth();
  while (token == Token::start) {
    const Token next = scanner_.next();
    if (next == Token::end && scanner_.depth() < depth) return;
    if (!opens(next) || nameOf(scanner_) != Name::listItem) continue;
    binding.items.emplace_back(attributeValue(Name::value), attributeValue(Name::displayText));
  }
}

}  // namespace pluvo::docx
