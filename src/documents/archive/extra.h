#pragma once

#include "fields.h"
#include "files/bytes.h"

#include <cstdint>
#include <optional>

namespace pluvo::archive {

/// The contents of the ZIP64 block of an extra field, if it has one.
std::optional<files::ByteSpan> zip64Block(files::ByteSpan extra);

/// The extra field without its ZIP64 block, other bytes as they were.
Record withoutZip64(files::ByteSpan extra);

/// Takes the 64-bit values out of a ZIP64 block, which holds only those whose own field says so, in a fixed
/// order.
class Zip64Values {
 public:
  explicit Zip64Values(std::optional<files::ByteSpan> block) : left_(block.value_or(files::ByteSpan())) {}
  /// The field's own value, or the block's next one. Nothing when the block is too short.
  std::optional<std::uint64_t> size(std::uint32_t field);
  std::optional<std::uint32_t> disk(std::uint16_t field);

 private:
  files::ByteSpan left_;
};

}  // namespace pluvo::archive
