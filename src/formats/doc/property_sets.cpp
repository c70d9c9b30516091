#include "property_sets.h"

#include "base/little_endian.h"
#include "base/utf.h"
#include "code_pages/code_page.h"

#include <algorithm>
#include <optional>
#include <string>

namespace pluvo::doc {

using base::ByteSpan;
using base::get16;
using base::get32;

namespace {

enum Type : std::uint16_t {
  kVariant = 0x000C,
  kBytesOfBasic = 0x0008,
  kBytes = 0x001E,
  kUnits = 0x001F,
  kClipboard = 0x0047,
  kVector = 0x1000,
};

constexpr std::uint16_t kUtf16 = 1200;
constexpr std::uint16_t kUtf8 = 65001;
constexpr std::uint32_t kDictionary = 0;
constexpr std::uint32_t kCodePage = 1;

/// One set of properties of a stream.
class PropertySet {
 public:
  PropertySet(ByteSpan bytes, const PropertyTexts& texts) : bytes_(bytes), texts_(texts) {}

  void tell() {
    if (bytes_.size() < 8) return;
    const std::size_t count = std::min<std::size_t>(get32(bytes_, 4), (bytes_.size() - 8) / 8);
    // A property may be named any number of times, and is told once each byte there is.
    left_ = bytes_.size();
    for (std::size_t i = 0; i < count; ++i)
      if (get32(bytes_, 8 + i * 8) == kCodePage) readCodePage(get32(bytes_, 12 + i * 8));
    for (std::size_t i = 0; i < count; ++i) {
      at_ = get32(bytes_, 12 + i * 8);
      if (get32(bytes_, 8 + i * 8) == kDictionary) {
        names();
      } else {
        value();
      }
    }
  }

 private:
  bool has(std::size_t size) const { return at_ <= bytes_.size() && size <= bytes_.size() - at_; }
  std::optional<std::uint32_t> number() {
    if (!has(4)) return std::nullopt;
    at_ += 4;
    return get32(bytes_, at_ - 4);
  }

  void readCodePage(std::size_t at) {
    if (at + 6 <= bytes_.size()) codePage_ = get16(bytes_, at + 4);
  }

  void value() {
    const auto type = number();
    if (type) valueOf(static_cast<std::uint16_t>(*type));
  }

  bool valueOf(std::uint16_t type) {
    if ((type & kVector) != 0) return vector(type & ~kVector & 0xFFFFU);
    switch (type) {
      case kBytes:
      case kBytesOfBasic:
        return string(1);
      case kUnits:
        return string(2);
      case kClipboard:
        texts_.thumbnail();
        return false;
      default:
        // A number, as those of variants are.
        return number().has_value();
    }
  }

  bool vector(std::uint32_t type) {
    const auto count = number();
    for (std::uint32_t i = 0; count && i < *count; ++i) {
      std::uint32_t each = type;
      if (type == kVariant) {
        const auto own = number();
        if (!own) return false;
        each = *own;
      }
      if ((each & kVector) != 0 || !valueOf(static_cast<std::uint16_t>(each))) return false;
    }
    return true;
  }

  /// Its count of characters stands in front of it.
  bool string(std::size_t width) {
    const auto count = number();
    if (!count || !has(*count * width) || *count * width > left_) return false;
    left_ -= *count * width;
    const ByteSpan bytes = bytes_.subspan(at_, *count * width);
    at_ += bytes.size();
    // Of wide strings the next thing begins at a multiple of four.
    if (width == 2) at_ += at_ % 4 == 0 ? 0 : 4 - at_ % 4;
    tell(width == 2 || codePage_ == kUtf16 ? wide(bytes) : decoded(bytes));
    return true;
  }

  /// The names that a document's maker gave to properties.
  void names() {
    const auto count = number();
    for (std::uint32_t i = 0; count && i < *count; ++i) {
      if (!number() || !string(codePage_ == kUtf16 ? 2 : 1)) return;
    }
  }

  void tell(std::u16string text) const {
    text.resize(std::min(text.find(u'\0'), text.size()));
    if (!text.empty()) texts_.text(text);
  }

  static std::u16string wide(ByteSpan bytes) {
    std::u16string units;
    for (std::size_t i = 0; i + 2 <= bytes.size(); i += 2) units.push_back(get16(bytes, i));
    return units;
  }

  std::u16string decoded(ByteSpan bytes) const {
    std::u16string units;
    if (codePage_ == kUtf8) {
      std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
      return base::utf16(text.substr(0, base::wellFormedLength(text)));
    }
    const auto page = code_pages::CodePage::named("CP" + std::to_string(codePage_)).page;
    while (!bytes.empty()) {
      const auto next = page != nullptr ? page->first(bytes) : code_pages::Character{bytes[0], 1};
      base::appendUtf16(units, next.codePoint);
      bytes = bytes.subspan(next.bytes);
    }
    return units;
  }

  ByteSpan bytes_;
  const PropertyTexts& texts_;
  std::size_t at_ = 0;
  std::size_t left_ = 0;
  std::uint16_t codePage_ = 1252;
};

}  // namespace

void tellPropertySet(ByteSpan stream, const PropertyTexts& texts) {
  constexpr std::size_t kHead = 28, kSet = 20, kMostSets = 2;
  if (stream.size() < kHead) return;
  const std::size_t sets = std::min<std::size_t>(get32(stream, 24), kMostSets);
  for (std::size_t i = 0; i < sets && kHead + (i + 1) * kSet <= stream.size(); ++i) {
    const std::size_t at = get32(stream, kHead + i * kSet + 16);
    if (at <= stream.size()) PropertySet(stream.subspan(at), texts).tell();
  }
}

}  // namespace pluvo::doc
