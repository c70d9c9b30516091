#include "fast_deflate.h"

#include <dlfcn.h>
#include <isa-l/igzip_lib.h>
#include <libdeflate.h>

#include <algorithm>
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
  bool add(base::ByteSpan bytes) {
    crc_ = libdeflate_crc32(crc_, bytes.data(), bytes.size());
    return deflate(bytes, false);
  }
  bool end() { return deflate({}, true); }
  Deflated result() {
    const auto blocks = std::make_shared<const Blocks>(std::move(blocks_));
    Deflated deflated{{}, blocks, crc_};
    for (const Block& block : *blocks) deflated.bytes.emplace_back(block.get(), kBlock);
    if (!blocks->empty()) deflated.bytes.back() = {blocks->back().get(), kBlock - stream_->avail_out};
    return deflated;
  }

 private:
  bool deflate(base::ByteSpan bytes, bool isLast) {
    stream_->next_in = const_cast<std::uint8_t*>(bytes.data());  // is only read
    stream_->avail_in = static_cast<std::uint32_t>(bytes.size());
    stream_->end_of_stream = isLast ? 1 : 0;
    do {
      if (stream_->avail_out == 0) addBlock();
      if (library_.deflate(stream_.get()) != COMP_OK) return false;
    } while (stream_->avail_in > 0 || (isLast && stream_->internal_state.state != ZSTATE_END));
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
  using Blocks = std::vector<Block>;

  const Library& library_;
  std::unique_ptr<isal_zstream> stream_;
  std::unique_ptr<std::uint8_t[]> level_;
  Blocks blocks_;
  std::uint32_t crc_ = 0;
};

}  // namespace

std::optional<Deflated> deflateFast(std::span<const base::ByteSpan> pieces) {
  static const Library library = loaded();
  if (library.init == nullptr || library.deflate == nullptr) return std::nullopt;

  Stream stream(library);
  std::vector<std::uint8_t> small;
  small.reserve(kAtOnce);
  const auto addSmall = [&] {
    const bool hadRoom = small.empty() || stream.add(small);
    small.clear();
    return hadRoom;
  };
  for (base::ByteSpan piece : pieces) {
    if (piece.size() < kSmallPiece) {
      if (small.size() + piece.size() > kAtOnce && !addSmall()) return std::nullopt;
      small.insert(small.end(), piece.begin(), piece.end());
      continue;
    }
    if (!addSmall()) return std::nullopt;
    for (; !piece.empty(); piece = piece.subspan(std::min(piece.size(), kAtOnce)))
      if (!stream.add(piece.first(std::min(piece.size(), kAtOnce)))) return std::nullopt;
  }
  if (!addSmall() || !stream.end()) return std::nullopt;
  return stream.result();
}

}  // namespace pluvo::zip
