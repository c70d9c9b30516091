#pragma once

#include "base/little_endian.h"

#include <cstddef>
#include <cstdint>

namespace pluvo::doc {

/// Properties by the codes they have in the file.
namespace code {
inline constexpr std::uint16_t kParagraphStyle = 0x4600, kAlignment80 = 0x2403, kListLevel = 0x260A,
                               kList = 0x460B, kInTable = 0x2416, kRowEnd = 0x2417, kRightToLeft = 0x2441,
                               kInnerCell = 0x244B, kInnerRow = 0x244C, kAlignment = 0x2461,
                               kOutlineLevel = 0x2640, kHuge = 0x6646, kOldHuge = 0x6645, kDepth = 0x6649,
                               kDepthBy = 0x664A;
inline constexpr std::uint16_t kDeleted = 0x0800, kInserted = 0x0801, kData = 0x0806, kBold = 0x0835,
                               kItalic = 0x0836, kStruck = 0x0837, kHidden = 0x083C, kSpecial = 0x0855,
                               kObject = 0x0856, kHighlight = 0x2A0C, kPlain = 0x2A33, kUnderline = 0x2A3E,
                               kDoublyStruck = 0x2A53, kCharacterStyle = 0x4A30, kSymbol = 0x6A09,
                               kPicture = 0x6A03, kOle = 0x080A, kLocation = 0x680E, kField = 0x0802,
                               kControl = 0x2A90, kInsertedBy = 0x4804, kInsertedAt = 0x6805,
                               kDeletedBy = 0x4863, kDeletedAt = 0x6864, kLookChanged = 0xCA89,
                               kLookChanged90 = 0xCA57, kFieldChanged = 0xCA62;
inline constexpr std::uint16_t kRowDefinition = 0xD608, kTabs = 0xC615;
}  // namespace code

/// The properties in a row of bytes: visit(code, operand, all its bytes). A property that is cut off is left
/// out.
template <class Visit>
void forEachWholeProperty(base::ByteSpan bytes, Visit visit) {
  std::size_t at = 0;
  while (at + 2 < bytes.size()) {
    const std::uint16_t property = base::get16(bytes, at);
    const std::size_t from = at;
    at += 2;
    std::size_t size = 0;
    std::size_t skip = 0;  // a length in front of the operand
    switch (property >> 13U) {
      case 0:
      case 1:
        size = 1;
        break;
      case 3:
        size = 4;
        break;
      case 7:
        size = 3;
        break;
      case 6:
        if (property == code::kRowDefinition) {
          if (at + 2 > bytes.size()) return;
          size = base::get16(bytes, at);
          size = size == 0 ? 0 : size - 1;
          skip = 2;
          break;
        }
        skip = 1;
        size = bytes[at];
        if (property == code::kTabs && size == 255) {
          // Two lists of tabs, each with its count: those deleted with 4 bytes each, those added with 3.
          if (at + 1 >= bytes.size()) return;
          const std::size_t added = at + 2 + bytes[at + 1] * std::size_t{4};
          if (added >= bytes.size()) return;
          size = added + 1 + bytes[added] * std::size_t{3} - at - 1;
        }
        break;
      default:
        size = 2;
    }
    if (skip + size > bytes.size() - at) return;
    visit(property, bytes.subspan(at + skip, size), bytes.subspan(from, at + skip + size - from));
    at += skip + size;
  }
}

/// The same without all the bytes: visit(code, operand).
template <class Visit>
void forEachProperty(base::ByteSpan bytes, Visit visit) {
  forEachWholeProperty(bytes, [&](std::uint16_t property, base::ByteSpan operand, base::ByteSpan) {
    visit(property, operand);
  });
}

}  // namespace pluvo::doc
