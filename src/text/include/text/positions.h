#pragma once

#include <cstdint>

/// Positions and lengths in a text are signed 32-bit UTF-16 units. A span is written (from, to): from is in
/// it, to is not.
namespace pluvo::text {

using Position = std::int32_t;

inline constexpr Position kMaxLength = 0x7FFFFFFE;

struct Span {
  Position from = 0;
  Position to = 0;
  Position length() const { return to - from; }
  bool empty() const { return from >= to; }
  bool operator==(const Span&) const = default;
};

/// The characters with a meaning of their own in a document's text.
inline constexpr char16_t kPicture = 1;
inline constexpr char16_t kNoteReference = 2;
inline constexpr char16_t kCommentReference = 5;
inline constexpr char16_t kCellMark = 7;  ///< ends a table cell; also the row mark
inline constexpr char16_t kFloatingPicture = 8;
inline constexpr char16_t kTab = 9;
inline constexpr char16_t kLineBreak = 11;
inline constexpr char16_t kPageBreak = 12;  ///< page break, or section mark where the structure says so
inline constexpr char16_t kParagraphMark = 13;
inline constexpr char16_t kColumnBreak = 14;
inline constexpr char16_t kFieldBegin = 19;
inline constexpr char16_t kFieldSeparator = 20;
inline constexpr char16_t kFieldEnd = 21;
inline constexpr char16_t kNonBreakingHyphen = 30;
inline constexpr char16_t kOptionalHyphen = 31;

}  // namespace pluvo::text
