#pragma once

#include "base/little_endian.h"
#include "text/positions.h"

#include <cstddef>

namespace pluvo::doc {

/// A table of places in a text, one more than it has elements, which follow all places.
class Plc {
 public:
  Plc(base::ByteSpan bytes, std::size_t elementSize)
      : bytes_(bytes),
        elementSize_(elementSize),
        count_(bytes.size() < 4 ? 0 : (bytes.size() - 4) / (4 + elementSize)) {}

  std::size_t count() const { return count_; }
  /// Of the element, or after the last one. Whatever the file says: maybe outside the text.
  text::Position place(std::size_t i) const {
    return static_cast<text::Position>(base::get32(bytes_, i * 4));
  }
  bool hasPlaces() const { return bytes_.size() >= 4; }
  base::ByteSpan element(std::size_t i) const {
    return bytes_.subspan((count_ + 1) * 4 + i * elementSize_, elementSize_);
  }

 private:
  base::ByteSpan bytes_;
  std::size_t elementSize_;
  std::size_t count_;
};

}  // namespace pluvo::doc
