#pragma once

#include "formats/opened.h"
#include "html/html_format.h"

#include <string>
#include <string_view>

namespace pluvo::formats::html {

inline OpenedFile open(std::string_view file) { return openAll(HtmlFormat(), file); }

/// As Word writes it; the note has one to the reference.
inline std::string noteReference(const std::string& note, const std::string& here) {
  return "<a style='mso-footnote-id:" + note + "' href='#_" + note + "' name=_" + here +
         "><span style='mso-special-character:footnote'></span></a>";
}

}  // namespace pluvo::formats::html
