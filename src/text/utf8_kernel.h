#pragma once

// The looks over UTF-8 for one set of vector instructions; see vectors.h.

#include "utf8_block.h"
#include "utf8_scan.h"

namespace pluvo::text {
namespace {

/// The bytes after the last whole block, filled up with zeros.
struct Rest {
  std::uint8_t bytes[kBlock];
  Mask inside;  ///< the bits of bytes that are there

  Rest(const std::uint8_t* from, std::size_t left) : inside((Mask{1} << left) - 1) {
    for (std::size_t i = 0; i < left; ++i) bytes[i] = from[i];
    for (std::size_t i = left; i < kBlock; ++i) bytes[i] = 0;
  }
};

std::size_t ones(Mask mask) { return static_cast<std::size_t>(__builtin_popcountll(mask)); }
/// So far on as n bytes, the last ones before coming in.
Mask later(Mask mask, Mask before, unsigned n) { return mask << n | before >> (64 - n); }

/// Of each byte the places of its bits that are set.
struct BitPlaces {
  std::uint8_t of[256][8] = {};
  constexpr BitPlaces() {
    for (unsigned byte = 0; byte < 256; ++byte) {
      unsigned count = 0;
      for (std::uint8_t place = 0; place < 8; ++place)
        if ((byte >> place & 1) != 0) of[byte][count++] = place;
    }
  }
};
constexpr BitPlaces kBitPlaces;

/// The place of the n-th bit, from 0, of those that are set. Without branches, which nothing could foretell,
/// and with few steps that wait for each other. A call, so that the survey stays in one piece.
__attribute__((noinline)) std::size_t placeOfBit(Mask mask, std::size_t n) {
  if (mask == ~Mask{0}) return n;
  constexpr Mask kOnes = ~Mask{0} / 0xFF;
  Mask sums = mask - (mask >> 1 & kOnes * 0x55);
  sums = (sums & kOnes * 0x33) + (sums >> 2 & kOnes * 0x33);
  sums = ((sums + (sums >> 4)) & kOnes * 0x0F) * kOnes;  // in each byte the bits up to its end
  const Mask passed = ((kOnes * n | kOnes * 0x80) - sums) & kOnes * 0x80;
  const std::size_t at = 8 * ones(passed);
  return at + kBitPlaces.of[mask >> at & 0xFF][n - (sums << 8 >> at & 0xFF)];
}

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
inline Starts startsOf(const Bytes64& bytes, Mask& returnBefore) {
  const Mask high = bytes.high();
  const Mask returns = bytes.equalTo('\r');
  const Mask followers = high == 0 ? 0 : bytes.highBelow(0xC0);
  const Mask feeds = (returns | returnBefore) == 0 ? 0 : bytes.equalTo('\n') & (returns << 1 | returnBefore);
  const Mask pairs = high == 0 ? 0 : high & ~bytes.highBelow(0xF0);
  returnBefore = returns >> 63;
  return {~(followers | feeds), pairs};
}

/// The first bytes of longer characters in a block. The block after it needs them as well.
struct Leads {
  Mask leads = 0;  ///< of characters of two bytes at least
  Mask three = 0;  ///< of three at least
  Mask four = 0;
  Mask e0 = 0, ed = 0, f0 = 0, f4 = 0;  ///< after which not every byte may come
};

Mask wrongBytes(const Bytes64& bytes, Mask high, const Leads& before, Leads& here) {
  const Mask followers = bytes.highBelow(0xC0);
  here.leads = high & ~followers;
  here.three = high & ~bytes.highBelow(0xE0);
  here.four = high & ~bytes.highBelow(0xF0);
  const Mask expected = later(here.leads, before.leads, 1) | later(here.three, before.three, 2) |
                        later(here.four, before.four, 3);
  Mask wrong = expected ^ followers;
  wrong |= here.leads & bytes.highBelow(0xC2);
  here.e0 = bytes.equalTo(0xE0);
  here.ed = bytes.equalTo(0xED);
  if (here.four != 0) {
    wrong |= here.four & ~bytes.highBelow(0xF5);
    here.f0 = bytes.equalTo(0xF0);
    here.f4 = bytes.equalTo(0xF4);
  }
  if ((here.e0 | here.ed | before.e0 | before.ed) != 0) {
    const Mask low = bytes.highBelow(0xA0);
    wrong |= later(here.e0, before.e0, 1) & low;   // fewer bytes would do
    wrong |= later(here.ed, before.ed, 1) & ~low;  // surrogates
  }
  if ((here.f0 | here.f4 | before.f0 | before.f4) != 0) {
    const Mask low = bytes.highBelow(0x90);
    wrong |= later(here.f0, before.f0, 1) & low;
    wrong |= later(here.f4, before.f4, 1) & ~low;  // beyond 10FFFF
  }
  return wrong;
}

/// A survey under way.
struct Surveyor {
  Utf8Scan& scan;
  Leads before{};
  Mask returnBefore = 0;
  bool plain = true;  ///< so far each unit is a byte
  std::uint64_t nextNote = 0;

