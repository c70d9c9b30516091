#pragma once

#include "text/bytes_text.h"
#include "text/positions.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace pluvo::text {

/// A text as it lies in UTF-8 bytes.
///
/// For every 1,024th byte it is noted how many units begin in front of it; from there on they are counted on
/// demand. Asking for places one after the other costs no more than walking from one to the next.
class Utf8Text final : public BytesText {
 public:
  /// Facts about bytes, from one look at them as UTF-8.
  struct Survey {
    bool valid = false;  ///< they are UTF-8; the fields below are known only then
    bool ascii = false;
    bool zeros = false;
    std::size_t lineFeeds = 0;  ///< alone
    std::size_t carriageReturns = 0;
    std::size_t pairs = 0;  ///< CR LF
    /// The text has one paragraph mark after its bytes. Null where each unit is a byte.
    std::shared_ptr<const Utf8Text> text;
  };
  /// One more byte, a carriage return, lies after these. There are fewer than 2^31.
  static Survey survey(Bytes bytes, const std::shared_ptr<const void>& owner);

  const ByteCoding* coding() const override { return nullptr; }
  Place placeOf(Position position) const override;
  Position positionAt(std::size_t offset) const override;
  Position positionAfter(Position position, std::size_t offset, std::size_t wanted) const override;
  void learn(Position position, std::size_t offset) const override {
    const Known known{static_cast<std::uint32_t>(position), static_cast<std::uint32_t>(offset)};
    learned(position).store(packed(known), std::memory_order_relaxed);
    remember(known);
  }
  bool beginsUnit(std::size_t offset) const override;
  char16_t operator[](Position position) const override;
  void copy(Position from, Position to, char16_t* out) const override;
  std::size_t unitsIn(std::size_t from, std::size_t to) const override;
  Place walk(std::size_t from, Position units) const override;

 private:
  Utf8Text(Bytes bytes, Position length, const std::shared_ptr<const void>& owner)
      : BytesText(bytes, length, owner) {}

  /// A unit, and a byte in front of which so many units begin: mostly the first of its character.
  struct Known {
    std::uint32_t position = 0;
    std::uint32_t offset = 0;
  };
  std::size_t noteCount() const;
  Known note(std::size_t number) const;
  /// The last note that does not lie after a unit.
  Known noteBefore(std::uint32_t position) const;
  /// One number, so that threads see both halves.
  using PackedKnown = std::atomic<std::uint64_t>;
  static std::uint64_t packed(Known known) { return std::uint64_t{known.position} << 32U | known.offset; }
  static Known unpacked(const PackedKnown& known) {
    const std::uint64_t both = known.load(std::memory_order_relaxed);
    return {static_cast<std::uint32_t>(both >> 32U), static_cast<std::uint32_t>(both)};
  }
  Known recent() const { return unpacked(recent_); }
  void remember(Known known) const { recent_.store(packed(known), std::memory_order_relaxed); }
  PackedKnown& learned(Position position) const {
    return learned_[static_cast<std::uint32_t>(position) * 0x9E3779B1U >> 24U];
  }

  std::unique_ptr<std::uint32_t[]> notes_;
  // Written all the time: apart from what other threads read.
  alignas(64) mutable PackedKnown recent_ = 0;  ///< mostly near the next question
  mutable std::array<PackedKnown, 256> learned_{};
};

/// Walks through the bytes of a text front to back, counting every unit anew: what a text has noted is not
/// asked.
class Utf8Walk {
 public:
  explicit Utf8Walk(Utf8Text::Bytes bytes) : bytes_(bytes) {}
  /// Where a unit lies, which is not in front of the last one asked for; after all bytes beyond the end.
  Utf8Text::Place to(Position position);

 private:
  Utf8Text::Bytes bytes_;
  Position position_ = 0;  ///< of a unit that begins a character
  std::size_t offset_ = 0;
};

}  // namespace pluvo::text
