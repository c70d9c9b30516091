#pragma once

#include <string>
#include <string_view>

namespace pluvo::base {

/// A JSON string, controls of every kind escaped. A byte that is not part of well-formed UTF-8 becomes the
/// escape of the lone surrogate U+DC00 plus the byte, which Python's os.fsencode, among others, turns back
/// into the byte: a name survives whole.
std::string jsonQuoted(std::string_view bytes);

}  // namespace pluvo::base
