#pragma once

#include <string>
#include <string_view>

namespace pluvo::runs {

/// Text for a page; bytes that are no UTF-8 become U+FFFD.
std::string escaped(std::string_view bytes);

}  // namespace pluvo::runs
