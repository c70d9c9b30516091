#include "encrypted_properties.h"

#include "base/little_endian.h"
#include "damage.h"

#include <algorithm>

namespace pluvo::doc {

using base::get16;
using base::get32;

namespace {

constexpr std::size_t kFirst = 8;  ///< what tells where the list lies
constexpr std::size_t kSize = 4, kBlock = 8, kNameLength = 10, kName = 16;

errors::DocumentError damagedList() { return damaged("list of encrypted properties leads nowhere"); }

/// The streams that the list names.
std::vector<PropertyStretch> stretchesIn(base::ByteSpan list) {
  if (list.size() < 4) throw damagedList();
  std::vector<PropertyStretch> stretches;
  base::ByteSpan rest = list.subspan(4);
  for (std::uint32_t left = get32(list, 0); left > 0; --left) {
    if (rest.size() < kName) throw damagedList();
    const std::size_t length = rest[kNameLength];
    const std::size_t size = kName + (length + 1) * 2;
    if (rest.size() < size) throw damagedList();
    stretches.push_back({get32(rest, 0), get32(rest, kSize), get16(rest, kBlock)});
    rest = rest.subspan(size);
  }
  return stretches;
}

}  // namespace

std::vector<PropertyStretch> applyToProperties(const encryption::BinaryEncryption& encryption,
                                               base::ByteSpan key, std::span<std::uint8_t> bytes) {
  if (bytes.size() < kFirst) throw damagedList();
  const std::size_t at = get32(bytes, 0);
  if (at < kFirst || at > bytes.size()) throw damagedList();
  // The size told may leave out the count in front.
  const std::size_t size = std::min<std::size_t>(bytes.size() - at, std::size_t{get32(bytes, 4)} + 4);
  const auto list = bytes.subspan(at, size);
  encryption.applyStretch(key, 0, 0, list);
  std::vector<PropertyStretch> stretches = stretchesIn(list);
  stretches.push_back({at, size, 0, true});
  std::ranges::sort(stretches, {}, &PropertyStretch::at);
  std::size_t end = kFirst;
  for (const PropertyStretch& each : stretches) {
    if (each.at < end || each.at > bytes.size() || each.size > bytes.size() - each.at) throw damagedList();
    end = each.at + each.size;
    if (!each.isList) encryption.applyStretch(key, each.block, 0, bytes.subspan(each.at, each.size));
  }
  return stretches;
}

}  // namespace pluvo::doc
