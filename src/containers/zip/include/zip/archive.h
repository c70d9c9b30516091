#pragma once

#include "base/bytes.h"
#include "errors/document_error.h"

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace pluvo::zip {

/// Bounds on an archive. Beyond any of these it is refused as too large.
struct Limits {
  std::size_t members = 4096;
  /// One member, inflated.
  std::uint64_t memberSize = std::uint64_t{512} << 20U;
  /// All deflated members together, inflated. Stored members need no memory and do not count.
  std::uint64_t totalSize = std::uint64_t{2} << 30U;
  /// Inflated to deflated size, for members that inflate to more than freeSize. Word's own markup reaches
  /// about 100, deflate itself 1,032.
  std::uint64_t ratio = 300;
  std::uint64_t freeSize = std::uint64_t{32} << 20U;
};

enum class Method : std::uint16_t { stored = 0, deflated = 8 };

/// A member, as the central directory describes it. Offsets count bytes of the archive.
struct Member {
  std::string_view name;  ///< as it stands in the archive: "word/document.xml"
  std::uint16_t flags = 0;
  Method method = Method::stored;  ///< may hold another number, which cannot be read but can be copied
  std::uint32_t crc = 0;
  std::uint64_t packedSize = 0;
  std::uint64_t size = 0;

  std::uint64_t header = 0;  ///< the local header
  std::uint64_t data = 0;    ///< the packed bytes, packedSize of them
  std::uint64_t next = 0;    ///< where the next local header or the central directory begins
  base::ByteSpan entry;      ///< the whole entry in the central directory

  bool encrypted() const { return (flags & 0x2041U) != 0; }
};

/// A ZIP archive opened where it lies in memory. Opening reads the central directory and every local header,
/// and requires whatever two readers could understand differently to be plain:
/// - The end record, its comment and the file end together.
/// - The central directory ends where the end record (or its ZIP64 twin) begins. It holds exactly the
///   entries promised.
/// - The first member begins the file.
/// - Each local header agrees with its central entry. No two members overlap.
/// - No two members share a name. As in packages, letter case of ASCII and the kind of slash do not count.
/// - There is one disk.
///
/// Names are only compared, never used as paths. A rewrite keeps the bytes between members.
class Archive {
 public:
  /// Throws errors::DocumentError. damaged: no archive; the message says what the bytes look like.
  /// password: encrypted members, or an encrypted package, which is no ZIP archive. tooLarge.
  static Archive open(base::Bytes bytes, const Limits& limits = {});

  base::ByteSpan bytes() const { return bytes_.view; }
  /// Gives back the memory of a mapped archive until its bytes are next looked at.
  void release() const { bytes_.release(); }
  /// In the order of the central directory.
  std::span<const Member> members() const { return members_; }
  /// Indexes into members(), in the order in which they lie in the file.
  std::span<const std::uint32_t> membersByPlace() const { return byPlace_; }
  /// The member of this name, compared as above; null when there is none. A leading slash does not count.
  const Member* find(std::string_view name) const;
  /// Its contents, checked against size and CRC. A stored member is not copied (and so the byte after
  /// it is the archive's), a deflated one is inflated anew at each call. Throws DocumentError: damaged,
  /// unsupported (a method other than stored and deflated).
  base::Bytes read(const Member& member) const;

 private:
  friend class Opener;

  base::Bytes bytes_;
  std::uint64_t memberSize_ = 0;
  std::vector<Member> members_;
  std::vector<std::uint32_t> byName_;  ///< indexes into members_, sorted
  std::vector<std::uint32_t> byPlace_;
};

}  // namespace pluvo::zip
