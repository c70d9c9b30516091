#pragma once

#include "base/bytes.h"
#include "base/utf.h"

#include <array>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::code_pages {

/// The smallest piece of a text that has bytes of its own: a character, or half of a surrogate pair in
/// UTF-16. Line ends are apart.
struct Character {
  char32_t codePoint = 0;
  std::uint8_t bytes = 0;
  bool valid = true;  ///< false: one byte that means nothing in the encoding, as strayByte
};

/// A byte that is no character stands in the text as the lone surrogate DC80 to DCFF. No text that is
/// inserted may hold one, so that such a unit is always that byte of the file.
constexpr bool isStray(char32_t point) {
  return point >= base::standInOf(0) && point <= base::standInOf(0xFF);
}
constexpr Character strayByte(std::uint8_t byte) { return {base::standInOf(byte), 1, false}; }

/// An encoding that the system's iconv knows, without shift states, of up to four bytes a character. Or one
/// of the Macintosh's for Arabic, Greek, Hebrew and Turkish, which few systems know. What single bytes and
/// pairs stand for is made out once; longer ones are asked for one by one. May be used from several threads.
class CodePage {
 public:
  /// Whether it could be made out, and if not, why.
  enum class Kind : std::uint8_t { usable, unknown, stateful, notByBytes };
  struct Conversion {
    Kind kind = Kind::unknown;
    const CodePage* page = nullptr;  ///< lives as long as the program
  };
  /// By iconv's name. Made out at the first call.
  static Conversion named(const std::string& iconvName);

  CodePage(const CodePage&) = delete;
  CodePage& operator=(const CodePage&) = delete;
  ~CodePage();

  /// The character at the front of bytes, of which there is at least one.
  Character first(base::ByteSpan bytes) const {
    const std::uint32_t single = singles_[bytes[0]];
    return single < kFirstMark ? Character{single, 1} : firstOfSeveral(bytes);
  }
  /// Whether bytes below 80 at the start of a character are ASCII, and no others are.
  bool keepsAscii() const { return keepsAscii_; }
  bool isSingleByte() const { return pairs_.empty(); }

  struct Encoded {
    std::array<std::uint8_t, 4> bytes = {};
    std::uint8_t count = 0;
  };
  /// Nothing where the encoding has no such character, or would not give it back as it was.
  std::optional<Encoded> encoded(char32_t point) const;

 private:
  class Converter;

  // Above all characters: what a byte, or a pair, is that stands for none.
  static constexpr std::uint32_t kFirstMark = 0x110000;
  static constexpr std::uint32_t kNone = kFirstMark;
  static constexpr std::uint32_t kLonger = kFirstMark + 1;  ///< of a pair: the beginning of more
  static constexpr std::uint32_t kLead = kFirstMark + 2;    ///< of a byte: and the number of its row of pairs

  explicit CodePage(std::unique_ptr<Converter> converter);
  Kind makeOut();
  Kind takeOver(std::u16string_view upper);
  Character firstOfSeveral(base::ByteSpan bytes) const {
    const std::uint32_t single = singles_[bytes[0]];
    if (single < kLead || bytes.size() < 2) return strayByte(bytes[0]);
    const std::uint32_t pair = pairs_[single - kLead][bytes[1]];
    if (pair < kFirstMark) return {pair, 2};
    return pair == kLonger ? firstOfMany(bytes) : strayByte(bytes[0]);
  }
  Character firstOfMany(base::ByteSpan bytes) const;
  void noteReverse(std::uint32_t point, unsigned bytes);
  std::optional<Encoded> encodedByConverter(char32_t point) const;

  std::array<std::uint32_t, 256> singles_ = {};
  std::vector<std::array<std::uint32_t, 256>> pairs_;
  std::vector<std::uint16_t> reverse_;  ///< one or two bytes for each character below 10000; 0 for none
  bool keepsAscii_ = true;
  mutable std::mutex mutex_;
  std::unique_ptr<Converter> converter_;  ///< under the mutex; null where the table is ours
};

}  // namespace pluvo::code_pages
