#pragma once

#include "text/byte_coding.h"
#include "text/bytes_text.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace pluvo::text {

/// A text as it lies in bytes of another encoding than UTF-8.
///
/// Where units lie is arithmetic where each has as many bytes as the next. Elsewhere it is noted for every
/// 1,024th byte how many units begin in front of it, and whether it is the second byte of one.
class CodedText final : public BytesText {
 public:
  /// Facts about bytes, from one look at them.
  struct Survey {
    bool unassigned = false;    ///< a byte stands for nothing by the encoding; told of single bytes alone
    bool valid = false;         ///< each byte has a meaning; the fields below are known only then
    std::size_t lineFeeds = 0;  ///< alone
    std::size_t carriageReturns = 0;
    std::size_t pairs = 0;  ///< CR LF
    bool zeros = false;     ///< a byte is zero; told of all but UTF-16
    /// The text has one paragraph mark after its bytes.
    std::shared_ptr<const CodedText> text;
  };
  /// One more byte, a carriage return, lies after these. There are fewer than 2^31 units. The coding lives
  /// as long as the program. UTF-16 has an even number of bytes.
  static Survey survey(Bytes bytes, const std::shared_ptr<const void>& owner, const ByteCoding& coding);

  const ByteCoding* coding() const override { return &coding_; }
  Place placeOf(Position position) const override;
  Position positionAt(std::size_t offset) const override;
  Position positionAfter(Position position, std::size_t offset, std::size_t wanted) const override;
  void learn(Position position, std::size_t offset) const override {
    remember(static_cast<std::size_t>(position), offset);
  }
  bool beginsUnit(std::size_t offset) const override;
  char16_t operator[](Position position) const override;
  void copy(Position from, Position to, char16_t* out) const override;
  std::size_t unitsIn(std::size_t from, std::size_t to) const override;
  Place walk(std::size_t from, Position units) const override;

 private:
  CodedText(Bytes bytes, Position length, const std::shared_ptr<const void>& owner, const ByteCoding& coding)
      : BytesText(bytes, length, owner), coding_(coding) {}

  /// A unit, and a byte in front of which so many units begin.
  struct Known {
    std::uint32_t position = 0;
    std::uint32_t offset = 0;
    bool isSecond = false;  ///< the byte is the second one of the unit before
  };
  Known note(std::size_t number) const;
  Known noteBefore(std::uint32_t position) const;
  /// The last one known in front of an offset.
  Known knownBefore(std::size_t offset) const;
  Known recent() const {
    const std::uint64_t both = recent_.load(std::memory_order_relaxed);
    return {static_cast<std::uint32_t>(both >> 32U), static_cast<std::uint32_t>(both)};
  }
  void remember(std::size_t position, std::size_t offset) const {
    recent_.store(std::uint64_t{position} << 32U | offset, std::memory_order_relaxed);
  }

  const ByteCoding& coding_;
  std::unique_ptr<std::uint32_t[]> notes_;  ///< null where places are arithmetic
  std::size_t noteCount_ = 0;
  /// A position and the place of its unit, mostly near the next question; one number, so that threads see
  /// both of its halves. Written all the time: apart from what other threads read.
  alignas(64) mutable std::atomic<std::uint64_t> recent_ = 0;
};

}  // namespace pluvo::text
