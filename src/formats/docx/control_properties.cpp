#include "control_properties.h"

#include "fragment.h"
#include "names.h"

#include <optional>

namespace pluvo::docx {

namespace {

using Changed = std::optional<std::string>;

std::string remade(const Fragment& element, const std::string& startTag, const std::string& inner) {
  return startTag + inner + std::string(element.endTag);
}

/// Changes the children of w:sdtPr.
template <class Change>
std::string withProperties(std::string_view controlProperties, Change change) {
  return withChildren(controlProperties, [&](const Fragment& child) -> Changed {
    if (child.local() != "sdtPr") return std::nullopt;
    return remade(child, std::string(child.startTag), withChildren(child.inner, change));
  });
}

/// For text of several lines.
std::string ofManyLines(const Fragment& element, const Markup& markup) {
  std::string tag = startTagWithout(element.startTag, {"multiLine"});
  tag.insert(tag.size() - (element.endTag.empty() ? 2 : 1),
             markup.declaration + " " + markup.attribute + "multiLine=\"1\"");
  return remade(element, tag, std::string(element.inner));
}

bool hasStyle(std::string_view runProperties, std::string_view style) {
  bool has = false;
  forEachChild(fragmentOf(runProperties).inner, [&](const Fragment& property) {
    has = has || (property.local() == "rStyle" && property.value("val") == style);
  });
  return has;
}

}  // namespace

std::string forChangedText(std::string_view controlProperties, const Markup& markup, bool hasLineBreaks) {
  return withProperties(controlProperties, [&](const Fragment& property) -> Changed {
    const std::string_view name = property.local();
    if (name == "dataBinding" || name == "showingPlcHdr") return "";
    if (name == "date" || name == "comboBox" || name == "dropDownList") {
      return remade(property, startTagWithout(property.startTag, {"fullDate", "lastValue"}),
                    std::string(property.inner));
    }
    if (name == "text" && hasLineBreaks && !isOn(property.value("multiLine")))
      return ofManyLines(property, markup);
    return std::nullopt;
  });
}

std::string withoutIdentity(std::string_view controlProperties) {
  return withProperties(controlProperties, [](const Fragment& property) -> Changed {
    return property.local() == "id" ? Changed("") : std::nullopt;
  });
}

bool showsPlaceholder(std::string_view controlProperties) {
  bool shows = false;
  forEachChild(controlProperties, [&](const Fragment& child) {
    if (child.local() != "sdtPr") return;
    forEachChild(child.inner, [&](const Fragment& property) {
      if (property.local() != "showingPlcHdr") return;
      const std::string_view value = property.value("val");
      shows = value.empty() || isOn(value);
    });
  });
  return shows;
}

std::string withoutPlaceholderLook(std::string_view content, std::string_view style) {
  std::string result;
  std::size_t copied = 0;
  for (std::size_t at = nextElement(content, 0); at != std::string_view::npos;) {
    const Fragment start = startOf(content.substr(at));
    std::size_t past = at + start.startTag.size();
    if (start.local() == "sdt") {
      const std::size_t child = nextElement(content, past);
      const bool shows = child != std::string_view::npos &&
                         startOf(content.substr(child)).local() == "sdtPr" &&
                         showsPlaceholder(fragmentOf(content.substr(child)).whole);
      if (shows) past = at + fragmentOf(content.substr(at)).whole.size();
    } else if (start.local() == "rPr") {
      const std::string_view whole = fragmentOf(content.substr(at)).whole;
      past = at + whole.size();
      if (hasStyle(whole, style)) {
        result.append(content.substr(copied, at - copied));
        result += without(whole, [](std::string_view local) { return local == "rStyle"; });
        copied = past;
      }
    }
    at = nextElement(content, past);
  }
  return result.append(content.substr(copied));
}

}  // namespace pluvo::docx
