#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pluvo::xml {

/// A document as a reader sees it, one event a line, in a form in which two parsers can be compared. Names
/// have their namespaces, values and text their references resolved. Line ends are made one, neighbouring
/// text is joined. Nothing when the parser refuses the document.
std::optional<std::string> eventsOfScanner(std::string_view utf8);
std::optional<std::string> eventsOfExpat(std::string_view utf8);

/// Whether the two may differ on this document. The scanner refuses document types and a byte order mark. It
/// takes the names of XML's fifth edition where expat takes the fourth's.
bool mayDiffer(std::string_view utf8);

}  // namespace pluvo::xml
