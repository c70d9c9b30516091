#include "drawings.h"

#include "base/little_endian.h"

#include <string>

namespace pluvo::doc {

using base::ByteSpan;
using base::get16;
using base::get32;

namespace {

constexpr std::size_t kHead = 8;
constexpr std::uint16_t kContainer = 0xF;
constexpr std::uint16_t kOptions = 0xF00B, kMoreOptions = 0xF122, kStores = 0xF001;
constexpr std::uint16_t kWordArt = 0xC0, kDescription = 0x381;
constexpr std::uint16_t kNumber = 0x3FFF, kIsLong = 0x8000;

void tellText(ByteSpan bytes, const std::function<void(std::u16string_view)>& tell) {
  std::u16string text;
  for (std::size_t i = 0; i + 2 <= bytes.size() && get16(bytes, i) != 0; i += 2)
    text.push_back(get16(bytes, i));
  if (!text.empty()) tell(text);
}

/// Options of six bytes each; longer values follow them all.
void tellOptions(ByteSpan bytes, std::size_t count, const DrawingTexts& texts) {
  constexpr std::size_t kOption = 6;
  std::size_t after = count * kOption;
  for (std::size_t i = 0; i < count && (i + 1) * kOption <= bytes.size(); ++i) {
    const std::uint16_t option = get16(bytes, i * kOption);
    if ((option & kIsLong) == 0) continue;
    const std::size_t size = get32(bytes, i * kOption + 2);
    if (after > bytes.size() || size > bytes.size() - after) return;
    const ByteSpan value = bytes.subspan(after, size);
    if ((option & kNumber) == kWordArt) tellText(value, texts.wordArt);
    if ((option & kNumber) == kDescription) tellText(value, texts.description);
    after += size;
  }
}

}  // namespace

void tellDrawings(ByteSpan records, const DrawingTexts& texts) {
  // Containers are entered by going on after their heads, so that no depth is needed.
  for (std::size_t at = 0; at + kHead <= records.size();) {
    const std::uint16_t head = get16(records, at);
    const std::uint16_t type = get16(records, at + 2);
    const std::size_t size = get32(records, at + 4);
    // In front of each drawing stands a byte that says whether headers have it.
    if (type < 0xF000) {
      ++at;
      continue;
    }
    at += kHead;
    if ((head & kContainer) == kContainer && type != kStores) continue;
    if (size > records.size() - at) return;
    if (type == kOptions || type == kMoreOptions) tellOptions(records.subspan(at, size), head >> 4U, texts);
    at += size;
  }
}

void forEachShapePicture(ByteSpan records, const std::function<void(std::size_t, std::size_t)>& visit) {
  constexpr std::uint16_t kStore = 0xF007, kAll = 0xF000;
  constexpr std::size_t kSize = 20, kPlace = 28, kLeast = 36;
  for (std::size_t at = 0; at + kHead <= records.size();) {
    const std::uint16_t type = get16(records, at + 2);
    const std::size_t size = get32(records, at + 4);
    at += kHead;
    if (type == kAll || type == kStores) continue;
    if (type < kAll || size > records.size() - at) return;
    if (type == kStore && size >= kLeast) {
      const std::size_t from = get32(records, at + kPlace);
      visit(from, from + get32(records, at + kSize));
    }
    at += size;
  }
}

ByteSpan pictureRecords(ByteSpan data, std::size_t at) {
  constexpr std::size_t kKind = 6, kLinkedFile = 0x66;
  if (at > data.size() || data.size() - at < 8) return {};
  ByteSpan picture = data.subspan(at);
  const std::size_t size = get32(picture, 0);
  std::size_t head = get16(picture, 4);
  if (size > picture.size() || head > size || head < 8) return {};
  picture = picture.first(size);
  // The name of a linked file follows, with its length in front.
  if (get16(picture, kKind) == kLinkedFile && head < size) head += 1 + std::size_t{picture[head]};
  return head <= size ? picture.subspan(head) : ByteSpan();
}

}  // namespace pluvo::doc
