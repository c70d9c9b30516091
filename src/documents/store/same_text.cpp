#include "same_text.h"

#include <algorithm>
#include <cstring>

namespace pluvo::store {

using text::Position;
using text::Stretch;

namespace {

bool equal(const Stretch& a, const Stretch& b) {
  const auto length = static_cast<std::size_t>(a.length);
  const bool bytesTell = a.narrow != nullptr && b.narrow != nullptr && a.lineFeedIsMark == b.lineFeedIsMark;
  if (bytesTell && std::memcmp(a.narrow, b.narrow, length) == 0) return true;
  for (Position i = 0; i < a.length; ++i)
    if (a[i] != b[i]) return false;
  return true;
}

}  // namespace

bool sameText(const text::PieceText& edited, const text::OriginalText& readBack,
              const std::function<void()>& pause) {
  constexpr Position kWindow = 4 * 1024 * 1024;
  if (edited.length() != readBack.length()) return false;
  bool same = true;
  for (Position from = 0, to = 0; same && from < edited.length(); from = to) {
    to = from + std::min(kWindow, edited.length() - from);
    edited.forEachStretch(from, to, [&](Position start, const Stretch& stretch) {
      same = equal(stretch, readBack.stretch(start, start + stretch.length));
      return same;
    });
    pause();
  }
  return same;
}

}  // namespace pluvo::store
