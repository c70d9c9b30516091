#pragma once

#include "base/bytes.h"
#include "errors/document_error.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Where things stand in a compound file.
namespace pluvo::cfb {

/// Sectors with a higher number are no sectors.
inline constexpr std::uint32_t kLastSector = 0xFFFFFFFA;
inline constexpr std::uint32_t kListSector = 0xFFFFFFFC;   ///< it lists the sectors of the table
inline constexpr std::uint32_t kTableSector = 0xFFFFFFFD;  ///< it is of the table
inline constexpr std::uint32_t kEndOfChain = 0xFFFFFFFE;
inline constexpr std::uint32_t kFree = 0xFFFFFFFF;

/// A stream with fewer bytes lies among the small ones.
inline constexpr std::uint64_t kSmall = 4096;
inline constexpr unsigned kSmallShift = 6;

namespace header {
inline constexpr std::size_t kSectorShift = 0x1E, kSmallShiftAt = 0x20, kDirectorySectors = 0x28,
                             kTables = 0x2C, kDirectory = 0x30, kSmallBelow = 0x38, kSmallTable = 0x3C,
                             kSmallTables = 0x40, kLists = 0x44, kListCount = 0x48, kList = 0x4C,
                             kSize = 0x200;
inline constexpr std::size_t kListed = 109;  ///< sectors of the table that the header names
}  // namespace header

namespace entry {
inline constexpr std::size_t kNameSize = 0x40, kType = 0x42, kLeft = 0x44, kRight = 0x48, kChild = 0x4C,
                             kStart = 0x74, kStreamSize = 0x78, kSize = 0x80, kLongestName = 31;
inline constexpr std::uint8_t kStorage = 1, kStream = 2, kRootStorage = 5;
}  // namespace entry

/// Sectors beside each other.
struct Run {
  std::uint32_t first = 0;
  std::uint32_t count = 0;
};

/// So many sectors from the first one on, as each names its follower; all there are without a number. Nothing
/// where the chain ends too soon, leaves the table or comes back to a sector.
std::optional<std::vector<Run>> follow(std::span<const std::uint32_t> followers, std::uint32_t first,
                                       std::optional<std::uint64_t> count = std::nullopt);

inline std::uint64_t sectorsFor(std::uint64_t bytes, unsigned shift) {
  return (bytes >> shift) + ((bytes & ((std::uint64_t{1} << shift) - 1)) != 0 ? 1 : 0);
}

inline errors::DocumentError damaged(std::string_view what) {
  return {errors::Problem::damaged, "The document's compound file is damaged: " + std::string(what) +
                                        "; get an intact copy, or let a word processor repair and save it."};
}

}  // namespace pluvo::cfb
