#include "decoder.h"

#include "base/utf.h"
#include "token.h"

#include <algorithm>
#include <memory>

namespace pluvo::plain {

using base::ByteSpan;
using text::Position;

namespace {

/// How many units at the front have one value in the bytes and in the text.
template <Encoding kEncoding>
std::size_t runOf(ByteSpan bytes, const CodePage* page) {
  if constexpr (kEncoding == Encoding::codePage) return page->keepsAscii() ? plainRun(bytes) : 0;
  if constexpr (!isUtf16(kEncoding)) return plainRun(bytes);
  std::size_t count = 0;
  for (; 2 * count + 1 < bytes.size(); ++count) {
    const char16_t unit = utf16UnitAt<kEncoding>(bytes, 2 * count);
    if (unit == u'\r' || unit == u'\n') break;
  }
  return count;
}

/// There are no more units than the bytes have room for, whatever the bytes are, and even if another program
/// writes into the file meanwhile. So none is written outside.
template <Encoding kEncoding, class Unit>
class Decoder {
 public:
  Decoder(ByteSpan bytes, const Storage& storage, const base::Bytes& file)
      : bytes_(bytes),
        storage_(storage),
        file_(file),
        units_(std::make_shared_for_overwrite<Unit[]>(bytes.size() / kUnitSize + 1)),
        map_(storage.coding, bytes) {}

  Decoded decode() && {
    while (bytes_.size() - offset_ >= kUnitSize) {
      releaseSometimes();
      takeRun();
      takeCharacters();
      if (bytes_.size() - offset_ >= kUnitSize)
        take(firstToken<kEncoding>(bytes_.subspan(offset_), storage_.coding.page));
    }
    add(text::kParagraphMark);
    file_.release();
    const std::span<const Unit> text(units_.get(), static_cast<std::size_t>(length_));
    return {textOf(text), std::move(map_), commonLineEnd(lineEnds_, storage_)};
  }

 private:
  static constexpr std::size_t kUnitSize = unitSize(kEncoding);

  /// Decoded text is not looked at again soon.
  void releaseSometimes() {
    constexpr std::size_t kHeld = std::size_t{8} * 1024 * 1024;
    if (offset_ - released_ < kHeld) return;
    file_.release();
    released_ = offset_;
  }

  void takeRun() {
    std::size_t count = runOf<kEncoding>(bytes_.subspan(offset_), storage_.coding.page);
    while (count > 0) {
      map_.note(length_, offset_);
      const std::size_t part = std::min(count, static_cast<std::size_t>(ByteMap::kInterval));
      copyRun(part);
      count -= part;
    }
  }

  void copyRun(std::size_t count) {
    const std::uint8_t* from = bytes_.data() + offset_;
    Unit* to = units_.get() + length_;
    if constexpr (isUtf16(kEncoding)) {
      for (std::size_t i = 0; i < count; ++i)
        to[i] = static_cast<Unit>(utf16UnitAt<kEncoding>(bytes_, offset_ + 2 * i));
    } else {
      std::copy_n(from, count, to);
    }
    length_ += static_cast<Position>(count);
    offset_ += count * kUnitSize;
  }

  /// Those of several bytes, which often stand together.
  void takeCharacters() {
    if constexpr (kEncoding != Encoding::utf8 && kEncoding != Encoding::codePage) return;
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

  void put(char16_t unit) { units_[length_++] = static_cast<Unit>(unit); }

  text::OriginalText textOf(std::span<const Unit> text) const {
    if constexpr (sizeof(Unit) == 1) return {text, false, units_};
    if constexpr (sizeof(Unit) == 2) return {text, units_};
  }

  ByteSpan bytes_;
  const Storage& storage_;
  const base::Bytes& file_;
  std::shared_ptr<Unit[]> units_;
  ByteMap map_;
  std::size_t offset_ = 0;
  std::size_t released_ = 0;
  Position length_ = 0;
  std::array<std::size_t, 3> lineEnds_ = {};
};

bool narrowUtf16(ByteSpan bytes, Encoding encoding) {
  std::uint8_t bits = 0;
  for (std::size_t at = encoding == Encoding::utf16Little ? 1 : 0; at < bytes.size(); at += 2)
    bits |= bytes[at];
  return bits == 0;
}

/// Whether every unit is below 256.
bool isNarrow(ByteSpan bytes, const Storage& storage) {
  switch (storage.coding.encoding) {
    case Encoding::utf8:
      return false;  // it holds bytes that are none
    case Encoding::windows1252:
      return !storage.survey.specials;
    case Encoding::codePage:
      return false;
    default:
      return narrowUtf16(bytes, storage.coding.encoding);
  }
}

}  // namespace

bool liesAsText(ByteSpan bytes, const Storage& storage) {
  const bool oneByteEach = storage.coding.encoding == Encoding::utf8
                               ? storage.survey.highest < 0x80
                               : storage.coding.encoding == Encoding::windows1252 && !storage.survey.specials;
  if (!oneByteEach) return false;
  if (storage.utf8.valid) return storage.utf8.pairs == 0;
  if (!storage.survey.carriageReturns) return true;
  constexpr std::array<std::uint8_t, 2> kPair = {'\r', '\n'};
  return std::search(bytes.begin(), bytes.end(), kPair.begin(), kPair.end()) == bytes.end();
}

LineEnd commonLineEnd(const std::array<std::size_t, 3>& counts, const Storage& storage) {
  const auto* const most = std::ranges::max_element(counts);
  if (*most > 0) return static_cast<LineEnd>(most - counts.begin());
  const bool unixText = storage.coding.encoding == Encoding::utf8 && storage.markLength == 0;
  return unixText ? LineEnd::lineFeed : LineEnd::carriageReturnLineFeed;
}

Decoded decode(ByteSpan bytes, const Storage& storage, const base::Bytes& file) {
  file.release();
  return withEncoding(storage.coding.encoding, [&]<Encoding kEncoding>() {
    if (isNarrow(bytes, storage)) return Decoder<kEncoding, std::uint8_t>(bytes, storage, file).decode();
    return Decoder<kEncoding, char16_t>(bytes, storage, file).decode();
  });
}

}  // namespace pluvo::plain
