#pragma once

#include "byte_needle.h"
#include "scan.h"
#include "text/original.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::text {

/// How a needle looks in a text of one width.
template <class Unit>
struct Shape {
  /// It holds a unit that such a text cannot.
  bool impossible = false;
  /// Tests of its two rarest units; none where units have too many forms for a test.
  std::optional<ProbePair<Unit>> probes;
  /// Its units, where there is but one way to write it; else empty.
  std::vector<Unit> exact;
};

/// The text searched for, prepared. Units are compared in their canonical form: folded when case does not
/// matter.
class Needle {
 public:
  /// The canonical form of each byte of a narrow text.
  using NarrowForms = std::array<char16_t, 256>;

  Needle(std::u16string_view text, bool matchCase);

  std::size_t length() const { return units_.size(); }
  const char16_t* units() const { return units_.data(); }
  bool matchCase() const { return matchCase_; }
  /// borders()[n]: the length of the longest proper prefix of the needle that is also a suffix of its first n
  /// units.
  const std::vector<std::uint32_t>& borders() const { return borders_; }

  const NarrowForms& narrowForms(bool lineFeedIsMark) const;
  const Shape<std::uint8_t>& narrow(bool lineFeedIsMark) const { return narrow_[lineFeedIsMark ? 1 : 0]; }
  const Shape<char16_t>& wide() const { return wide_; }
  /// As it looks in the bytes of a text. Made at the first call, since few texts lie in bytes.
  const ByteNeedle& in(const BytesText& text) const {
    const ByteNeedle* const made = utf8Made_.load(std::memory_order_acquire);
    return made != nullptr && text.coding() == nullptr ? *made : makeIn(text.coding());
  }

 private:
  const ByteNeedle& makeIn(const ByteCoding* coding) const;

  bool matchCase_;
  std::u16string units_;
  std::vector<std::uint32_t> borders_;
  std::array<Shape<std::uint8_t>, 2> narrow_;
  Shape<char16_t> wide_;
  mutable std::mutex mutex_;
  mutable std::map<const ByteCoding*, ByteNeedle> inBytes_;  ///< under the mutex
  mutable std::atomic<const ByteNeedle*> utf8Made_ = nullptr;
};

}  // namespace pluvo::text
