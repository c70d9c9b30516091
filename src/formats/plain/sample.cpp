#include "sample.h"

#include "survey.h"

#include <algorithm>

namespace pluvo::plain {

using base::ByteSpan;

std::vector<std::uint8_t> telling(ByteSpan bytes, std::size_t most) {
  constexpr std::size_t kBefore = 200;  // of a line whose front is left out
  std::vector<std::uint8_t> lines;
  std::size_t lineStart = 0;
  for (std::size_t at = 0; at < bytes.size() && lines.size() < most;) {
    if (bytes[at] < 0x80) {
      at += std::max<std::size_t>(plainRun(bytes.subspan(at)), 1);
      if (bytes[at - 1] == '\n' || bytes[at - 1] == '\r') lineStart = at;
      continue;
    }
    const std::size_t from = at - std::min(at - lineStart, kBefore);
    const ByteSpan rest = bytes.subspan(from, std::min(bytes.size() - from, most - lines.size()));
    const auto end = std::ranges::find(rest.subspan(at - from < rest.size() ? at - from : 0), '\n');
    const auto taken = static_cast<std::size_t>(end - rest.begin());
    lines.insert(lines.end(), rest.begin(), end);
    lines.push_back('\n');
    at = lineStart = from + taken + 1;
  }
  return lines;
}

}  // namespace pluvo::plain
