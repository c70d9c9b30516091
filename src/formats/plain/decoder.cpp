#include "decoder.h"

#include "base/utf.h"
#include "survey.h"
#include "token.h"

#include <algorithm>
#include <memory>

namespace pluvo::plain {

using base::ByteSpan;
using text::Position;

namespace {

/// How many units at the front have one value in the bytes and in the text.
std::size_t runOf(ByteSpan bytes, const CodePage* page) {
  return page == nullptr || page->keepsAscii() ? plainRun(bytes) : 0;
}

/// There are no more units than the bytes have room for, whatever the bytes are, and even if another program
/// writes into the file meanwhile. So none is written outside.
template <Encoding kEncoding>
class Decoder {
 public:
  Decoder(ByteSpan bytes, const Storage& storage, const base::Bytes& file)
      : bytes_(bytes),
        storage_(storage),
        file_(file),
        units_(std::make_shared_for_overwrite<char16_t[]>(bytes.size() + 1)),
        map_(storage.coding, bytes) {}

  Decoded decode() && {
    while (offset_ < bytes_.size()) {
      releaseSometimes();
      takeRun();
      takeCharacters();
      if (offset_ < bytes_.size()) take(firstToken<kEncoding>(bytes_.subspan(offset_), storage_.coding.page));
    }
    add(text::kParagraphMark);
    file_.release();
    const std::span<const char16_t> text(units_.get(), static_cast<std::size_t>(length_));
    return {text::OriginalText(text, units_), std::move(map_), commonLineEnd(lineEnds_, storage_)};
  }

 private:
  /// Decoded text is not looked at again soon.
  void releaseSometimes() {
    constexpr std::size_t kHeld = std::size_t{8} * 1024 * 1024;
    if (offset_ - released_ < kHeld) return;
    file_.release();
    released_ = offset_;
  }

  void takeRun() {
    std::size_t count = runOf(bytes_.subspan(offset_), storage_.coding.page);
    while (count > 0) {
      map_.note(length_, offset_);
      const std::size_t part = std::min(count, static_cast<std::size_t>(ByteMap::kInterval));
      copyRun(part);
      count -= part;
    }
  }

  void copyRun(std::size_t count) {
    std::copy_n(bytes_.data() + offset_, count, units_.get() + length_);
    length_ += static_cast<Position>(count);
    offset_ += count;
  }

  /// Those of several bytes, which often stand together.
  void takeCharacters() {
    while (offset_ < bytes_.size() && bytes_[offset_] >= 0x80) {
      const Character character = firstCharacter<kEncoding>(bytes_.subspan(offset_), storage_.coding.page);
      if (character.codePoint < 0x20) return;  // a line end, perhaps
      map_.note(length_, offset_);
      offset_ += character.bytes;
      add(character.codePoint);
    }
  }

  void take(const Token& token) {
    map_.note(length_, offset_);
    offset_ += token.bytes;
    if (token.lineEnd) ++lineEnds_[static_cast<std::size_t>(*token.lineEnd)];
    add(token.codePoint);
  }

  void add(char32_t point) {
    if (point > 0xFFFF) put(base::highSurrogateOf(point));
    put(point > 0xFFFF ? base::lowSurrogateOf(point) : static_cast<char16_t>(point));
  }

  void put(char16_t unit) { units_[length_++] = unit; }

  ByteSpan bytes_;
  const Storage& storage_;
  const base::Bytes& file_;
  std::shared_ptr<char16_t[]> units_;
  ByteMap map_;
  std::size_t offset_ = 0;
  std::size_t released_ = 0;
  Position length_ = 0;
  std::array<std::size_t, 3> lineEnds_ = {};
};

}  // namespace

bool liesAsText(const Storage& storage) {
  return storage.coding.encoding == Encoding::utf8 && storage.utf8.valid && storage.utf8.ascii &&
         storage.utf8.pairs == 0;
}

LineEnd commonLineEnd(const std::array<std::size_t, 3>& counts, const Storage& storage) {
  const auto* const most = std::ranges::max_element(counts);
  if (*most > 0) return static_cast<LineEnd>(most - counts.begin());
  const bool unixText = storage.coding.encoding == Encoding::utf8 && storage.markLength == 0;
  return unixText ? LineEnd::lineFeed : LineEnd::carriageReturnLineFeed;
}

Decoded decode(ByteSpan bytes, const Storage& storage, const base::Bytes& file) {
  file.release();
  if (storage.coding.encoding == Encoding::utf8)
    return Decoder<Encoding::utf8>(bytes, storage, file).decode();
  return Decoder<Encoding::codePage>(bytes, storage, file).decode();
}

}  // namespace pluvo::plain
