#pragma once

#include "text/chunked_stack.h"
#include "text/positions.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace pluvo::text {

/// Where a unit of an original lies in its UTF-8 bytes.
struct BytePlace {
  Position position = 0;
  std::uint32_t offset = 0;
};
using BytePlaces = ChunkedStack<BytePlace>;

/// Looks places up from front to back.
class BytePlaceCursor {
 public:
  explicit BytePlaceCursor(const BytePlaces& places) : places_(places) {}
  /// Where a unit lies, which is not in front of the last one asked for; none where that was not noted.
  std::optional<std::size_t> offsetOf(Position position) {
    const BytePlace* place = places_.peek();
    for (; place != nullptr && place->position < position; place = places_.peek()) places_.next();
    if (place == nullptr || place->position != position) return std::nullopt;
    return place->offset;
  }

 private:
  BytePlaces::Reader places_;
};

}  // namespace pluvo::text
