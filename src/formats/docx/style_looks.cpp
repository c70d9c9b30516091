#include "style_looks.h"

#include "base/ascii.h"
#include "fragment.h"
#include "names.h"
#include "xml/encoding.h"

#include <algorithm>

namespace pluvo::docx {

namespace {

using Alignment = formats::Appearance::Alignment;

constexpr int kMostAncestors = 64;
constexpr std::uint8_t kDeepestHeading = 9;

/// An attribute by its local name.
std::string_view valueOf(const Fragment& element, std::string_view wanted) {
  std::string_view found;
  forEachAttribute(element.startTag,
                   [&](std::string_view name, std::string_view value, std::size_t, std::size_t) {
                     if (name.substr(name.find(':') + 1) == wanted) found = value;
                   });
  return found;
}

bool switchedOn(const Fragment& element) {
  const std::string_view value = valueOf(element, "val");
  return value.empty() || isOn(value);
}

std::uint8_t levelOf(std::string_view level) {
  const bool isLevel = level.size() == 1 && level[0] >= '0' && level[0] < '0' + kDeepestHeading;
  return isLevel ? static_cast<std::uint8_t>(level[0] - '0' + 1) : std::uint8_t{0};
}

Alignment alignmentOf(std::string_view value) {
  if (value == "center") return Alignment::centre;
  return value == "right" || value == "end" ? Alignment::end : Alignment::start;
}

/// A list of the number 0 takes the paragraph out of all lists.
std::uint8_t listLevelOf(const Fragment& numbering) {
  std::uint8_t level = 1;
  bool isListed = true;
  forEachChild(numbering.inner, [&](const Fragment& child) {
    if (child.local() == "ilvl") level = std::max(levelOf(valueOf(child, "val")), std::uint8_t{1});
    if (child.local() == "numId") isListed = valueOf(child, "val") != "0";
  });
  return isListed ? level : std::uint8_t{0};
}

/// Built-in styles have these names in every language.
std::optional<std::uint8_t> headingOfName(std::string_view name) {
  const std::string lower = base::asciiLower(name);
  if (lower == "title") return std::uint8_t{1};
  constexpr std::string_view kHeading = "heading ";
  if (!lower.starts_with(kHeading) || lower.size() != kHeading.size() + 1) return std::nullopt;
  const char digit = lower.back();
  if (digit < '1' || digit > '9') return std::nullopt;
  return static_cast<std::uint8_t>(digit - '0');
}

template <class Value>
void inherit(std::optional<Value>& own, const std::optional<Value>& base) {
  if (!own) own = base;
}

void put(formats::Appearance& look, const SaidOfRun& said) {
  look.bold = said.bold.value_or(look.bold);
  look.italic = said.italic.value_or(look.italic);
  look.underlined = said.underlined.value_or(look.underlined);
  look.struck = said.struck.value_or(look.struck);
}

}  // namespace

SaidOfRun saidOfRun(std::string_view runProperties) {
  SaidOfRun said;
  if (runProperties.empty()) return said;
  forEachChild(fragmentOf(runProperties).inner, [&](const Fragment& property) {
    const std::string_view name = property.local();
    if (name == "b") said.bold = switchedOn(property);
    if (name == "i") said.italic = switchedOn(property);
    if (name == "u") said.underlined = valueOf(property, "val") != "none";
    if (name == "strike" || name == "dstrike") said.struck = switchedOn(property);
  });
  return said;
}

SaidOfParagraph saidOfParagraph(std::string_view paragraphProperties) {
  SaidOfParagraph said;
  if (paragraphProperties.empty()) return said;
  forEachChild(fragmentOf(paragraphProperties).inner, [&](const Fragment& property) {
    const std::string_view name = property.local();
    if (name == "outlineLvl") said.heading = levelOf(valueOf(property, "val"));
    if (name == "jc") said.alignment = alignmentOf(valueOf(property, "val"));
    if (name == "bidi") said.rightToLeft = switchedOn(property);
    if (name == "numPr") said.listLevel = listLevelOf(property);
  });
  return said;
}

StyleLooks::StyleLooks(std::string_view part) {
  const std::size_t root = nextElement(part, 0);
  if (root == std::string_view::npos) return;
  forEachChild(fragmentOf(part.substr(root)).inner, [&](const Fragment& element) {
    if (element.local() != "style") return;
    const std::string id(valueOf(element, "styleId"));
    Style style;
    std::optional<std::uint8_t> byName;
    forEachChild(element.inner, [&](const Fragment& child) {
      const std::string_view name = child.local();
      if (name == "name") byName = headingOfName(valueOf(child, "val"));
      if (name == "basedOn") style.basedOn = valueOf(child, "val");
      if (name == "rPr") style.run = saidOfRun(child.whole);
      if (name == "pPr") style.paragraph = saidOfParagraph(child.whole);
    });
    inherit(style.paragraph.heading, byName);
    const bool isDefault = isOn(valueOf(element, "default"));
    if (isDefault && valueOf(element, "type") == "paragraph") defaultParagraphStyle_ = id;
    styles_[id] = std::move(style);
  });
}

StyleLooks::Style StyleLooks::resolved(const std::string& id) const {
  Style result;
  auto found = styles_.find(id);
  for (int i = 0; i < kMostAncestors && found != styles_.end(); ++i) {
    const Style& style = found->second;
    inherit(result.run.bold, style.run.bold);
    inherit(result.run.italic, style.run.italic);
    inherit(result.run.underlined, style.run.underlined);
    inherit(result.run.struck, style.run.struck);
    inherit(result.paragraph.heading, style.paragraph.heading);
    inherit(result.paragraph.alignment, style.paragraph.alignment);
    inherit(result.paragraph.rightToLeft, style.paragraph.rightToLeft);
    inherit(result.paragraph.listLevel, style.paragraph.listLevel);
    found = styles_.find(style.basedOn);
  }
  return result;
}

formats::Appearance StyleLooks::ofParagraph(const std::string& style) const {
  const Style said = resolved(style.empty() ? defaultParagraphStyle_ : style);
  formats::Appearance look;
  put(look, said.run);
  look.heading = said.paragraph.heading.value_or(std::uint8_t{0});
  look.alignment = said.paragraph.alignment.value_or(Alignment::start);
  look.rightToLeft = said.paragraph.rightToLeft.value_or(false);
  look.listLevel = said.paragraph.listLevel.value_or(std::uint8_t{0});
  return look;
}

formats::Appearance StyleLooks::withCharacterStyle(formats::Appearance paragraph,
                                                   const std::string& style) const {
  SaidOfRun said = resolved(style).run;
  if (said.bold) said.bold = *said.bold != paragraph.bold;
  if (said.italic) said.italic = *said.italic != paragraph.italic;
  put(paragraph, said);
  return paragraph;
}

StyleLooks readStyleLooks(const Package& package) {
  const zip::Member* const member = package.member(Role::styles);
  if (member == nullptr) return {};
  const std::string name(member->name);
  try {
    const xml::Utf8Part part = xml::toUtf8(package.archive.read(*member), name);
    xml::Scanner scanner(part.utf8.view, vocabulary(), name);
    while (scanner.next() != xml::Token::finish) {
    }
    return StyleLooks({reinterpret_cast<const char*>(part.utf8.view.data()), part.utf8.view.size()});
  } catch (const errors::DocumentError&) {
    return {};  // the document can be read without
  }
}

}  // namespace pluvo::docx
