#include "styles.h"

#include "package.h"
#include "xml/encoding.h"

#include <string_view>

namespace pluvo::docx {

using xml::Token;

namespace {

constexpr int kMostAncestors = 64;

bool mentions(base::ByteSpan part, std::string_view word) {
  const std::string_view text(reinterpret_cast<const char*>(part.data()), part.size());
  return text.find(word) != std::string_view::npos;
}

}  // namespace

Styles::Styles(base::ByteSpan part, const std::string& partName) {
  if (!mentions(part, "vanish")) return;
  xml::Scanner scanner(part, vocabulary(), partName);
  std::string id;
  Style style;
  bool inRunProperties = false;
  for (Token token = scanner.next(); token != Token::finish; token = scanner.next()) {
    if (token == Token::end) {
      if (nameOf(scanner) == Name::style) styles_[id] = style;
      if (nameOf(scanner) == Name::rPr) inRunProperties = false;
    }
    if (token != Token::start && token != Token::empty) continue;
    switch (nameOf(scanner)) {
      case Name::style:
        id = valueOf(scanner, Name::styleId);
        style = {};
        if (valueOf(scanner, Name::type) == "paragraph" && isOn(valueOf(scanner, Name::defaultStyle))) {
          defaultParagraphStyle_ = id;
        }
        break;
      case Name::basedOn:
        style.basedOn = valueOf(scanner, Name::val);
        break;
      case Name::rPr:
        // The run properties of a style stand directly in it, at depth 3; those of its table parts lie
        // deeper.
        inRunProperties = token == Token::start && scanner.depth() == 3;
        break;
      case Name::vanish:
        if (inRunProperties) {
          const bool on = attribute(scanner, Name::val) == nullptr || isOn(valueOf(scanner, Name::val));
          style.hidden = on ? RunLook::Hidden::yes : RunLook::Hidden::no;
          any_ = any_ || on;
        }
        break;
      default:
        break;
    }
  }
}

Styles readStyles(const Package& package) {
  const zip::Member* const member = package.member(Role::styles);
  if (member == nullptr) return {};
  const std::string name(member->name);
  const xml::Utf8Part part = xml::toUtf8(package.archive.read(*member), name);
  return {part.utf8.view, name};
}

std::string styleNamed(base::ByteSpan part, const std::string& partName, std::string_view name) {
  xml::Scanner scanner(part, vocabulary(), partName);
  std::string id;
  for (Token token = scanner.next(); token != Token::finish; token = scanner.next()) {
    if (token != Token::start && token != Token::empty) continue;
    if (nameOf(scanner) == Name::style) id = valueOf(scanner, Name::styleId);
    if (nameOf(scanner) == Name::name && valueOf(scanner, Name::val) == name) return id;
  }
  return {};
}

bool Styles::hidesByStyle(const RunLook& look, const std::string& paragraphStyle) const {
  const bool byParagraph = isHidden(paragraphStyle.empty() ? defaultParagraphStyle_ : paragraphStyle);
  return byParagraph != (!look.style.empty() && isHidden(look.style));
}

bool Styles::isHidden(const std::string& style) const {
  auto found = styles_.find(style);
  for (int i = 0; i < kMostAncestors && found != styles_.end(); ++i) {
    if (found->second.hidden != RunLook::Hidden::inherited)
      return found->second.hidden == RunLook::Hidden::yes;
    found = styles_.find(found->second.basedOn);
  }
  return false;
}

}  // namespace pluvo::docx
