#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace pluvo::zip {

/// A compound file with these streams, as far as its directory tells: two entries a sector of 512 bytes, in a
/// chain that begins in sector 1 and ends where `follower` says.
inline std::string compoundFile(const std::vector<std::string>& names, std::uint32_t follower = 0xFFFFFFFE) {
  const std::size_t count = std::max<std::size_t>(1, (names.size() + 1) / 2);
  std::string file(512 * (2 + count), '\0');
  const auto set = [&](std::size_t at, std::uint32_t value) {
    for (std::size_t i = 0; i < 4; ++i) file[at + i] = static_cast<char>(value >> (8 * i));
  };
  file.replace(0, 8, "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1");
  file[0x1E] = 9;
  set(0x30, 1);
  set(0x4C, 0);
  for (std::size_t i = 0; i < count; ++i) {
    const auto next = static_cast<std::uint32_t>(i + 2);
    set(512 + 4 * (i + 1), i + 1 < count ? next : follower == 0 ? 1 : follower);
  }
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::size_t at = 1024 + 512 * (i / 2) + 128 * (i % 2 == 0 ? 0 : 3);
    for (std::size_t c = 0; c < names[i].size(); ++c) file[at + 2 * c] = names[i][c];
    file[at + 0x40] = static_cast<char>((names[i].size() + 1) * 2);
    file[at + 0x42] = 2;
  }
  return file;
}

}  // namespace pluvo::zip
