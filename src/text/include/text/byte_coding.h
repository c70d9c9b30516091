#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace pluvo::text {

struct CodingTables;

/// How bytes stand for UTF-16 units where each unit has bytes of its own: one byte a unit, one or two, or
/// always two. Below 80 they are ASCII, unless they are the second of two. Not for UTF-8, whose units need
/// more.
class ByteCoding {
 public:
  enum class Kind : std::uint8_t { bytes, pairs, littleUnits, bigUnits };

  /// What each byte stands for by itself, and for each lead in order what the 256 pairs stand for that begin
  /// with it; kNone for nothing. A lead by itself stands for nothing.
  struct Lead {
    std::uint8_t byte = 0;
    std::array<char16_t, 256> pairs{};
  };
  ByteCoding(const std::array<char16_t, 256>& singles, const std::vector<Lead>& leads);
  /// Of one byte a unit. A byte that stands for nothing is read as the unit of its value.
  explicit ByteCoding(const std::array<char16_t, 256>& singles);
  /// Of UTF-16.
  explicit ByteCoding(Kind order);
  ~ByteCoding();
  ByteCoding(const ByteCoding&) = delete;
  ByteCoding& operator=(const ByteCoding&) = delete;

  static constexpr char16_t kNone = 0xDC00;

  Kind kind() const { return kind_; }
  bool isUtf16() const { return kind_ == Kind::littleUnits || kind_ == Kind::bigUnits; }
  std::size_t leastBytes() const { return isUtf16() ? 2 : 1; }
  bool isLead(std::uint8_t byte) const { return kind_ == Kind::pairs && rows_[byte] != 0; }

  struct Unit {
    char16_t unit = 0;
    std::size_t bytes = 1;
  };
  /// The unit at an offset where one begins. A line end is a paragraph mark.
  Unit unitAt(std::span<const std::uint8_t> bytes, std::size_t offset) const;
  /// Writes units that follow each other, from an offset where one begins, until so many are written or the
  /// bytes end. Returns the offset after them.
  std::size_t decode(std::span<const std::uint8_t> bytes, std::size_t offset, char16_t*& out,
                     const char16_t* end) const;
  /// All the ways to write a unit.
  std::vector<std::vector<std::uint8_t>> formsOf(char16_t unit) const;
  /// Whether a unit begins at an offset, for bytes whose first begins one. Adds to work how many bytes in
  /// front were looked at.
  bool beginsUnit(std::span<const std::uint8_t> bytes, std::size_t offset, std::size_t& work) const;

  const CodingTables& tables() const { return *tables_; }

 private:
  /// The 16-bit unit, as it lies there.
  char16_t wideAt(const std::uint8_t* bytes) const {
    const bool little = kind_ == Kind::littleUnits;
    return static_cast<char16_t>(bytes[little ? 1 : 0] << 8U | bytes[little ? 0 : 1]);
  }

  Kind kind_;
  std::array<char16_t, 256> singles_{};
  std::array<std::uint16_t, 256> rows_{};  ///< of a lead in pairs_, from 1; 0 for none
  std::vector<char16_t> pairs_;
  std::unique_ptr<bool[]> arePairs_;
  std::unique_ptr<CodingTables> tables_;
};

}  // namespace pluvo::text
