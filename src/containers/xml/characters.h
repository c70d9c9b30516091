#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace pluvo::xml {

/// The roles an ASCII byte may have, as bits. Bytes of longer characters count as parts of names, until
/// isNcName says.
enum ByteClass : std::uint8_t {
  kBlank = 1,      ///< space, tab, CR, LF
  kNamePart = 2,   ///< may stand in a qualified name
  kValueStop = 4,  ///< ends an attribute's value or makes it other than its bytes: quotes < & tab CR LF
};

namespace detail {
constexpr std::array<std::uint8_t, 256> byteClasses() {
  std::array<std::uint8_t, 256> classes{};
  const auto add = [&](std::string_view bytes, std::uint8_t kind) {
    for (const char c : bytes) classes[static_cast<unsigned char>(c)] |= kind;
  };
  add(" \t\r\n", kBlank);
  add("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_:-.", kNamePart);
  for (std::size_t byte = 0x80; byte < 256; ++byte) classes[byte] |= kNamePart;
  add("\"'<&\t\r\n", kValueStop);
  return classes;
}
inline constexpr std::array<std::uint8_t, 256> kByteClasses = byteClasses();
}  // namespace detail

inline bool is(char c, ByteClass kind) {
  return (detail::kByteClasses[static_cast<unsigned char>(c)] & kind) != 0;
}

/// A name without colon, as Namespaces in XML has it. The bytes must be sound UTF-8.
bool isNcName(std::string_view name);

/// Where the first byte lies that is not UTF-8 or not part of a character XML 1.0 allows.
std::optional<std::size_t> findBadCharacter(std::string_view bytes);

/// A reference at the beginning of the bytes, '&' included: the five predefined entities and numbers. Its
/// length, or 0 when it is none.
std::size_t readReference(std::string_view bytes, char32_t& codePoint);

}  // namespace pluvo::xml
