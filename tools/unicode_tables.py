#!/usr/bin/env python3
"""Writes src/text/unicode_tables.h from Python's character data. Run it from the root of the tree."""

import subprocess
import unicodedata

OUT = "src/text/unicode_tables.h"


def is_word(code):
    category = unicodedata.category(chr(code))
    return category[0] in "LM" or category in ("Nd", "Nl")


def is_assigned(code):
    return unicodedata.category(chr(code)) != "Cn"


def word_ranges():
    """Letters, combining marks and digits; a gap without assigned characters does not end a range."""
    ranges = []
    for code in filter(is_word, range(0x110000)):
        if ranges and not any(map(is_assigned, range(ranges[-1][1] + 1, code))):
            ranges[-1][1] = code
        else:
            ranges.append([code, code])
    return ranges


def fold(code):
    """Simple case folding: the full folding where that is one character, else the lower case where that is."""
    for folded in (chr(code).casefold(), chr(code).lower()):
        if len(folded) == 1:
            return ord(folded)
    return code


def fold_ranges():
    """[first, last, stride, distance] of the units that fold to another one."""
    ranges = []
    for code in (c for c in range(0x10000) if fold(c) != c):
        distance = fold(code) - code
        if ranges and ranges[-1][3] == distance:
            first, last, stride, _ = ranges[-1]
            step = code - last
            if step == stride or (first == last and step <= 2):
                ranges[-1] = [first, code, step, distance]
                continue
        ranges.append([code, code, 1, distance])
    return ranges


def main():
    words = word_ranges()
    with open(OUT, "w", encoding="ascii") as out:
        out.write(f"""// Written by tools/unicode_tables.py (Unicode {unicodedata.unidata_version}); do not edit.
#pragma once

#include <cstdint>

namespace pluvo::text {{

struct WordRange {{
  char32_t first;
  char32_t last;
}};

/// Letters, combining marks and digits, in order.
inline constexpr WordRange kWordRanges[] = {{
""")
        out.write(",".join(f"{{0x{first:X},0x{last:X}}}" for first, last in words))
        out.write("""};

/// Every stride-th unit from first to last folds to the unit that lies distance from it.
struct FoldRange {
  char16_t first;
  char16_t last;
  std::int32_t stride;
  std::int32_t distance;
};

inline constexpr FoldRange kFoldRanges[] = {
""")
        out.write(",".join(f"{{0x{a:X},0x{b:X},{s},{d}}}" for a, b, s, d in fold_ranges()))
        out.write("};\n\n}  // namespace pluvo::text\n")
    subprocess.run(["clang-format", "-i", OUT], check=True)


main()
