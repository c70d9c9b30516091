#include "properties.h"

#include "fragment.h"
#include "names.h"

#include <algorithm>
#include <array>
#include <optional>

namespace pluvo::docx {

namespace {

/// The elements before w:highlight in w:rPr; the tracked state of a mark stands first of all.
constexpr std::array<std::string_view, 29> kBeforeHighlight = {
    "ins",    "del",     "moveFrom", "moveTo",     "rStyle", "rFonts",    "b",       "bCs",
    "i",      "iCs",     "caps",     "smallCaps",  "strike", "dstrike",   "outline", "shadow",
    "emboss", "imprint", "noProof",  "snapToGrid", "vanish", "webHidden", "color",   "spacing",
    "w",      "kern",    "position", "sz",         "szCs"};

bool isOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

bool standsBeforeHighlight(std::string_view local) {
  return std::find(kBeforeHighlight.begin(), kBeforeHighlight.end(), local) != kBeforeHighlight.end();
}

bool standsBeforeVanish(std::string_view local) {
  const auto* const vanish = std::find(kBeforeHighlight.begin(), kBeforeHighlight.end(), "vanish");
  return std::find(kBeforeHighlight.begin(), vanish, local) != vanish;
}

/// The element with a child put where before(local) first fails; made when it is not there.
template <class Before>
std::string withChild(std::string_view element, const std::string& name, std::string_view child,
                      Before before) {
  if (element.empty()) return "<" + name + ">" + std::string(child) + "</" + name + ">";
  const Fragment fragment = fragmentOf(element);
  if (fragment.endTag.empty()) {
    return openedTag(fragment.startTag) + std::string(child) + "</" + std::string(fragment.name()) + ">";
  }
  std::size_t place = 0;
  bool open = true;
  forEachChild(fragment.inner, [&](const Fragment& sibling) {
    open = open && sibling.prefix() == fragment.prefix() && before(sibling.local());
    if (open) {
      place = static_cast<std::size_t>(sibling.whole.data() - fragment.inner.data()) + sibling.whole.size();
    }
  });
  return std::string(fragment.startTag) + std::string(fragment.inner.substr(0, place)) + std::string(child) +
         std::string(fragment.inner.substr(place)) + std::string(fragment.endTag);
}

std::string_view childOf(std::string_view element, std::string_view local) {
  if (element.empty()) return {};
  const Fragment fragment = fragmentOf(element);
  std::string_view found;
  forEachChild(fragment.inner, [&](const Fragment& child) {
    if (found.empty() && child.local() == local && child.prefix() == fragment.prefix()) found = child.whole;
  });
  return found;
}

/// The value of w:highlight in w:rPr; empty when there is none or it is "none".
std::string_view highlightOf(std::string_view runProperties) {
  const std::string_view highlight = childOf(runProperties, "highlight");
  if (highlight.empty()) return {};
  const std::string_view value = fragmentOf(highlight).value("val");
  return value == "none" ? std::string_view() : value;
}

bool tellsTracking(std::string_view local) {
  return isOneOf(local, {"ins", "del", "moveFrom", "moveTo", "rPrChange"});
}

std::string withMarkProperties(std::string_view paragraphProperties, const Markup& markup,
                               const std::string& runProperties) {
  std::string rest = without(paragraphProperties, [](std::string_view local) { return local == "rPr"; });
  if (runProperties.empty()) return rest;
  return withChild(rest, markup.element + "pPr", runProperties, [](std::string_view local) {
    return !isOneOf(local, {"sectPr", "pPrChange"});
  });
}

}  // namespace

std::string Markup::with(std::string_view local, std::string_view name, std::string_view value) const {
  return tag(local) + declaration + " " + attribute + std::string(name) + "=\"" + std::string(value) + "\"/>";
}

std::string withHighlight(std::string_view runProperties, const Markup& markup, std::uint8_t colour) {
  std::string rest = without(runProperties, [](std::string_view local) { return local == "highlight"; });
  if (colour == 0) return rest;
  return withChild(rest, markup.element + "rPr", markup.with("highlight", "val", highlightValue(colour)),
                   standsBeforeHighlight);
}

const std::string& HighlightedProperties::of(std::string_view properties, const Markup& markup,
                                             std::uint8_t colour) {
  constexpr std::size_t kMost = 16;
  for (const Known& known : known_) {
    if (known.colour == colour && known.before == properties && known.prefix == markup.element)
      return known.after;
  }
  Known made{std::string(properties), markup.element, colour, make_(properties, markup, colour)};
  if (known_.size() < kMost) return known_.emplace_back(std::move(made)).after;
  next_ = (next_ + 1) % kMost;
  known_[next_] = std::move(made);
  return known_[next_].after;
}

std::string runPropertiesOfMark(std::string_view paragraphProperties) {
  return without(childOf(paragraphProperties, "rPr"), tellsTracking);
}

std::string withMarkHighlight(std::string_view paragraphProperties, const Markup& markup,
                              std::uint8_t colour) {
  return withMarkProperties(paragraphProperties, markup,
                            withHighlight(childOf(paragraphProperties, "rPr"), markup, colour));
}

std::string withMarkLike(std::string_view paragraphProperties, const Markup& markup, std::uint8_t colour,
                         std::string_view runProperties) {
  const std::string_view old = childOf(paragraphProperties, "rPr");
  const std::string_view hiding = childOf(runProperties, "vanish");
  const bool alreadyHighlighted = highlightOf(old) == (colour == 0 ? "" : highlightValue(colour));
  if (alreadyHighlighted && childOf(old, "vanish") == hiding) return std::string(paragraphProperties);
  std::string mark = alreadyHighlighted ? std::string(old) : withHighlight(old, markup, colour);
  mark = without(mark, [](std::string_view local) { return local == "vanish"; });
  if (!hiding.empty()) mark = withChild(mark, markup.element + "rPr", hiding, standsBeforeVanish);
  return withMarkProperties(paragraphProperties, markup, mark);
}

std::string forSplitOffParagraph(std::string_view paragraphProperties) {
  const std::string_view old = childOf(paragraphProperties, "rPr");
  std::string kept = without(paragraphProperties, [](std::string_view local) {
    return isOneOf(local, {"sectPr", "pPrChange"});
  });
  if (old.empty() || kept.empty()) return kept;
  Markup markup;
  markup.element = fragmentOf(kept).prefix();
  return withMarkProperties(kept, markup, without(old, tellsTracking));
}

std::string startTagWithout(std::string_view tag, std::initializer_list<std::string_view> locals) {
  std::string result;
  std::size_t copied = 0;
  forEachAttribute(tag, [&](std::string_view name, std::string_view, std::size_t begin, std::size_t end) {
    if (!isOneOf(name.substr(name.find(':') + 1), locals)) return;
    result.append(tag.substr(copied, begin - copied));
    copied = end;
  });
  return result.append(tag.substr(copied));
}

std::string_view deletionOfMark(std::string_view paragraphProperties) {
  const std::string_view mark = childOf(paragraphProperties, "rPr");
  const std::string_view deletion = childOf(mark, "del");
  return deletion.empty() ? childOf(mark, "moveFrom") : deletion;
}

std::string withMarkDeletion(std::string_view paragraphProperties, const Markup& markup,
                             std::string_view deletion) {
  const std::string_view mark = childOf(paragraphProperties, "rPr");
  return withMarkProperties(paragraphProperties, markup,
                            withChild(mark, markup.element + "rPr", deletion,
                                      [](std::string_view local) { return local == "ins"; }));
}

std::string attributesOf(std::string_view tag) {
  std::string result;
  forEachAttribute(tag, [&](std::string_view, std::string_view, std::size_t begin, std::size_t end) {
    result += tag.substr(begin, end - begin);
  });
  return result;
}

std::string openedTag(std::string_view emptyTag) {
  if (emptyTag.size() < 2 || emptyTag[emptyTag.size() - 2] != '/') return std::string(emptyTag);
  return std::string(emptyTag.substr(0, emptyTag.size() - 2)) + ">";
}

}  // namespace pluvo::docx
