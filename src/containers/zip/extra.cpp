#include "extra.h"

#include <algorithm>

namespace pluvo::zip {

namespace {

constexpr std::uint16_t kZip64 = 1;
constexpr std::size_t kBlockHeader = 4;

/// Calls found(whole block) for each block. Bytes at the end that form no block (some tools pad with zeros)
/// make one of their own, with no number.
template <typename Found>
void forEachBlock(base::ByteSpan extra, Found found) {
  while (!extra.empty()) {
    std::size_t size = extra.size();
    std::optional<std::uint16_t> number;
    if (extra.size() >= kBlockHeader && kBlockHeader + get16(extra, 2) <= extra.size()) {
      size = kBlockHeader + get16(extra, 2);
      number = get16(extra, 0);
    }
    found(number, extra.first(size));
    extra = extra.subspan(size);
  }
}

}  // namespace

std::optional<base::ByteSpan> zip64Block(base::ByteSpan extra) {
  std::optional<base::ByteSpan> contents;
  forEachBlock(extra, [&](std::optional<std::uint16_t> number, base::ByteSpan block) {
    if (number == kZip64 && !contents) contents = block.subspan(kBlockHeader);
  });
  return contents;
}

Record withoutZip64(base::ByteSpan extra) {
  Record rest;
  forEachBlock(extra, [&](std::optional<std::uint16_t> number, base::ByteSpan block) {
    if (number != kZip64) rest.add(block);
  });
  return rest;
}

std::optional<std::uint64_t> Zip64Values::size(std::uint32_t field) {
  if (field != kElsewhere32) return field;
  if (left_.size() < 8) return std::nullopt;
  const std::uint64_t value = get64(left_, 0);
  left_ = left_.subspan(8);
  return value;
}

std::optional<std::uint32_t> Zip64Values::disk(std::uint16_t field) {
  if (field != kElsewhere16) return field;
  if (left_.size() < 4) return std::nullopt;
  return get32(left_, 0);
}

}  // namespace pluvo::zip
