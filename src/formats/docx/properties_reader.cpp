#include "properties_reader.h"

namespace pluvo::docx {

using xml::Token;

const Properties& PropertiesReader::read(Name kind, Token token) {
  properties_ = {};
  properties_.whole = walk_.tokenExtent();
  if (token == Token::start && kind == Name::rPr) {
    readLook(properties_.look, token);
  } else if (token == Token::start) {
    const std::size_t depth = scanner_.depth();
    for (Token next = scanner_.next(); next != Token::end || scanner_.depth() >= depth;
         next = scanner_.next()) {
      if (!opens(next)) continue;
      const Name name = nameOf(scanner_);
      if (name == Name::pStyle) properties_.style = valueOf(scanner_, Name::val);
      properties_.hasSection = properties_.hasSection || name == Name::sectPr;
      if (name == Name::rPr) {
        readLook(properties_.look, next);
      } else {
        walk_.skip(next);
      }
    }
  }
  properties_.whole.end = scanner_.end();
  return properties_;
}

ControlProperties PropertiesReader::readControl(Token token) {
  ControlProperties control;
  const std::size_t depth = scanner_.depth();
  while (token == Token::start) {
    const Token next = scanner_.next();
    if (next == Token::end && scanner_.depth() < depth) break;
    if (!opens(next)) continue;
    const Name name = nameOf(scanner_);
    switch (name) {
      case Name::lock: {
        const std::string value = valueOf(scanner_, Name::val);
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
        if (walk_.throughEveryStory()) {
          readBinding(control.binding, name, next);
          continue;
        }
        break;
      case Name::dataBinding:
        control.bound = true;
        if (walk_.throughEveryStory()) readBinding(control.binding, name, next);
        break;
      default:
        break;
    }
    walk_.skip(next);
  }
  return control;
}

/// Of a child of the control's properties; goes to the end of one that is a choice.
void PropertiesReader::readBinding(Binding& binding, Name name, Token token) {
  if (name == Name::dataBinding) {
    binding.path = valueOf(scanner_, Name::xpath);
    binding.prefixes = valueOf(scanner_, Name::prefixMappings);
    binding.store = valueOf(scanner_, Name::storeItemId);
    return;
  }
  binding.formatted = binding.formatted || name == Name::dateControl || name == Name::checkbox;
  const std::size_t depth = scanner_.depth();
  while (token == Token::start) {
    const Token next = scanner_.next();
    if (next == Token::end && scanner_.depth() < depth) return;
    if (!opens(next) || nameOf(scanner_) != Name::listItem) continue;
    binding.items.emplace_back(valueOf(scanner_, Name::value), valueOf(scanner_, Name::displayText));
  }
}

const Formula& PropertiesReader::readFormula(Token token, TextReader& text) {
  formula_ = {walk_.tokenExtent(), {}, {}, {}};
  text.clear();
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
      walk_.skip(next);
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
      if (name == Name::mathText && walk_.throughEveryStory()) text.add(next);
    }
  }
  formula_.extent.end = scanner_.end();
  if (walk_.throughEveryStory()) formula_.text = text.units();
  return formula_;
}

void PropertiesReader::readLook(RunLook& look, Token token) {
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
void PropertiesReader::scanLook(RunLook& look) {
  const std::size_t depth = scanner_.depth();
  for (Token next = scanner_.next(); next != Token::end || scanner_.depth() >= depth;
       next = scanner_.next()) {
    if (!opens(next)) continue;
    switch (nameOf(scanner_)) {
      case Name::highlight:
        look.highlight = highlightIndex(valueOf(scanner_, Name::val));
        break;
      case Name::vanish:
        look.hidden = attribute(scanner_, Name::val) == nullptr || isOn(valueOf(scanner_, Name::val))
                          ? RunLook::Hidden::yes
                          : RunLook::Hidden::no;
        break;
      case Name::rStyle:
        look.style = valueOf(scanner_, Name::val);
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
    walk_.skip(next);
  }
}

}  // namespace pluvo::docx
