#include "zip/rewrite.h"

#include "damage.h"
#include "end_record.h"
#include "extra.h"
#include "fields.h"
#include "packer.h"

#include <algorithm>
#include <cassert>
#include <string>

namespace pluvo::zip {

namespace {

constexpr std::uint16_t kZip64Version = 45;
constexpr std::uint16_t kZip64Extra = 1;
constexpr std::uint64_t kCopied = std::uint64_t{4} << 20U;

/// A member's place and sizes, for the new archive's directory.
struct Place {
  std::uint64_t header = 0;
  std::uint64_t packedSize = 0;
  std::uint64_t size = 0;
  std::uint32_t crc = 0;
  const Change* change = nullptr;
};

/// Writes an archive front to back: members, directory, end.
class Rewriter {
 public:
  Rewriter(const Archive& archive, base::Output& out, int level)
      : archive_(archive),
        bytes_(archive.bytes()),
        out_(out),
        level_(level),
        places_(archive.members().size()) {}

  void write(std::span<const std::uint32_t> order, std::span<const Change> changes) {
    for (const Change& change : changes) {
      const Member* member = archive_.find(change.name);
      assert(member != nullptr);
      Place& place = places_[indexOf(*member)];
      assert(place.change == nullptr);
      place.change = &change;
    }
    writeMembers(order);
    writeDirectory();
  }

 private:
  std::size_t indexOf(const Member& member) const {
    return static_cast<std::size_t>(&member - archive_.members().data());
  }

  void put(base::ByteSpan bytes) {
    if (bytes.empty()) return;
    out_.write(bytes);
    written_ += bytes.size();
  }

  /// Copies from the old archive in small steps, to keep memory small.
  void copy(std::uint64_t from, std::uint64_t to) {
    while (from < to) {
      const std::uint64_t size = std::min(to - from, kCopied);
      put(bytes_.subspan(from, size));
      archive_.release();
      from += size;
    }
  }

  /// Unchanged neighbours go out as one.
  void writeMembers(std::span<const std::uint32_t> order) {
    std::uint64_t copyFrom = 0;
    for (const std::uint32_t index : order) {
      const Member& member = archive_.members()[index];
      Place& place = places_[index];
      if (place.change == nullptr) {
        place.header = written_ + (member.header - copyFrom);
        place.packedSize = member.packedSize;
        place.size = member.size;
        place.crc = member.crc;
        continue;
      }
      copy(copyFrom, member.header);
      copyFrom = member.next;
      place.header = written_;
      if (!place.change->remove) writeChanged(member, place);
    }
    const std::uint64_t end = order.empty() ? 0 : archive_.members()[order.back()].next;
    copy(copyFrom, end);
  }

  void writeChanged(const Member& member, Place& place) {
    const Packed packed = pack(place.change->pieces, member.method, level_);
    if (packed.size >= kElsewhere32 || packed.packedSize >= kElsewhere32) {
      throw errors::DocumentError(
          errors::Problem::tooLarge,
          "The document's part " + shown(member.name) + " would grow beyond 4 GiB; divide the document.");
    }
    place.packedSize = packed.packedSize;
    place.size = packed.size;
    place.crc = packed.crc;
    put(localHeader(member, place));
    for (const base::ByteSpan piece : packed.bytes) put(piece);
  }

  static std::uint16_t flagsOfChanged(std::uint16_t flags) {
    return static_cast<std::uint16_t>(flags & ~(kDescriptorFlag | kLevelFlags));
  }

  Record localHeader(const Member& member, const Place& place) const {
    const base::ByteSpan old = bytes_.subspan(member.header, member.data - member.header);
    const std::size_t nameLength = get16(old, local::kNameLength);
    const Record extra = withoutZip64(old.subspan(kLocalHeaderSize + nameLength));
    Record header(old.first(kLocalHeaderSize + nameLength));
    header.set(local::kFlags, flagsOfChanged(get16(old, local::kFlags)));
    header.set(local::kCrc, place.crc);
    header.set(local::kPackedSize, static_cast<std::uint32_t>(place.packedSize));
    header.set(local::kSize, static_cast<std::uint32_t>(place.size));
    header.set(local::kExtraLength, static_cast<std::uint16_t>(extra.size()));
    header.add(extra);
    return header;
  }

  void writeDirectory() {
    const EndRecord end = findEndRecord(bytes_);
    const std::uint64_t directory = written_;
    std::uint64_t entries = 0;
    for (const Member& member : archive_.members()) {
      const Place& place = places_[indexOf(member)];
      if (place.change != nullptr && place.change->remove) continue;
      ++entries;
      if (place.change == nullptr && place.header == member.header) {
        put(member.entry);
      } else {
        put(entry(member, place));
      }
    }
    writeEnd(end, entries, directory, written_ - directory);
  }

