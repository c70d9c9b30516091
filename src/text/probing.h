#pragma once

#include "characters.h"
#include "scan.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

/// How probes are chosen.
namespace pluvo::text {

/// Probes are chosen among so many units at the front.
inline constexpr std::size_t kProbed = 256;

/// Larger for units that are rarer in ordinary text.
inline std::size_t rarity(char16_t unit) {
  static constexpr std::u16string_view kCommonFirst = u" etaoinsrhldcumfpgwybvk,.\r\n-0123456789";
  return std::min(kCommonFirst.find(foldCase(unit)), kCommonFirst.size());
}

/// A test that all forms pass, or nothing when they have more than two values under every mask of one bit.
template <class Unit>
std::optional<Probe<Unit>> probeFor(const std::vector<Unit>& forms, std::size_t offset) {
  std::vector<Unit> masks;
  for (const Unit form : forms) {
    const auto difference = static_cast<Unit>(form ^ forms.front());
    if (difference != 0 && (difference & (difference - 1)) == 0) masks.push_back(difference);
  }
  masks.push_back(0);
  for (const Unit mask : masks) {
    Probe<Unit> probe{offset, mask, static_cast<Unit>(forms.front() | mask), 0};
    probe.other = probe.value;
    bool serves = true;
    for (const Unit form : forms) {
      const auto masked = static_cast<Unit>(form | mask);
      if (masked == probe.value || masked == probe.other) continue;
      serves = serves && probe.other == probe.value;
      probe.other = masked;
    }
    if (serves) return probe;
  }
  return std::nullopt;
}

}  // namespace pluvo::text
