#include "names.h"

#include "base/ascii.h"

#include <array>
#include <cstddef>

namespace pluvo::formats::html {

namespace {

struct Known {
  std::string_view text;
  Name name;
  unsigned traits;
};

constexpr unsigned kParagraph = kBlock | kExistsEmpty;

constexpr std::array kKnown = {
    Known{"a", Name::a, kFormatting},
    Known{"b", Name::b, kFormatting},
    Known{"big", Name::big, kFormatting},
    Known{"code", Name::code, kFormatting},
    Known{"del", Name::del, 0},
    Known{"em", Name::em, kFormatting},
    Known{"font", Name::font, kFormatting},
    Known{"i", Name::i, kFormatting},
    Known{"ins", Name::ins, 0},
    Known{"mark", Name::mark, 0},
    Known{"nobr", Name::nobr, kFormatting},
    Known{"s", Name::s, kFormatting},
    Known{"small", Name::small, kFormatting},
    Known{"span", Name::span, 0},
    Known{"strike", Name::strike, kFormatting},
    Known{"strong", Name::strong, kFormatting},
    Known{"sub", Name::sub, 0},
    Known{"sup", Name::sup, 0},
    Known{"tt", Name::tt, kFormatting},
    Known{"u", Name::u, kFormatting},
    Known{"o:p", Name::oP, 0},
    Known{"ruby", Name::ruby, 0},
    Known{"rt", Name::rt, 0},
    Known{"rp", Name::rp, 0},
    Known{"rtc", Name::rtc, 0},
    Known{"wbr", Name::wbr, kVoid},
    Known{"br", Name::br, kVoid},
    Known{"base", Name::base, kVoid},
    Known{"link", Name::link, kVoid},
    Known{"meta", Name::meta, kVoid},
    Known{"area", Name::area, kVoid},
    Known{"col", Name::col, kVoid},
    Known{"param", Name::param, kVoid},
    Known{"source", Name::source, kVoid},
    Known{"track", Name::track, kVoid},
    Known{"frame", Name::frame, kVoid},
    Known{"bgsound", Name::bgsound, kVoid},
    Known{"basefont", Name::basefont, kVoid},
    Known{"keygen", Name::keygen, kVoid},
    Known{"head", Name::head, 0},
    Known{"html", Name::html, 0},
    Known{"title", Name::title, kNothing | kRaw},
    Known{"style", Name::style, kNothing | kRaw},
    Known{"script", Name::script, kNothing | kRaw},
    Known{"template", Name::template_, kNothing},
    Known{"xml", Name::xml, kNothing},
    Known{"noframes", Name::noframes, kNothing | kRaw},
    Known{"noembed", Name::noembed, kNothing | kRaw},
    Known{"map", Name::map, kNothing},
    Known{"datalist", Name::datalist, kNothing},
    Known{"img", Name::img, kVoid | kPicture},
    Known{"image", Name::img, kVoid | kPicture},
    Known{"input", Name::input, kVoid | kPicture},
    Known{"textarea", Name::textarea, kPicture | kRaw},
    Known{"select", Name::select, kPicture},
    Known{"object", Name::object, kPicture},
    Known{"embed", Name::embed, kVoid | kPicture},
    Known{"iframe", Name::iframe, kPicture | kRaw},
    Known{"video", Name::video, kPicture},
    Known{"audio", Name::audio, kPicture},
    Known{"canvas", Name::canvas, kPicture},
    Known{"applet", Name::applet, kPicture},
    Known{"svg", Name::svg, kPicture},
    Known{"math", Name::math, kPicture},
    Known{"address", Name::address, kBlock | kDivision},
    Known{"article", Name::article, kBlock},
    Known{"aside", Name::aside, kBlock},
    Known{"blockquote", Name::blockquote, kBlock | kDivision},
    Known{"body", Name::body, kBlock},
    Known{"center", Name::center, kBlock | kDivision},
    Known{"details", Name::details, kBlock},
    Known{"dialog", Name::dialog, kBlock},
    Known{"dir", Name::dir, kBlock},
    Known{"div", Name::div, kBlock | kDivision},
    Known{"dl", Name::dl, kBlock},
    Known{"fieldset", Name::fieldset, kBlock},
    Known{"figcaption", Name::figcaption, kBlock},
    Known{"figure", Name::figure, kBlock},
    Known{"footer", Name::footer, kBlock},
    Known{"form", Name::form, kBlock},
    Known{"frameset", Name::frameset, kBlock},
    Known{"header", Name::header, kBlock},
    Known{"hgroup", Name::hgroup, kBlock},
    Known{"hr", Name::hr, kBlock | kVoid},
    Known{"legend", Name::legend, kBlock},
    Known{"main", Name::main, kBlock},
    Known{"menu", Name::menu, kBlock},
    Known{"nav", Name::nav, kBlock},
    Known{"ol", Name::ol, kBlock},
    Known{"optgroup", Name::optgroup, 0},
    Known{"option", Name::option, 0},
    Known{"search", Name::search, kBlock},
    Known{"section", Name::section, kBlock},
    Known{"summary", Name::summary, kBlock},
    Known{"ul", Name::ul, kBlock},
    Known{"p", Name::p, kParagraph},
    Known{"h1", Name::h1, kParagraph | kHeading},
    Known{"h2", Name::h2, kParagraph | kHeading},
    Known{"h3", Name::h3, kParagraph | kHeading},
    Known{"h4", Name::h4, kParagraph | kHeading},
    Known{"h5", Name::h5, kParagraph | kHeading},
    Known{"h6", Name::h6, kParagraph | kHeading},
    Known{"li", Name::li, kParagraph},
    Known{"dt", Name::dt, kParagraph},
    Known{"dd", Name::dd, kParagraph},
    Known{"pre", Name::pre, kParagraph | kPreformatted},
    Known{"listing", Name::listing, kParagraph | kPreformatted},
    Known{"xmp", Name::xmp, kBlock | kRaw | kPreformatted},
    Known{"plaintext", Name::plaintext, kBlock | kRaw | kPreformatted},
    Known{"table", Name::table, kBlock | kTablePart},
    Known{"caption", Name::caption, kBlock},
    Known{"colgroup", Name::colgroup, kBlock | kTablePart | kVoid},
    Known{"tbody", Name::tbody, kBlock | kTablePart},
    Known{"thead", Name::thead, kBlock | kTablePart},
    Known{"tfoot", Name::tfoot, kBlock | kTablePart},
    Known{"tr", Name::tr, kBlock | kTablePart},
    Known{"td", Name::td, kBlock | kCell},
    Known{"th", Name::th, kBlock | kCell},
};

constexpr std::size_t kSlots = 512;

constexpr std::size_t hashOf(std::string_view name) {
  std::uint32_t hash = 2166136261U;
  for (const char c : name) hash = (hash ^ static_cast<std::uint8_t>(base::asciiLower(c))) * 16777619U;
  return (hash ^ hash >> 15U) % kSlots;
}

struct Tables {
  std::array<std::uint8_t, kSlots> slots{};  ///< one more than the place in kKnown
  std::array<std::uint16_t, static_cast<std::size_t>(Name::count)> traits{};
};

constexpr Tables makeTables() {
  Tables tables;
  for (std::size_t i = 0; i < kKnown.size(); ++i) {
    std::size_t slot = hashOf(kKnown[i].text);
    while (tables.slots[slot] != 0) slot = (slot + 1) % kSlots;
    tables.slots[slot] = static_cast<std::uint8_t>(i + 1);
    tables.traits[static_cast<std::size_t>(kKnown[i].name)] = static_cast<std::uint16_t>(kKnown[i].traits);
  }
  return tables;
}

constexpr Tables kTables = makeTables();

}  // namespace

Name nameOf(std::string_view name) {
  for (std::size_t slot = hashOf(name); kTables.slots[slot] != 0; slot = (slot + 1) % kSlots) {
    const Known& known = kKnown[kTables.slots[slot] - 1U];
    if (known.text.size() == name.size() && base::equalsIgnoringAsciiCase(known.text, name))
      return known.name;
  }
  return Name::unknown;
}

unsigned traitsOf(Name name) { return kTables.traits[static_cast<std::size_t>(name)]; }

}  // namespace pluvo::formats::html
