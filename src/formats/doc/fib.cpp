#include "fib.h"

#include "base/little_endian.h"
#include "damage.h"

#include <numeric>

namespace pluvo::doc {

using base::get16;
using base::get32;

namespace {

constexpr std::size_t kFlags = 0x0A, kGlossaryAt = 0x08, kTextFrom = 0x18, kTextTo = 0x1C, kCounts = 0x20;
constexpr std::size_t kFirstLength = 3;  ///< among the numbers of four bytes

/// So many numbers of a size, in front of which their count stands.
base::ByteSpan numbers(base::ByteSpan document, std::size_t& at, std::size_t size) {
  if (at + 2 > document.size()) throw damaged("information block is cut off");
  const std::size_t length = get16(document, at) * size;
  if (length > document.size() - at - 2) throw damaged("information block is cut off");
  const base::ByteSpan found = document.subspan(at + 2, length);
  at += 2 + length;
  return found;
}

}  // namespace

Fib Fib::read(base::ByteSpan document, std::size_t at) {
  if (at > document.size() || document.size() - at < kCounts) throw damaged("information block is cut off");
  const base::ByteSpan block = document.subspan(at);
  Fib fib;
  fib.version_ = get16(block, 2);
  fib.glossary_ = get16(block, kGlossaryAt);
  fib.flags_ = get16(block, kFlags);
  fib.textFrom_ = get32(block, kTextFrom);
  fib.textTo_ = get32(block, kTextTo);
  std::size_t next = kCounts;
  numbers(block, next, 2);
  fib.sizeAt_ = at + next + 2;
  fib.lengthsAt_ = fib.sizeAt_ + kFirstLength * 4;
  const base::ByteSpan longs = numbers(block, next, 4);
  if (longs.size() < (kFirstLength + kParts) * 4) throw damaged("information block is too short");
  std::int64_t all = 1;
  for (std::size_t i = 0; i < kParts; ++i) {
    const std::uint32_t length = get32(longs, (kFirstLength + i) * 4);
    all += length;
    fib.lengths_[i] = static_cast<text::Position>(length);
    if (all > text::kMaxLength) throw damaged("texts are longer than any could be");
  }
  fib.extentsAt_ = at + next + 2;
  const base::ByteSpan pairs = numbers(block, next, 8);
  for (std::size_t i = 0; i + 8 <= pairs.size(); i += 8)
    fib.tables_.push_back({get32(pairs, i), get32(pairs, i + 4)});
  return fib;
}

text::Position Fib::begin(Part part) const {
  return std::accumulate(lengths_.begin(), lengths_.begin() + static_cast<std::ptrdiff_t>(part), 0);
}

text::Position Fib::lengthOfAll() const {
  const text::Position all = std::accumulate(lengths_.begin(), lengths_.end(), 0);
  return all == length(Part::main) ? all : all + 1;
}

base::ByteSpan Fib::in(base::ByteSpan tables, std::size_t number) const {
  if (number >= tables_.size() || tables_[number].length == 0) return {};
  const Extent& extent = tables_[number];
  if (extent.at > tables.size() || extent.length > tables.size() - extent.at)
    throw damaged("information block names places outside it");
  return tables.subspan(extent.at, extent.length);
}

}  // namespace pluvo::doc
