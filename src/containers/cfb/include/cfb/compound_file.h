#pragma once

#include "base/bytes.h"
#include "errors/document_error.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::cfb {

/// Whether the bytes begin as a compound file does: an older Office document, or an encrypted one.
bool isCompoundFile(base::ByteSpan bytes);

/// The place of a stream or storage in the directory, which a rewrite keeps.
using Id = std::uint32_t;
inline constexpr Id kRoot = 0;

/// The directory's entry of a stream or storage.
struct Entry {
  enum class Kind : std::uint8_t { unused, storage, stream };
  Kind kind = Kind::unused;
  std::u16string name = {};
  Id storage = kRoot;       ///< in which it lies; the root lies in itself
  std::uint32_t first = 0;  ///< the first sector of a stream
  std::uint64_t size = 0;   ///< of a stream, in bytes
};

/// A compound file opened where it lies in memory: versions 3 and 4. Opening reads the tables of sectors and
/// the directory, whose tree must name each entry once. Streams are followed when they are read.
///
/// An entry that the tree does not reach is unused, whatever it says. The last sector may be cut off after
/// the bytes in use.
class CompoundFile {
 public:
  /// Throws errors::DocumentError: damaged.
  static CompoundFile open(base::Bytes bytes);

  base::ByteSpan bytes() const { return bytes_.view; }
  /// By their ids. The root comes first, as a storage.
  std::span<const Entry> entries() const { return entries_; }

  /// The stream or storage at a path from the root, as "DataSpaces/Version", whatever the capitals of its
  /// ASCII letters.
  std::optional<Id> find(std::string_view path) const { return find(kRoot, path); }
  std::optional<Id> find(Id storage, std::string_view path) const;
  /// The same where it is a stream.
  std::optional<Id> stream(std::string_view path) const;

  /// The contents of a stream: where they lie in the file if they lie there in one piece, else a copy. Throws
  /// errors::DocumentError: damaged.
  base::Bytes read(Id stream) const;

 private:
  friend class Opener;
  friend class Rewriter;

  base::Bytes bytes_;
  unsigned shift_ = 9;                    ///< a sector has 1 << shift_ bytes
  std::vector<std::uint32_t> followers_;  ///< of each sector
  std::vector<std::uint32_t> smallOnes_;  ///< of each sector of the small streams
  base::Bytes small_;                     ///< the contents of the small streams, sector by sector
  std::vector<std::uint8_t> directory_;   ///< its entries as they are
  std::vector<Entry> entries_;
};

/// Whether the bytes are a sound compound file with a stream at this path.
bool hasStream(base::ByteSpan bytes, std::string_view path);

/// New contents for a stream, as pieces that follow one another.
struct Change {
  Id stream = kRoot;
  std::vector<base::ByteSpan> pieces;
};

/// Writes the file anew with these streams changed, front to back. The directory keeps its entries with their
/// ids, names, classes, times and tree; every other stream keeps its contents. Unused bytes are zeros: the
/// rest of sectors, unused entries, deleted streams.
///
/// Needs memory for a stream that lies in several pieces. Each stream may be named once. Throws
/// errors::DocumentError: damaged (a stream that cannot be read), tooLarge (beyond 2 GiB).
void rewrite(const CompoundFile& file, std::span<const Change> changes, base::Output& out);

}  // namespace pluvo::cfb
