#pragma once

#include "base/bytes.h"
#include "text/positions.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace pluvo::doc {

/// Makes a table of places and elements.
class PlcWriter {
 public:
  void add(text::Position place, base::ByteSpan element) {
    append(places_, place);
    elements_.append(element.begin(), element.end());
    ++count_;
  }
  std::size_t count() const { return count_; }

  /// With the place after the last element; none where there is no element.
  std::string bytes(text::Position last) const {
    if (count_ == 0) return {};
    std::string all = places_;
    append(all, last);
    return all + elements_;
  }

 private:
  static void append(std::string& bytes, text::Position place) {
    for (unsigned i = 0; i < 4; ++i)
      bytes += static_cast<char>(static_cast<std::uint32_t>(place) >> (8 * i) & 0xFFU);
  }

  std::string places_;
  std::string elements_;
  std::size_t count_ = 0;
};

}  // namespace pluvo::doc
