#pragma once

#include "text/chunked_stack.h"
#include "text/positions.h"

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace pluvo::text {

/// Where a unit of an original lies in its UTF-8 bytes.
struct BytePlace {
  Position position = 0;
  std::uint32_t offset = 0;
};

/// Places from front to back. There may be millions of them: where they lie close together each takes two
/// bytes.
class BytePlaces {
 public:
  /// Null where there is none.
  const BytePlace* last() const { return steps_.empty() ? nullptr : &last_; }
  /// Of a unit after the last one's. No unit has less than a byte.
  void push(BytePlace place) {
    assert(place.position > last_.position || steps_.empty());
    const auto units = static_cast<std::uint32_t>(place.position - last_.position);
    const std::uint32_t more = place.offset - last_.offset - units;
    if (units < kFar && more <= 0xFF) {
      steps_.push(static_cast<std::uint16_t>(units << 8U | more));
    } else {
      steps_.push(kFar << 8U);
      for (const std::uint32_t number : {units, more})
        for (const unsigned shift : {0U, 16U}) steps_.push(static_cast<std::uint16_t>(number >> shift));
    }
    last_ = place;
  }

 private:
  friend class BytePlaceCursor;
  using Steps = ChunkedStack<std::uint16_t, 1024>;
  static constexpr std::uint16_t kFar = 0xFF;

  /// From place to place: the units in the upper byte, in the lower one by how much the bytes are more. After
  /// kFar in the upper byte both follow, in two halves each, the lower half first.
  Steps steps_;
  BytePlace last_;
};

/// Looks places up from front to back.
class BytePlaceCursor {
 public:
  explicit BytePlaceCursor(const BytePlaces& places) : steps_(places.steps_) {}
  /// Where a unit lies, which is not in front of the last one asked for; none where that was not noted.
  std::optional<std::size_t> offsetOf(Position position) {
    while (isAtStart_ || place_.position < position) {
      if (steps_.peek() == nullptr) return std::nullopt;
      isAtStart_ = false;
      step();
    }
    if (place_.position != position) return std::nullopt;
    return place_.offset;
  }

 private:
  void step() {
    const std::uint32_t both = half();
    std::uint32_t units = both >> 8U;
    std::uint32_t more = both & 0xFFU;
    if (units == BytePlaces::kFar) {
      units = half();
      units |= half() << 16U;
      more = half();
      more |= half() << 16U;
    }
    place_.position += static_cast<Position>(units);
    place_.offset += units + more;
  }
  std::uint32_t half() {
    const std::uint32_t half = *steps_.peek();
    steps_.next();
    return half;
  }

  BytePlaces::Steps::Reader steps_;
  BytePlace place_;
  bool isAtStart_ = true;  ///< before the first place
};

}  // namespace pluvo::text
