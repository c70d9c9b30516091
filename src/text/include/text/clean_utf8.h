#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace pluvo::text {

/// How many bytes at the beginning are for certain whole UTF-8 characters of text. Control characters but
/// tabs and line ends are none, nor are U+FFFE and U+FFFF. Of the last bytes, fewer than 70, and of those
/// before a character of another kind nothing is told: they may be such, too.
std::size_t cleanUtf8(std::span<const std::uint8_t> bytes);

}  // namespace pluvo::text
