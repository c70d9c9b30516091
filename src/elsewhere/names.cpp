#include "elsewhere/elsewhere.h"

namespace pluvo::elsewhere {

namespace {

struct Named {
  std::string_view key;
  std::string_view words;
};

constexpr std::array<Named, formats::kUnreached> kUnreachedNames = {{
    {"hidden", "hidden text"},
    {"fieldCodes", "field codes"},
    {"fieldResults", "field results"},
    {"computed", "text that Word computes"},
    {"charts", "charts"},
    {"formulas", "formulas"},
    {"wordArt", "WordArt"},
    {"smartArt", "SmartArt"},
    {"guides", "phonetic guides"},
    {"chunks", "imported files"},
    {"pictureTexts", "alternative texts"},
    {"properties", "document properties"},
    {"customXml", "custom XML"},
    {"variables", "document variables"},
    {"glossary", "glossary entries"},
    {"people", "names of people"},
    {"embedded", "embedded documents"},
    {"pageComments", "comments of the page's source"},
    {"scripts", "scripts"},
    {"styleSheets", "style sheets"},
    {"templates", "templates"},
    {"formFields", "form fields"},
    {"earlier", "text of earlier versions"},
    {"otherPrograms", "data of other programs"},
}};

constexpr std::array<Named, formats::kOpaque> kOpaqueNames = {{
    {"objects", "embedded objects"},
    {"pictures", "pictures"},
    {"macros", "macros"},
    {"thumbnail", "the thumbnail"},
    {"scriptedText", "text that scripts write"},
}};

template <class Names, class Kind>
const Named& named(const Names& names, Kind kind) {
  return names[static_cast<std::size_t>(kind)];
}

}  // namespace

std::string_view keyOf(formats::Unreached kind) { return named(kUnreachedNames, kind).key; }
std::string_view keyOf(formats::Opaque kind) { return named(kOpaqueNames, kind).key; }
std::string_view wordsOf(formats::Unreached kind) { return named(kUnreachedNames, kind).words; }
std::string_view wordsOf(formats::Opaque kind) { return named(kOpaqueNames, kind).words; }

}  // namespace pluvo::elsewhere
