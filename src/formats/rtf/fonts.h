#pragma once

#include "base/bytes.h"
#include "code_pages/code_page.h"
#include "tokens.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace pluvo::rtf {

/// How the bytes of a font's text are characters.
struct Decoder {
  enum class Kind : std::uint8_t { symbol, single, several };
  Kind kind = Kind::single;
  /// Of one byte a character: those of the upper half.
  std::array<char16_t, 128> upper = {};
  /// Of several; null where this system does not know the code page.
  const code_pages::CodePage* page = nullptr;
};

/// The fonts of a document, so far as they say what bytes mean.
class Fonts {
 public:
  /// Takes the fonts of a table, whose bytes lie between its braces.
  void read(std::string_view bytes, Extent table);
  void codePage(std::int32_t number) {
    codePage_ = number;
    decoderOf_.clear();
  }
  void standard(std::int32_t font) { standard_ = font; }
  std::int32_t standard() const { return standard_; }

  /// The number of a font's decoder.
  std::uint16_t decoderOf(std::int32_t font);
  const Decoder& decoder(std::uint16_t number) const { return decoders_[number]; }

  /// A font whose bytes are letters, the standard one if that is: for new text beside symbols. Nothing where
  /// there is none.
  std::optional<std::int32_t> forLetters() const;

 private:
  struct Font {
    std::int32_t charset = kUnsaid;
    std::int32_t codePage = kUnsaid;
  };
  static constexpr std::int32_t kUnsaid = -1;
  static constexpr std::size_t kMost = 65'536;

  std::int32_t codePageOf(std::int32_t font) const;
  std::uint16_t decoderFor(std::int32_t codePage);

  std::unordered_map<std::int32_t, Font> fonts_;
  std::vector<Decoder> decoders_;
  std::unordered_map<std::int32_t, std::uint16_t> decoderOf_;  ///< fonts asked for
  std::unordered_map<std::int32_t, std::uint16_t> ofCodePage_;
  std::int32_t codePage_ = 1252;
  std::int32_t standard_ = 0;
};

}  // namespace pluvo::rtf
