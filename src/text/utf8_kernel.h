#pragma once

// The looks over UTF-8 for one set of vector instructions; see vectors.h.

#include "block_bits.h"
#include "utf8_check.h"
#include "utf8_scan.h"

namespace pluvo::text {
namespace {

/// Where units begin, and which characters are two.
struct Starts {
  Mask starts;
  Mask pairs;

  std::size_t count() const { return ones(starts) + ones(pairs); }
  /// The n-th unit's place in the block; left is 1 where it is the second half of a pair.
  Utf8Step unit(std::size_t n) const {
    if (pairs == 0) return {placeOfBit(starts, n), 0};
    for (Mask rest = starts;; rest &= rest - 1) {
      const auto place = static_cast<std::size_t>(__builtin_ctzll(rest));
      const std::size_t units = 1 + (pairs >> place & 1);
      if (n < units) return {place, n};
      n -= units;
    }
  }
};

/// Of a block whose predecessor may have ended with a carriage return; tells whether this one does.
inline Starts startsOf(const Bytes64& bytes, Mask& before) {
  const Mask high = bytes.high();
  const Mask returns = bytes.equalTo('\r');
  const Mask followers = high == 0 ? 0 : bytes.highBelow(0xC0);
  const Mask feeds = (returns | before) == 0 ? 0 : bytes.equalTo('\n') & (returns << 1 | before);
  const Mask pairs = high == 0 ? 0 : high & ~bytes.highBelow(0xF0);
  before = returns >> 63;
  return {~(followers | feeds), pairs};
}

/// 1 where a line feed at an offset belongs to the carriage return before it.
Mask returnBefore(const std::uint8_t* bytes, std::size_t offset) {
  return offset > 0 && bytes[offset - 1] == '\r' ? 1 : 0;
}

/// How many units begin with each byte, below zero; each line feed is one.
Vector unitsBegun(Vector bytes) { return plus(greater(bytes, 0xBF), greater(beyond(bytes, 0xEF), 0)); }

/// So many bytes are looked at together.
constexpr std::size_t kRow = kNoteInterval;

/// The results of one look over a row, lane by lane.
struct Row {
  Vector high, zeros, feeds, returns;
  Vector begun, wrong;  ///< made only where there is more than ASCII

  template <bool kIsAscii>
  static Row of(const std::uint8_t* bytes) {
    static_assert(kRow / sizeof(Vector) * 2 < 256, "no count overflows");
    Vector high = fill(std::uint8_t{0});
    Vector zeros = high, feeds = high, returns = high, begun = high, wrong = high;
    for (std::size_t i = 0; i < kRow; i += sizeof(Vector)) {
      const Vector here = load(bytes + i);
      high = either(high, here);
      zeros = either(zeros, equal(here, 0));
      feeds = minus(feeds, equal(here, '\n'));
      returns = minus(returns, equal(here, '\r'));
      if constexpr (kIsAscii) continue;
      wrong = either(wrong, Utf8Vector(bytes + i).wrong());
      begun = minus(begun, unitsBegun(here));
    }
    return {high, zeros, feeds, returns, begun, wrong};
  }

  bool isAscii() const { return bits(high) == 0; }
};

/// FF for line feeds that belong to the carriage return before them.
Vector joinedAt(const std::uint8_t* at) { return both(equal(load(at), '\n'), equal(load(at - 1), '\r')); }

std::uint64_t joinedIn(const std::uint8_t* row) {
  Vector joined = fill(std::uint8_t{0});
  for (std::size_t i = 0; i < kRow; i += sizeof(Vector)) joined = minus(joined, joinedAt(row + i));
  return sum(joined);
}

/// A survey under way.
struct Surveyor {
  Utf8Scan& scan;
  bool ascii = true;  ///< the row before

