#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace pluvo::zip {

/// A member as a test wants it written.
struct Entry {
  std::string name;
  std::string contents;
  bool deflated = true;
  bool descriptor = false;  ///< sizes and CRC after the data, zero in the local header
  bool zip64 = false;       ///< sizes, and in the directory the offset, in ZIP64 extra fields
  std::uint16_t flags = 0;
  std::string localExtra = {};
  std::string centralExtra = {};
  std::string comment = {};
  std::string after = {};  ///< bytes between this member and the next
};

struct Zip {
  std::vector<Entry> entries;
  std::string comment = {};
  bool zip64End = false;
  bool directoryReversed = false;  ///< lists the members in the opposite order
};

/// The bytes, and where its records begin: a test that wants a lie writes it there.
struct Built {
  std::string bytes;
  std::vector<std::size_t> local, central;  ///< in the order of Zip::entries
  std::size_t directory = 0, end64 = 0, end = 0;

  void set(std::size_t at, std::uint64_t value, std::size_t size);
  void set16(std::size_t at, std::uint16_t value) { set(at, value, 2); }
  void set32(std::size_t at, std::uint32_t value) { set(at, value, 4); }

  /// In both of a member's headers: of 2 bytes its method (8), of 4 its CRC (14) and size (22).
  void setBoth(std::size_t member, std::size_t field, std::uint64_t value, std::size_t size = 4) {
    set(local[member] + field, value, size);
    set(central[member] + field + 2, value, size);
  }
  /// How many members there are, as the end says it twice.
  void setCount(std::uint16_t value) {
    set16(end + 8, value);
    set16(end + 10, value);
  }
};

Built build(const Zip& zip);

/// Shapes that programs write and that are sound, with what sets them apart.
struct Shape {
  const char* what;
  Zip zip;
};
std::vector<Shape> soundShapes();

}  // namespace pluvo::zip
