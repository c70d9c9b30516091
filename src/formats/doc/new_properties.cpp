#include "new_properties.h"

#include "properties.h"

#include <algorithm>
#include <array>

namespace pluvo::doc {

namespace {

constexpr unsigned kOfParagraph = 1, kOfCharacter = 2;

unsigned subjectOf(std::uint16_t property) { return property >> 10U & 7U; }

/// Properties for the kind of a character, not for its looks.
constexpr std::array<std::uint16_t, 9> kSpecials = {code::kSpecial,  code::kPicture, code::kObject,
                                                    code::kOle,      code::kData,    code::kSymbol,
                                                    code::kLocation, code::kField,   code::kControl};
constexpr std::array<std::uint16_t, 6> kOfInsertions = {code::kInserted,      code::kInsertedBy,
                                                        code::kInsertedAt,    code::kLookChanged,
                                                        code::kLookChanged90, code::kFieldChanged};
constexpr std::array<std::uint16_t, 3> kOfDeletions = {code::kDeleted, code::kDeletedBy, code::kDeletedAt};
constexpr std::array<std::uint16_t, 3> kOfStructure = {code::kInnerCell, code::kInnerRow, code::kRowEnd};
constexpr std::array<std::uint16_t, 3> kOfTables = {code::kInTable, code::kDepth, code::kDepthBy};

template <std::size_t Count>
bool isIn(const std::array<std::uint16_t, Count>& all, std::uint16_t property) {
  return std::ranges::find(all, property) != all.end();
}

template <class Stays>
std::string onlyThose(base::ByteSpan properties, Stays stays) {
  std::string kept;
  forEachWholeProperty(properties, [&](std::uint16_t property, base::ByteSpan, base::ByteSpan whole) {
    if (stays(property)) kept.append(whole.begin(), whole.end());
  });
  return kept;
}

std::string flag(std::uint16_t property, bool value) {
  return {static_cast<char>(property & 0xFFU), static_cast<char>(property >> 8U), value ? '\1' : '\0'};
}

}  // namespace

std::string forNewCharacters(base::ByteSpan properties, bool deleted) {
  return onlyThose(properties, [&](std::uint16_t property) {
    if (subjectOf(property) != kOfCharacter || property == code::kHighlight) return false;
    if (isIn(kOfDeletions, property)) return deleted;
    return !isIn(kSpecials, property) && !isIn(kOfInsertions, property);
  });
}

std::string forNewParagraph(base::ByteSpan properties) {
  bool isHuge = false;
  std::string kept = onlyThose(properties, [&](std::uint16_t property) {
    isHuge = isHuge || property == code::kHuge || property == code::kOldHuge;
    return subjectOf(property) == kOfParagraph && !isIn(kOfStructure, property);
  });
  // Properties elsewhere may say it again.
  if (isHuge)
    for (const std::uint16_t property : kOfStructure) kept += flag(property, false);
  return kept;
}

std::string atDepth(const std::string& properties, std::int32_t depth) {
  std::string kept =
      onlyThose(bytesOf(properties), [](std::uint16_t property) { return !isIn(kOfTables, property); });
  kept += flag(code::kInTable, depth > 0);
  kept += {static_cast<char>(code::kDepth & 0xFFU), static_cast<char>(code::kDepth >> 8U)};
  for (unsigned byte = 0; byte < 4; ++byte)
    kept += static_cast<char>(static_cast<std::uint32_t>(depth) >> (8 * byte) & 0xFFU);
  return kept;
}

std::string withoutHighlight(base::ByteSpan properties) {
  return onlyThose(properties, [](std::uint16_t property) { return property != code::kHighlight; });
}

std::string highlightProperty(std::uint8_t colour) {
  return {static_cast<char>(code::kHighlight & 0xFFU), static_cast<char>(code::kHighlight >> 8U),
          static_cast<char>(colour)};
}

}  // namespace pluvo::doc
