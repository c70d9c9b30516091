#pragma once

#include "hashing.h"

#include <optional>
#include <string>
#include <string_view>

namespace pluvo::encryption {

/// Nothing where that is no Base64.
std::optional<Octets> decoded(std::string_view base64);
std::string encoded(base::ByteSpan bytes);

}  // namespace pluvo::encryption
