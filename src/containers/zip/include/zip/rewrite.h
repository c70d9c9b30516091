#pragma once

#include "base/bytes.h"
#include "zip/archive.h"

#include <span>
#include <string_view>
#include <vector>

namespace pluvo::zip {

/// New contents for one member, as pieces that follow one another (bytes of the old contents and new ones
/// mixed). A single piece is used where it lies; several are gathered into one buffer while the member is
/// packed.
struct Change {
  std::string_view name;
  std::vector<base::ByteSpan> pieces;
  bool remove = false;  ///< the member goes; pieces must be empty
};

/// How hard changed members are deflated: 1 to 12, or by size. By size, what is done in no time either way
/// is made small, and the rest is made fast: level 1 deflates a 10 MB part in 46 ms instead of 110 at level 4
/// and 200 at level 6, and still leaves the main parts of 331 real documents 8 % smaller than their word
/// processors had.
inline constexpr int kLevelBySize = 0;

/// Writes the archive with these members changed, front to back. Every other member's local header, packed
/// bytes, data descriptor and whatever follows up to the next member are copied as they are, in the order in
/// which they lie. A changed member keeps its place, name, times, attributes, method and extra fields; it
/// needs no data descriptor any more, and what followed it is dropped. In the central directory only offsets
/// change, and for changed members sizes, CRC and the descriptor and level flags; ZIP64 fields stay, and
/// appear where they become necessary. Both comments are kept.
///
/// Needs memory for the largest changed member (gathered, unless it is one piece) and its packed form. Each
/// name must be a member's and appear once. Throws DocumentError: tooLarge (a member beyond 4 GiB), and what
/// the output throws.
void rewrite(const Archive& archive, std::span<const Change> changes, base::Output& out,
             int level = kLevelBySize);

}  // namespace pluvo::zip
