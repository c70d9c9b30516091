#pragma once

#include "base/bytes.h"
#include "base/little_endian.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// The numbers of the ZIP format: little-endian fields at fixed places of fixed records.
namespace pluvo::zip {

inline constexpr std::uint32_t kLocalHeader = 0x04034b50;
inline constexpr std::uint32_t kCentralEntry = 0x02014b50;
inline constexpr std::uint32_t kEndRecord = 0x06054b50;
inline constexpr std::uint32_t kEndRecord64 = 0x06064b50;
inline constexpr std::uint32_t kEndLocator64 = 0x07064b50;

inline constexpr std::size_t kLocalHeaderSize = 30;
inline constexpr std::size_t kCentralEntrySize = 46;
inline constexpr std::size_t kEndRecordSize = 22;
inline constexpr std::size_t kEndRecord64Size = 56;
inline constexpr std::size_t kEndLocator64Size = 20;

/// In a 16 or 32-bit field: the value is in the ZIP64 record or extra field.
inline constexpr std::uint16_t kElsewhere16 = 0xffff;
inline constexpr std::uint32_t kElsewhere32 = 0xffffffff;

/// General purpose flags.
inline constexpr std::uint16_t kDescriptorFlag = 0x0008;  ///< sizes and CRC follow the packed bytes
inline constexpr std::uint16_t kLevelFlags = 0x0006;      ///< how hard the member was deflated
inline constexpr std::uint16_t kEncryptedFlags = 0x2041;  ///< encrypted, strongly encrypted, masked header

namespace local {
inline constexpr std::size_t kVersion = 4, kFlags = 6, kMethod = 8, kCrc = 14, kPackedSize = 18, kSize = 22,
                             kNameLength = 26, kExtraLength = 28;
}
namespace central {
inline constexpr std::size_t kVersion = 6, kFlags = 8, kMethod = 10, kCrc = 16, kPackedSize = 20, kSize = 24,
                             kNameLength = 28, kExtraLength = 30, kCommentLength = 32, kDisk = 34,
                             kHeader = 42;
}
namespace end {
inline constexpr std::size_t kDisk = 4, kDirectoryDisk = 6, kEntriesHere = 8, kEntries = 10,
                             kDirectorySize = 12, kDirectory = 16, kCommentLength = 20;
}
namespace end64 {
inline constexpr std::size_t kRecordSize = 4, kMadeBy = 12, kVersion = 14, kDisk = 16, kDirectoryDisk = 20,
                             kEntriesHere = 24, kEntries = 32, kDirectorySize = 40, kDirectory = 48;
}
namespace locator64 {
inline constexpr std::size_t kRecordDisk = 4, kRecord = 8, kDisks = 16;
}

using base::get;
using base::get16;
using base::get32;
using base::get64;

/// A record under construction.
class Record : public std::vector<std::uint8_t> {
 public:
  Record() = default;
  explicit Record(base::ByteSpan bytes) : vector(bytes.begin(), bytes.end()) {}

  void add(base::ByteSpan bytes) { insert(vector::end(), bytes.begin(), bytes.end()); }
  template <typename Number>
  void addNumber(Number value) {
    resize(size() + sizeof(Number));
    set(size() - sizeof(Number), value);
  }
  template <typename Number>
  void set(std::size_t at, Number value) {
    base::put(*this, at, value);
  }
};

}  // namespace pluvo::zip
