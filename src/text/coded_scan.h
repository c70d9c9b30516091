#pragma once

#include "text/byte_coding.h"

#include <cstddef>
#include <cstdint>

namespace pluvo::text {

/// A set of bytes as vectors look one up: by the low half of a byte the high halves that are in it, a bit
/// each, those below 8 and those from 8 on. Each table twice.
struct ByteSet {
  std::uint8_t lower[32] = {};
  std::uint8_t upper[32] = {};

  void add(std::uint8_t byte);
};

/// What may be true of a byte, which is from 80 on then.
enum Fact : std::uint8_t {
  kLead = 1,
  kUnclear = 2,  ///< as a first it may not make a unit; the table of pairs is to be asked
  kNothing = 4,  ///< it stands for nothing by itself and is no lead
};

/// What looks over bytes go by.
struct CodingTables {
  ByteCoding::Kind kind = ByteCoding::Kind::bytes;
  bool anyNothing = false;
  bool readsUnassigned = false;  ///< such bytes are read as they are
  ByteSet leads;
  ByteSet unclear;
  ByteSet nothing;
  /// Bytes that may make no unit as seconds after any lead, or after one of some. The table of pairs is to be
  /// asked for these, too. A lead of 0 is none.
  ByteSet doubtful;
  struct Row {
    std::uint8_t lead = 0;
    ByteSet doubtful;
  };
  Row rows[4];
  /// The same by bytes: facts, the higher bits of which tell for what rows they are doubtful as seconds, and
  /// for bytes from 80 on those of the bits that matter after them.
  std::uint8_t facts[256] = {};
  std::uint8_t doubts[128] = {};
  static constexpr unsigned kDoubtful =
      8;                         ///< after any lead, and twice that after the lead of the first row
  const bool* isPair = nullptr;  ///< whether two bytes make a unit, by the first times 256 plus the second

  void add(Fact fact, std::uint8_t byte);
  /// After any lead.
  void addDoubtful(std::uint8_t second);
  void addDoubtful(std::size_t row, std::uint8_t second);
};

/// The results of one look over bytes, or over some rows of them: notes and units are counted from the first
/// row then. A row is kCodedInterval bytes and has a note; no bytes have a note, too.
struct CodedScan {
  std::uint32_t* notes = nullptr;  ///< see kSecondByte
  std::size_t firstRow = 0;
  std::size_t endRow = static_cast<std::size_t>(-1);
  std::uint64_t units = 0;
  std::uint64_t lineFeeds = 0;        ///< in all
  std::uint64_t carriageReturns = 0;  ///< in all
  std::uint64_t pairs = 0;            ///< of the two
  bool unassigned = false;            ///< a byte stands for nothing; not told of pairs
  bool zeros = false;                 ///< a byte is zero; told of all but UTF-16
};

/// For every so many bytes a note: how many units begin in front of the byte, and by this bit whether it is
/// the second of two.
inline constexpr std::size_t kCodedInterval = 1024;
inline constexpr std::uint32_t kSecondByte = 0x80000000;

struct CodedStep {
  std::size_t offset = 0;
  std::size_t left = 0;  ///< so many units were beyond the end
};
struct CodedCount {
  std::size_t units = 0;
  bool begins = false;  ///< whether a unit begins where the counting ended
};

/// The looks for one set of vector instructions. Size is that of all bytes; none after them is read, but for
/// one in the survey.
struct CodedLooks {
  /// False where bytes stand for nothing.
  bool (*survey)(const std::uint8_t* bytes, std::size_t size, const CodingTables& tables, CodedScan& scan);
  /// Walks over so many of the units that begin at from or after it.
  CodedStep (*walk)(const std::uint8_t* bytes, std::size_t size, const CodingTables& tables, std::size_t from,
                    bool fromIsSecond, std::size_t units);
  /// How many units begin in [from, to).
  CodedCount (*count)(const std::uint8_t* bytes, std::size_t size, const CodingTables& tables,
                      std::size_t from, bool fromIsSecond, std::size_t to);
};
extern const CodedLooks kCodedAnywhere;
extern const CodedLooks kCodedAvx2;
/// For processors with hasAvx512Tables().
extern const CodedLooks kCodedAvx512;
/// Those that suit the processor.
const CodedLooks& codedLooks();

}  // namespace pluvo::text
