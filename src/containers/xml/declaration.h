#pragma once

#include <string_view>

namespace pluvo::xml {

/// Whether this, which follows the word "xml" in an instruction, makes it an XML declaration.
bool isDeclaration(std::string_view text);

}  // namespace pluvo::xml
