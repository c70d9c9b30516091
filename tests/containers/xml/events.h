#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pluvo::xml {

/// A document as a reader sees it, one event a line, in a form that two parsers can be compared by: names
/// with their namespaces, values and text with references resolved and line ends made one, neighbouring text
/// joined. Nothing when the parser refuses the document.
std::optional<std::string> eventsOfScanner(std::string_view utf8);
std::optional<std::string> eventsOfExpat(std::string_view utf8);

/// Whether the two may differ on this document: the scanner refuses document types and a byte order mark, and
/// takes the names of XML's fifth edition where expat takes the fourth's.
bool mayDiffer(std::string_view utf8);

}  // namespace pluvo::xml
