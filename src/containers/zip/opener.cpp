#include "opener.h"

#include "damage.h"
#include "end_record.h"
#include "extra.h"
#include "fields.h"
#include "zip/looks_like.h"

#include <algorithm>
#include <numeric>
#include <string>

namespace pluvo::zip {

namespace {

/// No deflated byte stands for more than this many.
constexpr std::uint64_t kLargestRatio = 1032;

errors::DocumentError tooLarge(const std::string& what) {
  return {errors::Problem::tooLarge,
          "The document's ZIP archive " + what + ", more than any sound document; if it is one, divide it."};
}

errors::DocumentError encrypted() {
  return {errors::Problem::password,
          "The document's ZIP archive is encrypted; save it without a password in the program that made it."};
}

}  // namespace

class Opener {
 public:
  Opener(base::Bytes bytes, const Limits& limits) : limits_(limits) {
    archive_.bytes_ = std::move(bytes);
    archive_.memberSize_ = limits.memberSize;
  }

  Archive open() {
    if (view().size() < 4 || get32(view(), 0) != kLocalHeader) throw notAnArchive(view());
    const EndRecord end = findEndRecord(view());
    directory_ = end.directory;
    readDirectory(end);
    orderByPlace();
    for (Member& member : archive_.members_) checkLocalHeader(member);
    orderByName();
    checkSizes();
    return std::move(archive_);
  }

 private:
  base::ByteSpan view() const { return archive_.bytes_.view; }

  void readDirectory(const EndRecord& end) {
    if (end.entries > limits_.members) throw tooLarge("has " + std::to_string(end.entries) + " members");
    base::ByteSpan left = view().subspan(end.directory, end.directorySize);
    archive_.members_.reserve(end.entries);
    for (std::uint64_t i = 0; i < end.entries; ++i) {
      archive_.members_.push_back(readEntry(left));
      left = left.subspan(archive_.members_.back().entry.size());
    }
    if (!left.empty()) throw damaged("its directory holds more than it says");
  }

  static Member readEntry(base::ByteSpan left) {
    if (left.size() < kCentralEntrySize || get32(left, 0) != kCentralEntry) {
      throw damaged("its directory cannot be read");
    }
    const std::size_t nameLength = get16(left, central::kNameLength);
    const std::size_t extraLength = get16(left, central::kExtraLength);
    const std::size_t size =
        kCentralEntrySize + nameLength + extraLength + get16(left, central::kCommentLength);
    if (nameLength == 0 || size > left.size()) throw damaged("its directory cannot be read");

    Member member;
    member.entry = left.first(size);
    member.name = {reinterpret_cast<const char*>(left.data()) + kCentralEntrySize, nameLength};
    member.flags = get16(left, central::kFlags);
    member.method = static_cast<Method>(get16(left, central::kMethod));
    member.crc = get32(left, central::kCrc);
    Zip64Values values(zip64Block(left.subspan(kCentralEntrySize + nameLength, extraLength)));
    const auto unpacked = values.size(get32(left, central::kSize));
    const auto packed = values.size(get32(left, central::kPackedSize));
    const auto header = values.size(get32(left, central::kHeader));
    const auto disk = values.disk(get16(left, central::kDisk));
    if (!unpacked || !packed || !header || disk != 0U) {
      throw damaged("the directory's entry " + shown(member.name) + " is incomplete");
    }
    member.size = *unpacked;
    member.packedSize = *packed;
    member.header = *header;
    if (member.encrypted()) throw encrypted();
    return member;
  }

  /// Orders the members as they lie, and gives each the room up to the next one.
  void orderByPlace() {
    auto& order = archive_.byPlace_;
    auto& members = archive_.members_;
    order.resize(members.size());
    std::iota(order.begin(), order.end(), 0U);
    std::sort(order.begin(), order.end(),
              [&](std::uint32_t a, std::uint32_t b) { return members[a].header < members[b].header; });
    std::uint64_t next = directory_;
    for (std::size_t i = order.size(); i-- > 0;) {
      Member& member = members[order[i]];
      if (member.header >= next) throw damaged("its member " + shown(member.name) + " lies over another one");
      member.next = next;
      next = member.header;
    }
    if (next != 0) throw damaged("bytes that belong to no member stand before its first one");
  }

  void checkLocalHeader(Member& member) const {
    const base::ByteSpan room = view().subspan(member.header, member.next - member.header);
    if (room.size() < kLocalHeaderSize || get32(room, 0) != kLocalHeader) {
      throw damaged("its member " + shown(member.name) + " is not where its directory says");
    }
    const std::size_t nameLength = get16(room, local::kNameLength);
    const std::size_t extraLength = get16(room, local::kExtraLength);
    const std::size_t dataAt = kLocalHeaderSize + nameLength + extraLength;
    if (dataAt > room.size() || member.packedSize > room.size() - dataAt) {
      throw damaged("its member " + shown(member.name) + " reaches into another one");
    }
    member.data = member.header + dataAt;
    if ((get16(room, local::kFlags) & kEncryptedFlags) != 0) throw encrypted();
    const std::string_view name(reinterpret_cast<const char*>(room.data()) + kLocalHeaderSize, nameLength);
    if (name != member.name || get16(room, local::kMethod) != static_cast<std::uint16_t>(member.method) ||
        !sizesAgree(member, room, room.subspan(kLocalHeaderSize + nameLength, extraLength))) {
      throw damaged("its directory and its member " + shown(member.name) + " contradict each other");
    }
  }

  static bool sizesAgree(const Member& member, base::ByteSpan header, base::ByteSpan extra) {
    if ((get16(header, local::kFlags) & kDescriptorFlag) != 0) return true;
    Zip64Values values(zip64Block(extra));
    const auto unpacked = values.size(get32(header, local::kSize));
    const auto packed = values.size(get32(header, local::kPackedSize));
    return unpacked == member.size && packed == member.packedSize && get32(header, local::kCrc) == member.crc;
  }

  void orderByName() {
    auto& order = archive_.byName_;
    const auto& members = archive_.members_;
    order = archive_.byPlace_;
    std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
      return compareNames(members[a].name, members[b].name) < 0;
    });
    const auto twice = std::adjacent_find(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
      return compareNames(members[a].name, members[b].name) == 0;
    });
    if (twice != order.end()) throw damaged("it has two members " + shown(members[*twice].name));
  }

  void checkSizes() const {
    std::uint64_t total = 0;
    for (const Member& member : archive_.members_) {
      if (member.method != Method::deflated) continue;
      if (member.size / kLargestRatio > member.packedSize) {
        throw damaged("its member " + shown(member.name) + " cannot be as large as it says");
      }
      if (member.size > limits_.freeSize && member.size / limits_.ratio > member.packedSize) {
        throw tooLarge("grows " +
                       std::to_string(member.size / std::max<std::uint64_t>(member.packedSize, 1)) +
                       "-fold when unpacked");
      }
      total += member.size;  // cannot overflow: at most 1,032 times the bytes there are
    }
    if (total > limits_.totalSize) throw tooLarge("unpacks to " + std::to_string(total >> 20U) + " MiB");
  }

  const Limits& limits_;
  Archive archive_;
  std::uint64_t directory_ = 0;
};

Archive openArchive(base::Bytes bytes, const Limits& limits) {
  return Opener(std::move(bytes), limits).open();
}

}  // namespace pluvo::zip
