#pragma once

// The looks over bytes of other encodings than UTF-8 for one set of vector instructions; see vectors.h.

#include "block_bits.h"
#include "coded_block.h"
#include "coded_scan.h"

namespace pluvo::text {
namespace {

using Kind = ByteCoding::Kind;

constexpr Mask kEven = ~Mask{0} / 3;

template <Kind kKind>
constexpr bool kIsWide = kKind == Kind::littleUnits || kKind == Kind::bigUnits;

/// What the bytes in front of a block leave open.
struct Open {
  Mask second = 0;    ///< 1 where the first byte is the second of two
  Mask returned = 0;  ///< 1 where a line feed at its beginning belongs to a carriage return
};

/// Where in a block units begin, and what else there is to tell.
struct Look {
  Mask begins = 0, feeds = 0, returns = 0, joined = 0;
  Mask leads = 0, seconds = 0;
};

/// A lead takes the next byte with it, whatever that is: of leads in a row every second one is none. Their
/// ends are found by an addition, which carries to there.
Mask secondsAfter(Mask leads, Mask& open) {
  if ((leads | open) == 0) return 0;
  leads &= ~open;
  const Mask after = leads << 1 | open;
  const Mask oddRows = leads & ~kEven & ~after;
  Mask ends = 0;
  open = __builtin_add_overflow(oddRows, leads, &ends) ? 1 : 0;
  return (kEven ^ ends << 1) & after;
}

template <Kind kKind>
inline __attribute__((always_inline)) Look look(const Block& block, const CodingTables& tables, Open& open) {
  Look look;
  look.returns = block.equalTo('\r');
  look.feeds = block.equalTo('\n');
  constexpr bool kWide = kIsWide<kKind>;
  if constexpr (kWide) {
    const Mask zeros = block.equalTo(0);
    const bool little = kKind == Kind::littleUnits;
    look.returns = kEven & (little ? look.returns & zeros >> 1 : zeros & look.returns >> 1);
    look.feeds = kEven & (little ? look.feeds & zeros >> 1 : zeros & look.feeds >> 1);
  }
  if constexpr (kKind == Kind::pairs) {
    look.leads = block.which(tables, kLead);
    look.seconds = secondsAfter(look.leads, open.second);
    look.leads &= ~look.seconds;
    look.returns &= ~look.seconds;
    look.feeds &= ~look.seconds;
  }
  look.joined = look.feeds & (look.returns << (kWide ? 2 : 1) | open.returned);
  open.returned = look.returns >> (kWide ? 62 : 63);
  look.begins = (kWide ? kEven : ~Mask{0}) & ~(look.joined | look.seconds);
  return look;
}

/// Whether a byte that stands for nothing, or a lead that makes no unit with the byte after it, is among the
/// bytes, in front of which another one lies. The last byte of a block is judged with the one after that, or
/// in the next block.
inline __attribute__((always_inline)) bool isPairWrong(const Block& block, const std::uint8_t* bytes,
                                                       const CodingTables& tables, const Look& found,
                                                       Mask inside) {
  const auto isAnyWrong = [&](Mask firsts, const std::uint8_t* at) {
    for (; firsts != 0; firsts &= firsts - 1) {
      const std::uint8_t* const first = at + __builtin_ctzll(firsts);
      if (!tables.isPair[std::size_t{256} * first[0] + first[1]]) return true;
    }
    return false;
  };
  return (found.seconds != 0 && isAnyWrong(block.doubtful(bytes, tables, found.seconds), bytes - 1)) ||
         isAnyWrong(block.which(tables, kUnclear) & ~found.seconds & inside, bytes);
}

/// 1 where a line feed at an offset belongs to the carriage return before it.
template <Kind kKind>
Mask isReturnBefore(const std::uint8_t* bytes, std::size_t offset) {
  if constexpr (kKind == Kind::bytes || kKind == Kind::pairs)
    return offset >= 1 && bytes[offset - 1] == '\r' ? 1 : 0;
  const bool little = kKind == Kind::littleUnits;
  return offset >= 2 && bytes[offset - (little ? 2 : 1)] == '\r' && bytes[offset - (little ? 1 : 2)] == 0 ? 1
                                                                                                          : 0;
}

/// Whether the byte at an offset is the second of two. Of leads in a row, in front of which a unit ends,
/// every second one is.
bool isSecond(const std::uint8_t* bytes, const CodingTables& tables, std::size_t offset) {
  std::size_t leads = 0;
  while (leads < offset && (tables.facts[bytes[offset - 1 - leads]] & kLead) != 0) ++leads;
  return leads % 2 == 1;
}

/// A copy of a block, or of its beginning, with the byte in front of it and the one behind.
struct Apart {
  std::uint8_t bytes[1 + kBlock + 1] = {};