  /// Of a row of which so many bytes are there, with blanks after them. False where these are no UTF-8.
  bool take(const std::uint8_t* bytes, std::size_t number, std::size_t inside) {
    if (!scan.plain) scan.notes[number] = static_cast<std::uint32_t>(scan.units);
    // Rows are mostly like the one before.
    Row row = ascii ? Row::of<true>(bytes) : Row::of<false>(bytes);
    if (ascii && !row.isAscii()) row = Row::of<false>(bytes);
    const bool checked = !ascii || !row.isAscii();
    if (checked && !isZero(row.wrong)) return false;
    ascii = row.isAscii();
    const std::uint64_t joined = isZero(row.returns) && bytes[-1] != '\r' ? 0 : joinedIn(bytes);
    const std::uint64_t units = (checked ? sum(row.begun) - (kRow - inside) : inside) - joined;
    scan.ascii = scan.ascii && ascii;
    scan.zeros |= !isZero(row.zeros);
    scan.lineFeeds += sum(row.feeds);
    scan.carriageReturns += sum(row.returns);
    scan.pairs += joined;
    if (scan.plain && units != inside) notePlain(number);
    scan.units += units;
    return true;
  }

  void notePlain(std::size_t last) {
    scan.plain = false;
    for (std::size_t row = scan.firstRow; row <= last; ++row)
      scan.notes[row] = static_cast<std::uint32_t>((row - scan.firstRow) * kRow);
  }
};

bool survey(const std::uint8_t* bytes, std::size_t size, Utf8Scan& scan) {
  Surveyor surveyor{scan};
  const auto padded = [&](std::size_t row) {
    const std::size_t left = size - row * kRow;
    const Padded<kRow> all(bytes, size, row * kRow);
    return surveyor.take(all.bytes(), row, left < kRow ? left : kRow);
  };
  const std::size_t whole = size / kRow;
  const std::size_t end = scan.endRow < whole ? scan.endRow : whole;
  std::size_t row = scan.firstRow;
  if (row == 0 && row < end && !padded(row++)) return false;
  for (; row < end; ++row)
    if (!surveyor.take(bytes + row * kRow, row, kRow)) return false;
  // Also where no bytes are left, for a character that the end cuts off.
  return scan.endRow <= whole || padded(whole);
}

std::size_t cleanBytes(const std::uint8_t* bytes, std::size_t size) {
  if (size < kBlock) return 0;
  const Padded<kBlock> front(bytes, size, 0);
  Mask highBefore = 0;
  std::size_t offset = 0;
  for (; offset + kBlock <= size; offset += kBlock) {
    const std::uint8_t* const at = offset == 0 ? front.bytes() : bytes + offset;
    const Bytes64 here(at);
    const Mask high = here.high();
    const Mask controls = here.below(0x20) & ~high;
    if (controls != 0 && (controls & ~(here.equalTo('\t') | here.equalTo('\n') | here.equalTo('\r'))) != 0)
      break;
    if ((high | highBefore) != 0) {
      Vector wrong = fill(std::uint8_t{0});
      for (std::size_t i = 0; i < kBlock; i += sizeof(Vector)) {
        const Utf8Vector each(at + i);
        wrong = either(wrong, either(each.wrong(), each.noncharacters()));
      }
      if (!isZero(wrong)) break;
    }
    highBefore = high >> (kBlock - kInFront);
  }
  // Back to where the last character begins: its end may be wrong, or lie further on.
  while (offset > 0 && bytes[offset - 1] >= 0x80 && bytes[offset - 1] < 0xC0) --offset;
  if (offset > 0 && bytes[offset - 1] >= 0xC0) --offset;
  return offset;
}

__attribute__((noinline)) Utf8Step walkInRest(const std::uint8_t* bytes, std::size_t size, std::size_t from,
                                              std::size_t units, Mask before) {
  const Rest rest(bytes + from, size - from);
  Starts starts = startsOf(Bytes64(rest.bytes), before);
  starts.starts &= rest.inside;
  if (units >= starts.count()) return {size, 0};
  const Utf8Step at = starts.unit(units);
  return {from + at.offset, at.left};
}

Utf8Step walk(const std::uint8_t* bytes, std::size_t size, std::size_t from, std::size_t units) {
  Mask before = returnBefore(bytes, from);
  for (; from + kBlock <= size; from += kBlock) {
    const Starts starts = startsOf(Bytes64(bytes + from), before);
    const std::size_t count = starts.count();
    if (units < count) {
      const Utf8Step at = starts.unit(units);
      return {from + at.offset, at.left};
    }
    units -= count;
  }
  return walkInRest(bytes, size, from, units, before);
}

Utf8Step walkBack(const std::uint8_t* bytes, std::size_t size, std::size_t from, std::size_t units) {
  while (from >= kBlock) {
    from -= kBlock;
    Mask before = returnBefore(bytes, from);
    const Starts starts = startsOf(Bytes64(bytes + from), before);
    const std::size_t count = starts.count();
    if (units <= count) {
      const Utf8Step at = starts.unit(count - units);
      return {from + at.offset, at.left};
    }
    units -= count;
  }
  Mask before = 0;
  const Rest rest(bytes, from);
  Starts starts = startsOf(Bytes64(rest.bytes), before);
  starts.starts &= rest.inside;
  const std::size_t count = starts.count();
  return walk(bytes, size, 0, count < units ? 0 : count - units);
}

__attribute__((noinline)) std::size_t countInRest(const std::uint8_t* bytes, std::size_t from, std::size_t to,
                                                  Mask before) {
  const Rest rest(bytes + from, to - from);
  Starts starts = startsOf(Bytes64(rest.bytes), before);
  starts.starts &= rest.inside;
  return starts.count();
}

/// Of at most 256 bytes, none of them the text's first, where so many follow from.
std::size_t countNear(const std::uint8_t* bytes, std::size_t from, std::size_t to) {
  std::size_t units = 0;
  for (; from < to; from += sizeof(Vector)) {
    const Vector here = load(bytes + from);
    const Mask inside = to - from < sizeof(Vector) ? (Mask{1} << (to - from)) - 1 : ~Mask{0};
    const Mask starts = bits(greater(here, 0xBF));
    const Mask pairs = bits(both(here, greater(here, 0xEF)));
    units += ones(starts & inside) + ones(pairs & inside) - ones(bits(joinedAt(bytes + from)) & inside);
  }
  return units;
}

__attribute__((noinline)) std::size_t countFar(const std::uint8_t* bytes, std::size_t size, std::size_t from,
                                               std::size_t to) {
  std::size_t units = 0;
  if (from == 0 && to > 0) units = bytes[from++] < 0xF0 ? 1 : 2;
  while (to - from >= sizeof(Vector)) {
    const std::size_t most = from + kRow < to ? from + kRow : to;
    Vector begun = fill(std::uint8_t{0});
    for (; from + sizeof(Vector) <= most; from += sizeof(Vector))
      begun = plus(minus(begun, unitsBegun(load(bytes + from))), joinedAt(bytes + from));
    units += static_cast<std::size_t>(sum(begun));
  }
  Mask before = returnBefore(bytes, from);
  for (; from + kBlock <= size && from < to; from += kBlock) {
    Starts starts = startsOf(Bytes64(bytes + from), before);
    if (to - from < kBlock) {
      const Mask wanted = (Mask{1} << (to - from)) - 1;
      starts.starts &= wanted;
      starts.pairs &= wanted;
    }
    units += starts.count();
  }
  return from < to ? units + countInRest(bytes, from, to, before) : units;
}

std::size_t count(const std::uint8_t* bytes, std::size_t size, std::size_t from, std::size_t to) {
  constexpr std::size_t kNear = 4 * kBlock;
  const bool isNear = from > 0 && from < to && to - from <= kNear && size - from >= kNear;
  return isNear ? countNear(bytes, from, to) : countFar(bytes, size, from, to);
}

}  // namespace
}  // namespace pluvo::text
