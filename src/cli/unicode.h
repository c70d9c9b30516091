#pragma once

#include <cstddef>
#include <string_view>

namespace pluvo::cli {

/// How many of the first bytes are well-formed UTF-8 (overlong forms, surrogates and values beyond U+10FFFF
/// are not). For what is well-formed, errors/text.h converts.
std::size_t wellFormedLength(std::string_view bytes);

}  // namespace pluvo::cli
