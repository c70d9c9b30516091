#pragma once

#include "text/utf8_decoding.h"

#include <cstddef>
#include <cstdint>

namespace pluvo::text {

inline constexpr std::size_t kNoteInterval = 1024;

/// How many rows of kNoteInterval bytes, each with a note, so many bytes have; the last may be empty.
constexpr std::size_t utf8Rows(std::size_t bytes) { return bytes / kNoteInterval + 1; }

/// The results of one look over bytes that may be UTF-8, or over some rows of them: notes and units are
/// counted from the first row then.
struct Utf8Scan {
  std::size_t firstRow = 0;
  std::size_t endRow = 0;
  /// How many units begin in front of every kNoteInterval-th byte, from the first on; see Utf8Text. Made
  /// only where not each unit is a byte.
  std::uint32_t* notes = nullptr;
  bool plain = true;  ///< each unit is a byte
  std::uint64_t units = 0;
  std::uint64_t lineFeeds = 0;        ///< in all
  std::uint64_t carriageReturns = 0;  ///< in all
  std::uint64_t pairs = 0;            ///< of the two
  bool ascii = true;
  bool zeros = false;
};

/// A walk over units: where it arrived, and how many units were left to go there. One is left where that is
/// the second half of the character that lies there.
struct Utf8Step {
  std::size_t offset = 0;
  std::size_t left = 0;
};

// Everywhere, size is that of all bytes; none after them is read.

/// Looks over the rows of a scan. False where they hold bytes that are no UTF-8. Below 2^31 bytes.
bool surveyUtf8(const std::uint8_t* bytes, std::size_t size, Utf8Scan& scan);
/// Walks over so many of the units that begin at from or after it. At the end of the bytes it stops.
Utf8Step walkUtf8(const std::uint8_t* bytes, std::size_t size, std::size_t from, std::size_t units);
/// Walks back over so many units, of which there are at least one and at the most those in front.
Utf8Step walkBackUtf8(const std::uint8_t* bytes, std::size_t size, std::size_t from, std::size_t units);
/// How many units begin in [from, to).
std::size_t countUtf8(const std::uint8_t* bytes, std::size_t size, std::size_t from, std::size_t to);

/// The same, for every processor and for those with AVX2; the ones above and cleanUtf8 choose.
bool surveyUtf8Anywhere(const std::uint8_t* bytes, std::size_t size, Utf8Scan& scan);
Utf8Step walkUtf8Anywhere(const std::uint8_t* bytes, std::size_t size, std::size_t from, std::size_t units);
Utf8Step walkBackUtf8Anywhere(const std::uint8_t* bytes, std::size_t size, std::size_t from,
                              std::size_t units);
std::size_t countUtf8Anywhere(const std::uint8_t* bytes, std::size_t size, std::size_t from, std::size_t to);
std::size_t cleanUtf8Anywhere(const std::uint8_t* bytes, std::size_t size);
bool surveyUtf8Avx2(const std::uint8_t* bytes, std::size_t size, Utf8Scan& scan);
Utf8Step walkUtf8Avx2(const std::uint8_t* bytes, std::size_t size, std::size_t from, std::size_t units);
Utf8Step walkBackUtf8Avx2(const std::uint8_t* bytes, std::size_t size, std::size_t from, std::size_t units);
std::size_t countUtf8Avx2(const std::uint8_t* bytes, std::size_t size, std::size_t from, std::size_t to);
std::size_t cleanUtf8Avx2(const std::uint8_t* bytes, std::size_t size);

/// decodeUtf8 for every processor, for those with AVX2, and those with hasAvx512Compress().
Utf8Decoded decodeUtf8Anywhere(const std::uint8_t* bytes, std::size_t size, char16_t* units,
                               std::size_t room);
Utf8Decoded decodeUtf8Avx2(const std::uint8_t* bytes, std::size_t size, char16_t* units, std::size_t room);
Utf8Decoded decodeUtf8Avx512(const std::uint8_t* bytes, std::size_t size, char16_t* units, std::size_t room);

}  // namespace pluvo::text
