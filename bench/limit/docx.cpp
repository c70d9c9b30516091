#include "docx.h"

#include <libdeflate.h>

#include <cstring>
#include <stdexcept>

namespace limit {
namespace {

constexpr std::string_view kName = "word/document.xml";
constexpr std::size_t kCentralHeader = 46;
constexpr std::size_t kLocalHeader = 30;
constexpr std::size_t kEndRecord = 22;

std::size_t number(std::string_view bytes, std::size_t at, std::size_t width) {
  std::size_t value = 0;
  for (std::size_t i = width; i-- > 0;) value = value << 8 | static_cast<unsigned char>(bytes.at(at + i));
  return value;
}

}  // namespace

MainPart::MainPart(std::string_view archive) {
  const std::size_t end = archive.rfind("PK\5\6");
  if (end == std::string_view::npos || end + kEndRecord > archive.size())
    throw std::runtime_error("not an archive");
  std::size_t entry = number(archive, end + 16, 4);
  for (std::size_t left = number(archive, end + 10, 2); left > 0; --left) {
    const std::size_t nameLength = number(archive, entry + 28, 2);
    if (archive.substr(entry + kCentralHeader, nameLength) == kName) {
      packedSize_ = number(archive, entry + 20, 4);
      size_ = number(archive, entry + 24, 4);
      const std::size_t local = number(archive, entry + 42, 4);
      dataAt_ = local + kLocalHeader + number(archive, local + 26, 2) + number(archive, local + 28, 2);
      break;
    }
    entry += kCentralHeader + nameLength + number(archive, entry + 30, 2) + number(archive, entry + 32, 2);
  }
  if (dataAt_ == 0) throw std::runtime_error("no main part");
  xml_.reset(new char[size_]);
  libdeflate_decompressor* inflater = libdeflate_alloc_decompressor();
  const auto result = libdeflate_deflate_decompress(inflater, archive.data() + dataAt_, packedSize_,
                                                    xml_.get(), size_, nullptr);
  libdeflate_free_decompressor(inflater);
  if (result != LIBDEFLATE_SUCCESS) throw std::runtime_error("cannot inflate");
}

void MainPart::rewrite(std::string_view archive, int level, Written& out) const {
  libdeflate_compressor* deflater = libdeflate_alloc_compressor(level);
  const std::size_t bound = libdeflate_deflate_compress_bound(deflater, size_);
  const std::unique_ptr<char[]> packed(new char[bound]);
  const std::size_t size = libdeflate_deflate_compress(deflater, xml_.get(), size_, packed.get(), bound);
  libdeflate_free_compressor(deflater);
  if (libdeflate_crc32(0, xml_.get(), size_) == 0) throw std::runtime_error("unlikely checksum");
  // The sizes in the headers are left as they are: this is a yardstick, nobody opens its output.
  out.write(archive.substr(0, dataAt_));
  out.write({packed.get(), size});
  out.write(archive.substr(dataAt_ + packedSize_));
}

GatheredText::GatheredText(std::string_view xml) : units_(new char[xml.size()]) {
  char* put = units_.get();
  const char* at = xml.data();
  const char* const end = at + xml.size();
  while ((at = static_cast<const char*>(std::memchr(at, '<', static_cast<std::size_t>(end - at)))) !=
         nullptr) {
    if (end - at < 6) break;
    const bool isText = std::memcmp(at, "<w:t", 4) == 0 && (at[4] == '>' || at[4] == ' ');
    at = static_cast<const char*>(std::memchr(at, '>', static_cast<std::size_t>(end - at)));
    if (at == nullptr) break;
    ++at;
    if (!isText) continue;
    const char* close = static_cast<const char*>(std::memchr(at, '<', static_cast<std::size_t>(end - at)));
    if (close == nullptr) break;
    std::memcpy(put, at, static_cast<std::size_t>(close - at));
    put += close - at;
    at = close;
  }
  size_ = static_cast<std::size_t>(put - units_.get());
}

}  // namespace limit