  /// False where these bytes are no UTF-8.
  bool take(const Bytes64& here, std::size_t offset, Mask inside) {
    const Mask high = here.high();
    const Mask returns = here.equalTo('\r');
    const Mask feeds = here.equalTo('\n');
    scan.lineFeeds += ones(feeds);
    scan.zeros |= (here.equalTo(0) & inside) != 0;
    Starts units{inside, 0};
    if ((high | before.leads) != 0) {
      Leads leads;
      if (wrongBytes(here, high, before, leads) != 0) return false;
      scan.ascii = scan.ascii && high == 0;
      units.starts &= ~(high & ~leads.leads);
      units.pairs = leads.four;
      before = leads;
    }
    if ((returns | returnBefore) != 0) {
      const Mask joined = feeds & (returns << 1 | returnBefore);
      returnBefore = returns >> 63;
      scan.carriageReturns += ones(returns);
      scan.pairs += ones(joined);
      units.starts &= ~joined;
    }
    if (plain && units.starts == inside && units.pairs == 0) {
      scan.units += ones(inside);
      return true;
    }
    if (plain) notePlain();
    note(units, offset);
    return true;
  }

  void notePlain() {
    plain = false;
    for (; nextNote < scan.units; nextNote += kNoteInterval)
      scan.notes[scan.noted++] = static_cast<std::uint32_t>(nextNote);
  }

  void note(const Starts& units, std::size_t offset) {
    const std::uint64_t reached = scan.units + units.count();
    for (; nextNote < reached; nextNote += kNoteInterval) {
      const Utf8Step at = units.unit(static_cast<std::size_t>(nextNote - scan.units));
      scan.notes[scan.noted++] =
          static_cast<std::uint32_t>(offset + at.offset) | (at.left != 0 ? kInsidePair : 0);
    }
    scan.units = reached;
  }
};

bool survey(const std::uint8_t* bytes, std::size_t size, Utf8Scan& scan) {
  Surveyor surveyor{scan};
  std::size_t offset = 0;
  for (; offset + kBlock <= size; offset += kBlock)
    if (!surveyor.take(Bytes64(bytes + offset), offset, ~Mask{0})) return false;
  // Also where there are none left, for a character that the end cuts off.
  const Rest rest(bytes + offset, size - offset);
  return surveyor.take(Bytes64(rest.bytes), offset, rest.inside);
}

/// What a block leaves for the next one to judge U+FFFE and U+FFFF by: EF BF BE and EF BF BF.
struct Noncharacters {
  Mask ef = 0, bf = 0;

