#pragma once

#include <string>
#include <string_view>

namespace pluvo::cli {

/// The value of an option that takes a number. Throws UsageError outside the bounds, which belong to it.
int numberFrom(const std::string& typed, std::string_view option, int least, int most);

}  // namespace pluvo::cli
