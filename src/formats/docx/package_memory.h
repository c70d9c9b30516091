#pragma once

#include "relationships.h"
#include "zip/archive.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pluvo::docx {

/// Remembers the values read last from small parts. Packages that one program wrote, and those that a
/// document embeds, have some of them alike, byte for byte; one that is packed alike holds the same.
template <class Value>
class PartMemory {
 public:
  /// The value kept for the part, or else that of read() now.
  template <class Read>
  Value of(const zip::Archive& archive, const zip::Member& member, std::string_view asked, Read read) {
    const base::ByteSpan packed = archive.bytes().subspan(member.data, member.packedSize);
    const auto isSame = [&](const Known& known) {
      return known.method == member.method && known.crc == member.crc && known.size == member.size &&
             known.asked == asked && std::ranges::equal(known.packed, packed);
    };
    const auto found = std::ranges::find_if(known_, isSame);
    if (found != known_.end()) return found->value;
    Value value = read();
    if (packed.size() <= kLongest && member.size <= kLargest) {
      known_[next_] = {
          {packed.begin(), packed.end()}, member.method, member.crc, member.size, std::string(asked), value};
      next_ = (next_ + 1) % known_.size();
    }
    return value;
  }

 private:
  static constexpr std::size_t kLongest = std::size_t{16} << 10U;
  static constexpr std::uint64_t kLargest = std::uint64_t{256} << 10U;  ///< unpacked; a thread keeps them

  struct Known {
    std::vector<std::uint8_t> packed;
    zip::Method method = zip::Method::stored;
    std::uint32_t crc = 0;
    std::uint64_t size = 0;
    std::string asked;
    Value value;
  };
  std::array<Known, 4> known_;
  std::size_t next_ = 0;
};

struct PackageMemory {
  PartMemory<std::vector<Relationship>> relationships;  ///< by the part that has them
  PartMemory<std::string> contentTypes;                 ///< by the part that is of the type
};

}  // namespace pluvo::docx