  Apart(std::uint8_t before, const std::uint8_t* from, std::size_t count) {
    bytes[0] = before;
    for (std::size_t i = 0; i < count; ++i) bytes[1 + i] = from[i];
  }
  const std::uint8_t* block() const { return bytes + 1; }
};

/// Looks over one block after the other.
template <Kind kKind>
class Surveyor {
 public:
  Surveyor(const CodingTables& tables, Open open) : tables_(tables), open_(open) {}

  /// False where bytes stand for nothing. Inside are the bytes that are there. A lead must not be last.
  inline __attribute__((always_inline)) bool take(const std::uint8_t* bytes, Mask inside, Mask last) {
    const Block block(bytes, tables_);
    const Look found = look<kKind>(block, tables_, open_);
    units_ += ones(found.begins & inside);
    lineFeeds_ += ones(found.feeds);
    carriageReturns_ += ones(found.returns);
    pairs_ += ones(found.joined);
    if constexpr (kIsWide<kKind>) return true;
    if (last == 0)
      for (const Vector vector : block.vectors) least_ = smaller(least_, vector);
    else
      zeros_ = (block.equalTo(0) & inside) != 0;
    if constexpr (kKind == Kind::pairs)
      return (found.leads & last) == 0 && !isPairWrong(block, bytes, tables_, found, inside);
    if (!tables_.anyNothing || (block.which(tables_, kNothing) & inside) == 0) return true;
    unassigned_ = true;
    return tables_.readsUnassigned;
  }
  std::uint32_t note() const {
    return static_cast<std::uint32_t>(units_) | (open_.second != 0 ? kSecondByte : 0);
  }
  bool isInPair() const { return open_.second != 0; }
  void tell(CodedScan& scan) const {
    scan.units = units_;
    scan.lineFeeds = lineFeeds_;
    scan.carriageReturns = carriageReturns_;
    scan.pairs = pairs_;
    scan.unassigned = unassigned_;
    scan.zeros = zeros_ || bits(equal(least_, 0)) != 0;
  }