  Mask take(const Bytes64& bytes, Mask three) {
    const Mask efBefore = ef;
    const Mask bfBefore = bf;
    ef = three == 0 ? 0 : bytes.equalTo(0xEF);
    bf = 0;
    if ((ef | efBefore) == 0) return 0;
    bf = bytes.equalTo(0xBF);
    return later(ef, efBefore, 2) & later(bf, bfBefore, 1) & (bf | bytes.equalTo(0xBE));
  }
};

std::size_t cleanBytes(const std::uint8_t* bytes, std::size_t size) {
  Leads before;
  Noncharacters noncharacters;
  std::size_t offset = 0;
  for (; offset + kBlock <= size; offset += kBlock) {
    const Bytes64 here(bytes + offset);
    const Mask high = here.high();
    const Mask controls = here.below(0x20) & ~high;
    if (controls != 0 && (controls & ~(here.equalTo('\t') | here.equalTo('\n') | here.equalTo('\r'))) != 0)
      break;
    if ((high | before.leads) == 0) continue;
    Leads leads;
    if ((wrongBytes(here, high, before, leads) | noncharacters.take(here, leads.three)) != 0) break;
    before = leads;
  }
  // Back to where the last character begins: its end may be wrong, or lie further on.
  while (offset > 0 && bytes[offset - 1] >= 0x80 && bytes[offset - 1] < 0xC0) --offset;
  if (offset > 0 && bytes[offset - 1] >= 0xC0) --offset;
  return offset;
}

__attribute__((noinline)) Utf8Step walkInRest(const std::uint8_t* bytes, std::size_t size, std::size_t from,
                                              std::size_t units, Mask returnBefore) {
  const Rest rest(bytes + from, size - from);
  Starts starts = startsOf(Bytes64(rest.bytes), returnBefore);
  starts.starts &= rest.inside;
  if (units >= starts.count()) return {size, 0};
  const Utf8Step at = starts.unit(units);
  return {from + at.offset, at.left};
}

Utf8Step walk(const std::uint8_t* bytes, std::size_t size, std::size_t from, std::size_t units) {
  Mask returnBefore = 0;
  for (; from + kBlock <= size; from += kBlock) {
    const Starts starts = startsOf(Bytes64(bytes + from), returnBefore);
    const std::size_t count = starts.count();
    if (units < count) {
      const Utf8Step at = starts.unit(units);
      return {from + at.offset, at.left};
    }
    units -= count;
  }
  return walkInRest(bytes, size, from, units, returnBefore);
}

Utf8Step walkBack(const std::uint8_t* bytes, std::size_t size, std::size_t from, std::size_t units) {
  while (from >= kBlock) {
    from -= kBlock;
    Mask returnBefore = from > 0 && bytes[from - 1] == '\r' ? 1 : 0;
    const Starts starts = startsOf(Bytes64(bytes + from), returnBefore);
    const std::size_t count = starts.count();
    if (units <= count) {
      const Utf8Step at = starts.unit(count - units);
      return {from + at.offset, at.left};
    }
    units -= count;
  }
  Mask returnBefore = 0;
  const Rest rest(bytes, from);
  Starts starts = startsOf(Bytes64(rest.bytes), returnBefore);
  starts.starts &= rest.inside;
  const std::size_t count = starts.count();
  return walk(bytes, size, 0, count < units ? 0 : count - units);
}

__attribute__((noinline)) std::size_t countInRest(const std::uint8_t* bytes, std::size_t from, std::size_t to,
                                                  Mask returnBefore) {
  const Rest rest(bytes + from, to - from);
  Starts starts = startsOf(Bytes64(rest.bytes), returnBefore);
  starts.starts &= rest.inside;
  return starts.count();
}

std::size_t count(const std::uint8_t* bytes, std::size_t size, std::size_t from, std::size_t to) {
  Mask returnBefore = 0;
  std::size_t units = 0;
  for (; from + kBlock <= size && from < to; from += kBlock) {
    Starts starts = startsOf(Bytes64(bytes + from), returnBefore);
    if (to - from < kBlock) {
      const Mask wanted = (Mask{1} << (to - from)) - 1;
      starts.starts &= wanted;
      starts.pairs &= wanted;
    }
    units += starts.count();
  }
  return from < to ? units + countInRest(bytes, from, to, returnBefore) : units;
}

}  // namespace
}  // namespace pluvo::text
