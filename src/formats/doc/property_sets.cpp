#include "property_sets.h"

#include "base/little_endian.h"
#include "base/utf.h"
#include "code_pages/code_page.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

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
  kBlob = 0x0041,
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
  /// From a place in a stream on.
  PropertySet(ByteSpan stream, std::size_t from, std::size_t number, const PropertyTexts& texts)
      : bytes_(stream.subspan(from)), from_(from), number_(number), texts_(texts) {}

  void tell() {
    if (bytes_.size() < 8) return;
    const std::size_t count = std::min<std::size_t>(get32(bytes_, 4), (bytes_.size() - 8) / 8);
    // A property may be named any number of times, and is told once each byte there is.
    left_ = bytes_.size();
    for (std::size_t i = 0; i < count; ++i)
      if (get32(bytes_, 8 + i * 8) == kCodePage) readCodePage(get32(bytes_, 12 + i * 8));
    for (std::size_t i = 0; i < count; ++i) {
      at_ = get32(bytes_, 12 + i * 8);
      id_ = get32(bytes_, 8 + i * 8);
      if (id_ == kDictionary) {
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
      case kBlob:
        // Among a document's own properties it holds the document's links.
        return number_ > 0 && number() && vector(kVariant);
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
    Decoded decoded{{}, {from_ + at_}};
    at_ += bytes.size();
    // Of wide strings the next thing begins at a multiple of four.
    if (width == 2) at_ += at_ % 4 == 0 ? 0 : 4 - at_ % 4;
    const bool isWide = width == 2 || codePage_ == kUtf16;
    decode(bytes, isWide, decoded);
    if (!decoded.units.empty())
      texts_.text({decoded.units, number_, id_, id_ == kDictionary, isWide, decoded.places});
    return true;
  }

  /// The names that a document's maker gave to properties.
  void names() {
    const auto count = number();
    for (std::uint32_t i = 0; count && i < *count; ++i) {
      if (!number() || !string(codePage_ == kUtf16 ? 2 : 1)) return;
    }
  }

  struct Decoded {
    std::u16string units;
    std::vector<std::size_t> places;
  };

  /// Up to the zero that ends it.
  void decode(ByteSpan bytes, bool isWide, Decoded& decoded) const {
    const auto page = code_pages::CodePage::named("CP" + std::to_string(codePage_)).page;
    const auto next = [&]() -> code_pages::Character {
      if (isWide) return {bytes.size() < 2 ? U'\0' : get16(bytes, 0), 2};
      if (codePage_ == kUtf8) {
        const auto character =
            base::firstOfUtf8(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
        return {character.bytes == 0 ? U'\0' : character.point, character.bytes};
      }
      return page != nullptr ? page->first(bytes) : code_pages::Character{bytes[0], 1};
    };
    while (!bytes.empty()) {
      const code_pages::Character character = next();
      if (character.codePoint == 0) return;
      base::appendUtf16(decoded.units, character.codePoint);
      bytes = bytes.subspan(character.bytes);
      decoded.places.resize(decoded.units.size() + 1, decoded.places.back() + character.bytes);
    }
  }

  ByteSpan bytes_;
  std::size_t from_;
  std::size_t number_;
  const PropertyTexts& texts_;
  std::uint32_t id_ = 0;
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
    if (at <= stream.size()) PropertySet(stream, at, i, texts).tell();
  }
}

}  // namespace pluvo::doc
