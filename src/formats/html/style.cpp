#include "style.h"

#include "base/ascii.h"
#include "tokens.h"

#include <algorithm>
#include <array>

namespace pluvo::formats::html {

namespace {

using base::equalsIgnoringAsciiCase;

struct Colour {
  std::string_view name;
  std::uint8_t index;
  std::uint32_t rgb;
};

/// As Word writes them, then other names for them.
constexpr std::array kColours = {
    Colour{"black", 1, 0x000000},       Colour{"blue", 2, 0x0000FF},         Colour{"aqua", 3, 0x00FFFF},
    Colour{"lime", 4, 0x00FF00},        Colour{"fuchsia", 5, 0xFF00FF},      Colour{"red", 6, 0xFF0000},
    Colour{"yellow", 7, 0xFFFF00},      Colour{"white", 8, 0xFFFFFF},        Colour{"navy", 9, 0x000080},
    Colour{"teal", 10, 0x008080},       Colour{"green", 11, 0x008000},       Colour{"purple", 12, 0x800080},
    Colour{"maroon", 13, 0x800000},     Colour{"olive", 14, 0x808000},       Colour{"gray", 15, 0x808080},
    Colour{"silver", 16, 0xC0C0C0},     Colour{"cyan", 3, 0x00FFFF},         Colour{"turquoise", 3, 0x00FFFF},
    Colour{"magenta", 5, 0xFF00FF},     Colour{"darkblue", 9, 0x000080},     Colour{"darkcyan", 10, 0x008080},
    Colour{"darkgreen", 11, 0x008000},  Colour{"darkmagenta", 12, 0x800080}, Colour{"darkred", 13, 0x800000},
    Colour{"darkyellow", 14, 0x808000}, Colour{"grey", 15, 0x808080},        Colour{"darkgray", 15, 0x808080},
    Colour{"lightgrey", 16, 0xC0C0C0}};

std::optional<std::uint8_t> colourOf(std::uint32_t rgb) {
  const auto* const found = std::ranges::find(kColours, rgb, &Colour::rgb);
  return found == kColours.end() ? std::nullopt : std::optional(found->index);
}

std::optional<std::uint32_t> hexadecimal(std::string_view digits) {
  if (digits.size() != 3 && digits.size() != 6) return std::nullopt;
  std::uint32_t rgb = 0;
  for (const char c : digits) {
    const char lower = base::asciiLower(c);
    if (!isDigit(c) && !(lower >= 'a' && lower <= 'f')) return std::nullopt;
    const auto digit = static_cast<std::uint32_t>(isDigit(c) ? c - '0' : lower - 'a' + 10);
    rgb = rgb << 4U | digit;
    if (digits.size() == 3) rgb = rgb << 4U | digit;
  }
  return rgb;
}

std::optional<std::uint32_t> threeNumbers(std::string_view inside) {
  std::uint32_t rgb = 0;
  int count = 0;
  for (std::size_t at = 0; at < inside.size() && count < 3; ++count) {
    while (at < inside.size() && (isBlank(inside[at]) || inside[at] == ',')) ++at;
    std::uint32_t number = 0;
    const std::size_t first = at;
    while (at < inside.size() && isDigit(inside[at]) && at - first < 4)
      number = number * 10 + static_cast<std::uint32_t>(inside[at++] - '0');
    if (at == first || number > 255) return std::nullopt;
    rgb = rgb << 8U | number;
  }
  return count == 3 ? std::optional(rgb) : std::nullopt;
}

bool startsWith(std::string_view value, std::string_view beginning) {
  return base::startsWithIgnoringAsciiCase(value, beginning);
}

std::uint8_t countOf(std::string_view value) {
  constexpr unsigned kMostTabs = 64;
  unsigned count = 0;
  for (const char c : value) {
    if (!isDigit(c)) break;
    count = std::min(kMostTabs, count * 10 + static_cast<unsigned>(c - '0'));
  }
  return static_cast<std::uint8_t>(count);
}

Style::Special elementNamed(std::string_view value) {
  using Special = Style::Special;
  constexpr std::array<std::pair<std::string_view, Special>, 11> kElements = {
      {{"field-begin", Special::fieldBegin},
       {"field-separator", Special::fieldSeparator},
       {"field-end", Special::fieldEnd},
       {"footnote-list", Special::footnotes},
       {"endnote-list", Special::endnotes},
       {"comment-list", Special::comments},
       {"header", Special::header},
       {"footer", Special::footer},
       {"footnote", Special::note},
       {"endnote", Special::note},
       {"comment", Special::note}}};
  for (const auto& [name, special] : kElements)
    if (equalsIgnoringAsciiCase(value, name)) return special;
  return Special::none;
}

void readDecoration(std::string_view value, Style& style) {
  std::size_t at = 0;
  while (at < value.size()) {
    while (at < value.size() && isBlank(value[at])) ++at;
    const std::size_t begin = at;
    while (at < value.size() && !isBlank(value[at])) ++at;
    const std::string_view word = value.substr(begin, at - begin);
    if (equalsIgnoringAsciiCase(word, "underline")) style.underlined = true;
    if (equalsIgnoringAsciiCase(word, "line-through")) style.struck = true;
    if (equalsIgnoringAsciiCase(word, "none")) style.underlined = style.struck = false;
  }
}

void readShown(std::string_view name, std::string_view value, Style& style) {
  const auto is = [&](std::string_view other) { return equalsIgnoringAsciiCase(name, other); };
  if (is("display")) {
    style.display = !startsWith(value, "none");
  } else if (is("mso-hide")) {
    style.msoHidden = startsWith(value, "all");
  } else if (is("white-space")) {
    const bool isPre = equalsIgnoringAsciiCase(value, "pre");
    style.preformatted = isPre;
  } else if (is("font-weight")) {
    style.bold = startsWith(value, "bold") || (!value.empty() && value[0] >= '6' && value[0] <= '9');
  } else if (is("font-style")) {
    style.italic = startsWith(value, "italic") || startsWith(value, "oblique");
  } else if (is("text-decoration") || is("text-decoration-line")) {
    readDecoration(value, style);
  } else if (is("text-align")) {
    style.align = startsWith(value, "center")  ? Style::Align::centre
                  : startsWith(value, "right") ? Style::Align::end
                                               : Style::Align::start;
  } else if (is("direction")) {
    style.rightToLeft = startsWith(value, "rtl");
  } else if (is("page-break-before")) {
    style.breaksPage = startsWith(value, "always");
  }
}

/// Reads the properties that Word alone writes.
void readWords(std::string_view name, std::string_view value, Style& style) {
  const auto is = [&](std::string_view other) { return equalsIgnoringAsciiCase(name, other); };
  if (is("mso-element")) {
    style.special = elementNamed(value);
  } else if (is("mso-special-character")) {
    if (startsWith(value, "comment")) style.special = Style::Special::commentPlace;
    if (startsWith(value, "line-break")) style.special = Style::Special::lineBreak;
  } else if (is("mso-spacerun")) {
    style.isSpaceRun = startsWith(value, "yes");
  } else if (is("mso-tab-count")) {
    style.tabs = countOf(value);
  } else if (is("mso-list")) {
    if (startsWith(value, "ignore")) style.special = Style::Special::listLabel;
  } else if (is("mso-footnote-id") || is("mso-endnote-id")) {
    style.isNoteReference = true;
    style.isEndnoteReference = is("mso-endnote-id");
  } else if (is("mso-break-type")) {
    style.breaksSection = startsWith(value, "section-break");
  } else if (is("mso-column-break-before")) {
    style.breaksColumn = startsWith(value, "always");
  }
}

template <class Value>
void take(std::optional<Value>& mine, const std::optional<Value>& other) {
  if (other) mine = other;
}

}  // namespace

std::string_view withoutBlanks(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::string_view nameOfColour(std::uint8_t colour) { return kColours.at(colour - 1U).name; }

std::optional<std::uint8_t> colourNamed(std::string_view value) {
  const std::size_t important = value.find('!');
  if (important != value.npos) value = withoutBlanks(value.substr(0, important));
  if (equalsIgnoringAsciiCase(value, "none") || equalsIgnoringAsciiCase(value, "transparent")) return 0;
  if (value.starts_with('#')) {
    const auto rgb = hexadecimal(value.substr(1));
    return rgb ? colourOf(*rgb) : std::nullopt;
  }
  if (startsWith(value, "rgb(")) {
    const auto rgb = threeNumbers(value.substr(4));
    return rgb ? colourOf(*rgb) : std::nullopt;
  }
  for (const Colour& colour : kColours)
    if (equalsIgnoringAsciiCase(colour.name, value)) return colour.index;
  return std::nullopt;
}

Style styleOf(std::string_view declarations) {
  Style style;
  forEachDeclaration(declarations, [&](std::string_view, std::string_view name, std::string_view value) {
    if (equalsIgnoringAsciiCase(name, "mso-highlight")) {
      if (const auto colour = colourNamed(value)) style.highlight = colour;
    } else if (equalsIgnoringAsciiCase(name, "background") ||
               equalsIgnoringAsciiCase(name, "background-color")) {
      style.background = colourNamed(value);
    } else if (startsWith(name, "mso-")) {
      style.hasOthers = true;
      readWords(name, value, style);
      if (equalsIgnoringAsciiCase(name, "mso-hide")) readShown(name, value, style);
    } else {
      // A highlight of ours may say these against a rule of the document.
      const bool isOurs =
          equalsIgnoringAsciiCase(name, "display") || equalsIgnoringAsciiCase(name, "white-space");
      style.hasOthers = style.hasOthers || !isOurs;
      readShown(name, value, style);
    }
  });
  return style;
}

bool Style::saysNothing() const {
  return !display && !msoHidden && !preformatted && !background && !highlight && !bold && !italic &&
         !underlined && !struck && !rightToLeft && !align && special == Special::none && tabs == 0 &&
         !isSpaceRun && !breaksPage && !breaksColumn && !breaksSection && !isNoteReference;
}

void Style::takeOver(const Style& other) {
  take(display, other.display);
  take(msoHidden, other.msoHidden);
  take(preformatted, other.preformatted);
  take(background, other.background);
  take(highlight, other.highlight);
  take(bold, other.bold);
  take(italic, other.italic);
  take(underlined, other.underlined);
  take(struck, other.struck);
  take(rightToLeft, other.rightToLeft);
  take(align, other.align);
  if (other.special != Special::none) special = other.special;
  if (other.tabs > 0) tabs = other.tabs;
  isSpaceRun = isSpaceRun || other.isSpaceRun;
  isNoteReference = isNoteReference || other.isNoteReference;
  isEndnoteReference = isEndnoteReference || other.isEndnoteReference;
  breaksPage = breaksPage || other.breaksPage;
  breaksColumn = breaksColumn || other.breaksColumn;
  breaksSection = breaksSection || other.breaksSection;
  hasOthers = hasOthers || other.hasOthers;
}

}  // namespace pluvo::formats::html
