#include "same_text.h"

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

bool sameText(const text::PieceText& edited, const text::OriginalText& readBack) {
  if (edited.length() != readBack.length()) return false;
  bool same = true;
  edited.forEachStretch(0, edited.length(), [&](Position start, const Stretch& stretch) {
    same = equal(stretch, readBack.stretch(start, start + stretch.length));
    return same;
  });
  return same;
}

}  // namespace pluvo::store
