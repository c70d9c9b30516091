#include "packer.h"

#include "base/fresh_memory.h"
#include "fast_deflate.h"
#include "zip/rewrite.h"

#include <libdeflate.h>

#include <algorithm>
#include <new>
#include <optional>

namespace pluvo::zip {

namespace {

struct Compressor {
  explicit Compressor(int ofLevel) : level(ofLevel), handle(libdeflate_alloc_compressor(ofLevel)) {
    if (handle == nullptr) throw std::bad_alloc();
  }
  ~Compressor() { libdeflate_free_compressor(handle); }
  Compressor(const Compressor&) = delete;
  Compressor& operator=(const Compressor&) = delete;
  int level;
  libdeflate_compressor* handle;
};

/// The thread's own, for the next part too: making one takes longer than deflating a small part.
libdeflate_compressor* compressorOf(int level) {
  thread_local std::optional<Compressor> kept;
  if (!kept || kept->level != level) kept.emplace(level);
  return kept->handle;
}

constexpr std::uint64_t kSmall = std::uint64_t{16} << 10U;
/// ISA-L gains more with parts of this size than it takes to load it.
constexpr std::uint64_t kWorthLoading = std::uint64_t{256} << 10U;
constexpr int kLevelOfSmall = 6;
constexpr int kLevelOfLarge = 1;

/// The most bytes that a stored block holds, and the size of its header.
constexpr std::size_t kStoredBlock = 0xFFFF;
constexpr std::size_t kStoredHeader = 5;

/// Writes bytes as blocks that are stored and not the last of their stream; returns where they end.
std::uint8_t* storeBlocks(base::ByteSpan bytes, std::uint8_t* to) {
  while (!bytes.empty()) {
    const std::size_t size = std::min(bytes.size(), kStoredBlock);
    const auto low = static_cast<std::uint8_t>(size & 0xFFU);
    const auto high = static_cast<std::uint8_t>(size >> 8U);
    for (const std::uint8_t byte :
         {std::uint8_t{0}, low, high, static_cast<std::uint8_t>(~low), static_cast<std::uint8_t>(~high)})
      *to++ = byte;
    to = std::copy_n(bytes.begin(), size, to);
    bytes = bytes.subspan(size);
  }
  return to;
}

/// Pieces as one; the compressor sees one buffer only.
class Gathered {
 public:
  Gathered(std::span<const base::ByteSpan> pieces, std::size_t size) {
    if (pieces.size() == 1) bytes_ = pieces.front();
    if (pieces.size() <= 1) return;
    memory_ = base::freshMemory(size);
    std::uint8_t* to = memory_.get();
    for (const base::ByteSpan piece : pieces) to = std::copy(piece.begin(), piece.end(), to);
    bytes_ = {memory_.get(), size};
  }
  base::ByteSpan bytes() const { return bytes_; }

 private:
  base::ByteSpan bytes_;
  std::shared_ptr<std::uint8_t[]> memory_;
};

void deflate(base::ByteSpan bytes, int level, Packed& packed) {
  libdeflate_compressor* const compressor = compressorOf(level);
  const std::size_t bound = libdeflate_deflate_compress_bound(compressor, bytes.size());
  const auto memory = base::freshMemory(bound);
  packed.packedSize =
      libdeflate_deflate_compress(compressor, bytes.data(), bytes.size(), memory.get(), bound);
  packed.bytes = {base::ByteSpan(memory.get(), packed.packedSize)};
  packed.owner = memory;
}

/// What shrinks so much that the limits refuse it is stored in part, so that it can be opened again.
bool shrinksTooMuch(const Packed& packed) {
  constexpr Limits kLimits;
  return packed.size > kLimits.freeSize && packed.size / kLimits.ratio > packed.packedSize;
}

void deflateLess(base::ByteSpan bytes, int level, Packed& packed) {
  const auto front = static_cast<std::size_t>(packed.size / Limits().ratio);
  const base::ByteSpan rest = bytes.subspan(front);
  libdeflate_compressor* const compressor = compressorOf(level);
  const std::size_t room = front + (front / kStoredBlock + 1) * kStoredHeader;
  const std::size_t restBound = libdeflate_deflate_compress_bound(compressor, rest.size());
  const auto memory = base::freshMemory(room + restBound);
  std::uint8_t* const to = storeBlocks(bytes.first(front), memory.get());
  packed.packedSize = static_cast<std::uint64_t>(to - memory.get()) +
                      libdeflate_deflate_compress(compressor, rest.data(), rest.size(), to, restBound);
  packed.bytes = {base::ByteSpan(memory.get(), packed.packedSize)};
  packed.owner = memory;
}

/// Without gathering the pieces.
bool deflateLarge(std::span<const base::ByteSpan> pieces, Packed& packed) {
  auto deflated = deflateFast(pieces);
  if (!deflated) return false;
  packed.bytes = std::move(deflated->bytes);
  packed.owner = std::move(deflated->owner);
  for (const base::ByteSpan piece : packed.bytes) packed.packedSize += piece.size();
  packed.crc = deflated->crc;
  return true;
}

std::uint32_t crcOf(std::span<const base::ByteSpan> pieces) {
  std::uint32_t crc = 0;
  for (const base::ByteSpan piece : pieces) {
    if (piece.empty()) continue;  // of a null pointer the library gives the CRC to begin with
    crc = libdeflate_crc32(crc, piece.data(), piece.size());
  }
  return crc;
}

}  // namespace

Packed pack(std::span<const base::ByteSpan> pieces, Method method, int level) {
  Packed packed;
  for (const base::ByteSpan piece : pieces) packed.size += piece.size();
  if (method == Method::stored) {
    packed.crc = crcOf(pieces);
    packed.bytes.assign(pieces.begin(), pieces.end());
    packed.packedSize = packed.size;
    return packed;
  }

  const bool isBySize = level == kLevelBySize;
  if (isBySize) level = packed.size <= kSmall ? kLevelOfSmall : kLevelOfLarge;
  const bool isDeflated = isBySize && packed.size >= kWorthLoading && deflateLarge(pieces, packed);
  if (!isDeflated || shrinksTooMuch(packed)) {
    const Gathered whole(pieces, static_cast<std::size_t>(packed.size));
    if (!isDeflated) packed.crc = crcOf(pieces);
    if (!isDeflated) deflate(whole.bytes(), level, packed);
    if (shrinksTooMuch(packed)) deflateLess(whole.bytes(), level, packed);
  }
  return packed;
}

}  // namespace pluvo::zip
