#pragma once

#include "base/bytes.h"

#include <functional>
#include <string_view>

namespace pluvo::doc {

/// Tells the texts of a stream of properties, and whether it holds a thumbnail. What cannot be read is left
/// out.
struct PropertyTexts {
  std::function<void(std::u16string_view)> text;
  std::function<void()> thumbnail;
};
void tellPropertySet(base::ByteSpan stream, const PropertyTexts& texts);

}  // namespace pluvo::doc
