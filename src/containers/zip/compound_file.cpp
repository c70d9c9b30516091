#include "zip/compound_file.h"

#include "base/ascii.h"
#include "fields.h"

#include <algorithm>
#include <optional>

namespace pluvo::zip {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kMark = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"sv;

namespace header {
constexpr std::size_t kSectorShift = 0x1E, kDirectory = 0x30, kMoreTables = 0x44, kTables = 0x4C,
                      kSize = 0x200;
}  // namespace header

namespace entry {
constexpr std::size_t kNameSize = 0x40, kType = 0x42, kSize = 128;
constexpr std::uint8_t kStorage = 1, kStream = 2;
}  // namespace entry

/// Sectors with higher numbers are marks.
constexpr std::uint32_t kLastSector = 0xFFFFFFFA;
constexpr std::uint32_t kTablesInHeader = 109;

/// The directory has this many sectors at most: a document has some hundred entries.
constexpr int kMostSectors = 1 << 16;

/// The sectors of a compound file, and which follows which.
class Sectors {
 public:
  explicit Sectors(base::ByteSpan file) : file_(file), shift_(get16(file, header::kSectorShift)) {}

  bool sound() const { return shift_ == 9 || shift_ == 12; }
  std::size_t size() const { return std::size_t{1} << shift_; }

  /// Fewer bytes where the file ends in it; none outside the file.
  base::ByteSpan at(std::uint32_t sector) const {
    const std::uint64_t from = (std::uint64_t{sector} + 1) << shift_;
    if (sector > kLastSector || from >= file_.size()) return {};
    return file_.subspan(from, std::min<std::uint64_t>(size(), file_.size() - from));
  }

  std::optional<std::uint32_t> next(std::uint32_t sector) const {
    const auto perTable = static_cast<std::uint32_t>(size() / 4);
    const auto table = tableAt(sector / perTable);
    return table ? numberIn(*table, sector % perTable) : std::nullopt;
  }

 private:
  std::optional<std::uint32_t> numberIn(std::uint32_t sector, std::size_t index) const {
    const base::ByteSpan bytes = at(sector);
    if (bytes.size() < index * 4 + 4) return std::nullopt;
    return get32(bytes, index * 4);
  }

  /// The sector of a table of followers. The first ones stand in the header, the others in a chain of sectors
  /// that end with the number of the next.
  std::optional<std::uint32_t> tableAt(std::uint32_t index) const {
    if (index < kTablesInHeader) return get32(file_, header::kTables + std::size_t{index} * 4);
    index -= kTablesInHeader;
    const auto perSector = static_cast<std::uint32_t>(size() / 4 - 1);
    std::optional<std::uint32_t> list = get32(file_, header::kMoreTables);
    for (; list && index >= perSector; index -= perSector) list = numberIn(*list, perSector);
    return list ? numberIn(*list, index) : std::nullopt;
  }

  base::ByteSpan file_;
  unsigned shift_;
};

bool isNamed(base::ByteSpan directoryEntry, std::string_view name) {
  const std::uint8_t type = directoryEntry[entry::kType];
  if (type != entry::kStorage && type != entry::kStream) return false;
  if (get16(directoryEntry, entry::kNameSize) != (name.size() + 1) * 2) return false;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const std::uint16_t unit = get16(directoryEntry, i * 2);
    if (unit > 0x7F || base::asciiLower(static_cast<char>(unit)) != base::asciiLower(name[i])) return false;
  }
  return true;
}

}  // namespace

bool isCompoundFile(base::ByteSpan bytes) {
  return bytes.size() >= header::kSize &&
         std::equal(kMark.begin(), kMark.end(), bytes.begin(),
                    [](char a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == b; });
}

bool hasStream(base::ByteSpan compoundFile, std::string_view name) {
  if (!isCompoundFile(compoundFile)) return false;
  const Sectors sectors(compoundFile);
  if (!sectors.sound()) return false;
  std::optional<std::uint32_t> sector = get32(compoundFile, header::kDirectory);
  for (int i = 0; i < kMostSectors && sector; ++i, sector = sectors.next(*sector)) {
    base::ByteSpan entries = sectors.at(*sector);
    if (entries.empty()) return false;
    for (; entries.size() >= entry::kSize; entries = entries.subspan(entry::kSize)) {
      if (isNamed(entries, name)) return true;
    }
  }
  return false;
}

bool isEncryptedPackage(base::ByteSpan bytes) {
  return hasStream(bytes, "EncryptedPackage") && hasStream(bytes, "EncryptionInfo");
}

}  // namespace pluvo::zip
