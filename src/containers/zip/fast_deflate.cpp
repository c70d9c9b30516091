#include "fast_deflate.h"

#include "base/at_once.h"
#include "joined_crc.h"

#include <dlfcn.h>
#include <isa-l/igzip_lib.h>
#include <libdeflate.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <vector>

namespace pluvo::zip {

namespace {

/// ISA-L, loaded when the first large part is to be deflated. Loading it at each start would take longer than
/// it saves with small documents.
struct Library {
  decltype(&isal_deflate_init) init = nullptr;
  decltype(&isal_deflate) deflate = nullptr;
};

Library loaded() {
  void* const handle = dlopen("libisal.so.2", RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) return {};
  return {reinterpret_cast<decltype(Library::init)>(dlsym(handle, "isal_deflate_init")),
          reinterpret_cast<decltype(Library::deflate)>(dlsym(handle, "isal_deflate"))};
}

/// So much is read at a time that it lies in the processor's cache for both the CRC and the deflating.
constexpr std::size_t kAtOnce = std::size_t{256} << 10U;
/// Smaller pieces are copied together: the library takes long to begin with each.
constexpr std::size_t kSmallPiece = std::size_t{16} << 10U;

/// Contents that one thread deflates.
struct Part {
  std::vector<base::ByteSpan> pieces;
  std::size_t size = 0;
};

/// Parts of about the same size.
std::vector<Part> divided(std::span<const base::ByteSpan> pieces) {
  constexpr std::size_t kLarge = std::size_t{1} << 20U;
  std::size_t size = 0;
  for (const base::ByteSpan piece : pieces) size += piece.size();
  const std::size_t count = base::partsOf(size, kLarge);
  std::vector<Part> parts(1);
  parts.front().pieces.reserve(pieces.size() / count + 1);
  for (base::ByteSpan piece : pieces) {
    while (!piece.empty()) {
      const bool isLast = parts.size() == count;
      const std::size_t taken =
          isLast ? piece.size() : std::min(piece.size(), size / count + 1 - parts.back().size);
      parts.back().pieces.push_back(piece.first(taken));
      parts.back().size += taken;
      piece = piece.subspan(taken);
      if (!isLast && parts.back().size > size / count) parts.emplace_back();
    }
  }
  return parts;
}

/// Deflates a part. Another stream's output may follow its own.
class Stream {
 public:
  explicit Stream(const Library& library)
      : library_(library),
        stream_(std::make_unique_for_overwrite<isal_zstream>()),
        level_(std::make_unique_for_overwrite<std::uint8_t[]>(ISAL_DEF_LVL1_SMALL)) {
    library_.init(stream_.get());
    stream_->avail_out = 0;
    stream_->level = 1;
    stream_->level_buf = level_.get();
    stream_->level_buf_size = ISAL_DEF_LVL1_SMALL;
  }

  /// False where the library fails.
  bool add(const Part& part) {
    std::vector<std::uint8_t> small;
    small.reserve(kAtOnce);
    const auto addSmall = [&] {
      const bool hadRoom = small.empty() || add(small);
      small.clear();
      return hadRoom;
    };
    for (base::ByteSpan piece : part.pieces) {
      if (piece.size() < kSmallPiece) {
        if (small.size() + piece.size() > kAtOnce && !addSmall()) return false;
        small.insert(small.end(), piece.begin(), piece.end());
        continue;
      }
      if (!addSmall()) return false;
      for (; !piece.empty(); piece = piece.subspan(std::min(piece.size(), kAtOnce)))
        if (!add(piece.first(std::min(piece.size(), kAtOnce)))) return false;
    }
    return addSmall();
  }

  /// Not the last: ends at a whole byte, and leaves the deflated contents open.
  bool end(bool isLast) {
    stream_->flush = isLast ? NO_FLUSH : SYNC_FLUSH;
    stream_->end_of_stream = isLast ? 1 : 0;
    // A flush that fills its block may not be at its end. One with nothing left to do writes six bytes.
    do {
      if (!deflate({})) return false;
    } while (isLast ? stream_->internal_state.state != ZSTATE_END : stream_->avail_out == 0);
    return true;
  }

  std::uint32_t crc() const { return crc_; }
  /// The deflated bytes, as long as this lives.
  void appendTo(std::vector<base::ByteSpan>& bytes) const {
    for (const Block& block : blocks_) bytes.emplace_back(block.get(), kBlock);
    if (!blocks_.empty()) bytes.back() = {blocks_.back().get(), kBlock - stream_->avail_out};
  }

 private:
  bool add(base::ByteSpan bytes) {
    crc_ = libdeflate_crc32(crc_, bytes.data(), bytes.size());
    return deflate(bytes);
  }

  bool deflate(base::ByteSpan bytes) {
    stream_->next_in = const_cast<std::uint8_t*>(bytes.data());  // is only read
    stream_->avail_in = static_cast<std::uint32_t>(bytes.size());
    do {
      if (stream_->avail_out == 0) addBlock();
      if (library_.deflate(stream_.get()) != COMP_OK) return false;
    } while (stream_->avail_in > 0);
    return true;
  }

  void addBlock() {
    blocks_.push_back(std::make_unique_for_overwrite<std::uint8_t[]>(kBlock));
    stream_->next_out = blocks_.back().get();
    stream_->avail_out = kBlock;
  }

  /// Few parts fill more than some. Memory for the worst case would lie between others', and cost its pages.
  static constexpr std::uint32_t kBlock = std::uint32_t{256} << 10U;
  using Block = std::unique_ptr<std::uint8_t[]>;

  const Library& library_;
  std::unique_ptr<isal_zstream> stream_;
  std::unique_ptr<std::uint8_t[]> level_;
  std::vector<Block> blocks_;
  std::uint32_t crc_ = 0;
};

}  // namespace

std::optional<Deflated> deflateFast(std::span<const base::ByteSpan> pieces) {
  static const Library library = loaded();
  if (library.init == nullptr || library.deflate == nullptr) return std::nullopt;

  const std::vector<Part> parts = divided(pieces);
  const auto streams = std::make_shared<std::vector<std::optional<Stream>>>(parts.size());
  std::atomic<bool> failed = false;
  base::atOnce(parts.size(), [&](std::size_t i) {
    Stream& stream = (*streams)[i].emplace(library);
    if (!stream.add(parts[i]) || !stream.end(i + 1 == parts.size())) failed = true;
  });
  if (failed) return std::nullopt;
  Deflated deflated{{}, streams, 0};
  for (std::size_t i = 0; i < parts.size(); ++i) {
    deflated.crc = crcOfBoth(deflated.crc, (*streams)[i]->crc(), parts[i].size);
    (*streams)[i]->appendTo(deflated.bytes);
  }
  return deflated;
}

}  // namespace pluvo::zip