 private:
  const CodingTables& tables_;
  Open open_;
  std::uint64_t units_ = 0, lineFeeds_ = 0, carriageReturns_ = 0, pairs_ = 0;
  Vector least_ = fill(std::uint8_t{0xFF});
  bool zeros_ = false, unassigned_ = false;
};

template <Kind kKind>
bool survey(const std::uint8_t* bytes, std::size_t size, const CodingTables& tables, CodedScan& scan) {
  std::size_t offset = scan.firstRow * kCodedInterval;
  const bool isLast = scan.endRow > size / kCodedInterval || scan.endRow * kCodedInterval == size;
  const std::size_t end = isLast ? size : scan.endRow * kCodedInterval;
  Surveyor<kKind> surveyor(tables,
                           {kKind == Kind::pairs && isSecond(bytes, tables, offset) ? Mask{1} : Mask{0},
                            isReturnBefore<kKind>(bytes, offset)});
  scan.notes[scan.firstRow] = 0;
  const Apart front(0, bytes, offset > 0 ? 0 : size <= kBlock ? size : kBlock + 1);
  bool valid = true;
  for (; valid && offset < end; offset += kBlock) {
    if (offset % kCodedInterval == 0) scan.notes[offset / kCodedInterval] = surveyor.note();
    if (size - offset < kBlock) break;
    valid = surveyor.take(offset == 0 ? front.block() : bytes + offset, ~Mask{0}, 0);
  }
  if (valid && isLast && offset < size) {
    const std::size_t left = size - offset;
    const Apart rest(offset == 0 ? 0 : bytes[offset - 1], bytes + offset, left);
    valid = surveyor.take(rest.block(), (Mask{1} << left) - 1, Mask{1} << (left - 1));
  } else if (isLast) {
    valid = valid && !surveyor.isInPair();
  }
  surveyor.tell(scan);
  return valid;
}

template <Kind kKind>
CodedStep walk(const std::uint8_t* bytes, std::size_t size, const CodingTables& tables, std::size_t from,
               bool fromIsSecond, std::size_t units) {
  Open open{fromIsSecond ? Mask{1} : Mask{0}, isReturnBefore<kKind>(bytes, from)};
  for (; from + kBlock <= size; from += kBlock) {
    const Mask begins = look<kKind>(Block(bytes + from, tables), tables, open).begins;
    const std::size_t count = ones(begins);
    if (units < count) return {from + placeOfBit(begins, units), 0};
    units -= count;
  }
  const Rest rest(bytes + from, size - from);
  const Mask begins = look<kKind>(Block(rest.bytes, tables), tables, open).begins & rest.inside;
  const std::size_t count = ones(begins);
  if (units < count) return {from + placeOfBit(begins, units), 0};
  return {size, units - count};
}

template <Kind kKind>
CodedCount count(const std::uint8_t* bytes, std::size_t size, const CodingTables& tables, std::size_t from,
                 bool fromIsSecond, std::size_t to) {
  Open open{fromIsSecond ? Mask{1} : Mask{0}, isReturnBefore<kKind>(bytes, from)};
  std::size_t units = 0;
  for (;; from += kBlock) {
    Mask begins = 0;
    if (from + kBlock <= size) {
      begins = look<kKind>(Block(bytes + from, tables), tables, open).begins;
    } else {
      const Rest rest(bytes + from, size - from);
      begins = look<kKind>(Block(rest.bytes, tables), tables, open).begins;
    }
    if (to - from < kBlock) {
      units += ones(begins & ((Mask{1} << (to - from)) - 1));
      return {units, (begins >> (to - from) & 1) != 0};
    }
    units += ones(begins);
  }
}

/// Calls work with the kind as a constant.
template <class Work>
auto withKind(const CodingTables& tables, Work work) {
  switch (tables.kind) {
    case Kind::pairs:
      return work.template operator()<Kind::pairs>();
    case Kind::littleUnits:
      return work.template operator()<Kind::littleUnits>();
    case Kind::bigUnits:
      return work.template operator()<Kind::bigUnits>();
    case Kind::bytes:
      break;
  }
  return work.template operator()<Kind::bytes>();
}

constexpr CodedLooks kLooks = {
    [](const std::uint8_t* bytes, std::size_t size, const CodingTables& tables, CodedScan& scan) {
      return withKind(tables, [&]<Kind kKind>() { return survey<kKind>(bytes, size, tables, scan); });
    },
    [](const std::uint8_t* bytes, std::size_t size, const CodingTables& tables, std::size_t from,
       bool fromIsSecond, std::size_t units) {
      return withKind(
          tables, [&]<Kind kKind>() { return walk<kKind>(bytes, size, tables, from, fromIsSecond, units); });
    },
    [](const std::uint8_t* bytes, std::size_t size, const CodingTables& tables, std::size_t from,
       bool fromIsSecond, std::size_t to) {
      return withKind(
          tables, [&]<Kind kKind>() { return count<kKind>(bytes, size, tables, from, fromIsSecond, to); });
    }};

}  // namespace
}  // namespace pluvo::text