  /// The 64-bit values stand in the extra field where they stood there already or have to.
  static Record entry(const Member& member, const Place& place) {
    const bool changed = place.change != nullptr;
    const std::size_t nameLength = get16(member.entry, central::kNameLength);
    const std::size_t extraLength = get16(member.entry, central::kExtraLength);
    const std::size_t extraAt = kCentralEntrySize + nameLength;

    Record made(member.entry.first(extraAt));
    Record values;
    const auto setSize = [&](std::size_t field, std::uint64_t value, bool mayStay) {
      const bool stays = mayStay && get32(member.entry, field) == kElsewhere32;
      const bool elsewhere = stays || value >= kElsewhere32;
      made.set(field, elsewhere ? kElsewhere32 : static_cast<std::uint32_t>(value));
      if (elsewhere) values.addNumber(value);
    };
    setSize(central::kSize, place.size, !changed);
    setSize(central::kPackedSize, place.packedSize, !changed);
    setSize(central::kHeader, place.header, true);
    made.set(central::kDisk, std::uint16_t{0});
    made.set(central::kCrc, place.crc);
    if (changed) made.set(central::kFlags, flagsOfChanged(member.flags));

    Record extra;
    if (!values.empty()) {
      made.set(central::kVersion, std::max(get16(member.entry, central::kVersion), kZip64Version));
      extra.addNumber(kZip64Extra);
      extra.addNumber(static_cast<std::uint16_t>(values.size()));
      extra.add(values);
    }
    extra.add(withoutZip64(member.entry.subspan(extraAt, extraLength)));
    if (extra.size() > kElsewhere16) {
      throw errors::DocumentError(
          errors::Problem::tooLarge,
          "The document's ZIP archive has no room for its own directory; divide the document.");
    }
    made.set(central::kExtraLength, static_cast<std::uint16_t>(extra.size()));
    made.add(extra);
    made.add(member.entry.subspan(extraAt + extraLength));
    return made;
  }

  void writeEnd(const EndRecord& end, std::uint64_t entries, std::uint64_t directory, std::uint64_t size) {
    const bool zip64 = end.zip64 || directory >= kElsewhere32 || size >= kElsewhere32;
    if (zip64) writeEnd64(end, entries, directory, size);
    Record record(bytes_.subspan(end.record));
    const auto set16 = [&](std::size_t field, std::uint64_t value) {
      const bool elsewhere = zip64 && get16(record, field) == kElsewhere16;
      record.set(field, elsewhere ? kElsewhere16 : static_cast<std::uint16_t>(value));
    };
    const auto set32 = [&](std::size_t field, std::uint64_t value) {
      const bool elsewhere = zip64 && (get32(record, field) == kElsewhere32 || value >= kElsewhere32);
      record.set(field, elsewhere ? kElsewhere32 : static_cast<std::uint32_t>(value));
    };
    set16(end::kEntriesHere, entries);
    set16(end::kEntries, entries);
    set32(end::kDirectorySize, size);
    set32(end::kDirectory, directory);
    put(record);
  }

  void writeEnd64(const EndRecord& end, std::uint64_t entries, std::uint64_t directory, std::uint64_t size) {
    const std::uint64_t at = written_;
    Record record;
    Record locator;
    if (end.zip64) {
      record.add(bytes_.subspan(end.begin, end.record - kEndLocator64Size - end.begin));
      locator.add(bytes_.subspan(end.record - kEndLocator64Size, kEndLocator64Size));
    } else {
      record.resize(kEndRecord64Size);
      record.set(0, kEndRecord64);
      record.set(end64::kRecordSize, std::uint64_t{kEndRecord64Size - 12});
      record.set(end64::kMadeBy, kZip64Version);
      record.set(end64::kVersion, kZip64Version);
      locator.resize(kEndLocator64Size);
      locator.set(0, kEndLocator64);
      locator.set(locator64::kDisks, std::uint32_t{1});
    }
    record.set(end64::kEntriesHere, entries);
    record.set(end64::kEntries, entries);
    record.set(end64::kDirectorySize, size);
    record.set(end64::kDirectory, directory);
    locator.set(locator64::kRecord, at);
    put(record);
    put(locator);
  }

  const Archive& archive_;
  base::ByteSpan bytes_;
  base::Output& out_;
  int level_;
  std::vector<Place> places_;
  std::uint64_t written_ = 0;
};

}  // namespace

void rewrite(const Archive& archive, std::span<const Change> changes, base::Output& out, int level) {
  Rewriter(archive, out, level).write(archive.membersByPlace(), changes);
}

}  // namespace pluvo::zip
