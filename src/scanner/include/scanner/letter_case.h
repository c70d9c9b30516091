#pragma once

#include <string>
#include <string_view>

namespace pluvo::scanner {

/// Every unit by itself, so that the length stays; the same whatever the user's locale.
std::u16string upperCase(std::u16string_view text);

}  // namespace pluvo::scanner
