#pragma once

#include "base/bytes.h"
#include "fields.h"

#include <cstdint>
#include <optional>

namespace pluvo::zip {

/// The contents of the ZIP64 block of an extra field, if it has one.
std::optional<base::ByteSpan> zip64Block(base::ByteSpan extra);

/// The extra field without its ZIP64 block, other bytes as they were.
Record withoutZip64(base::ByteSpan extra);

/// Takes the 64-bit values out of a ZIP64 block, which holds only those whose own field says so, in a fixed
/// order.
class Zip64Values {
 public:
  explicit Zip64Values(std::optional<base::ByteSpan> block) : left_(block.value_or(base::ByteSpan())) {}
  /// The field's own value, or the block's next one. Nothing when the block is too short.
  std::optional<std::uint64_t> size(std::uint32_t field);
  std::optional<std::uint32_t> disk(std::uint16_t field);

 private:
  base::ByteSpan left_;
};

}  // namespace pluvo::zip
