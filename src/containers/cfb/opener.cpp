#include "opener.h"

#include "base/little_endian.h"

#include <algorithm>

namespace pluvo::cfb {

namespace {

using base::get16;
using base::get32;

constexpr unsigned kShiftOfVersion3 = 9;
constexpr unsigned kShiftOfVersion4 = 12;

void appendNumbers(std::vector<std::uint32_t>& numbers, base::ByteSpan bytes) {
  for (std::size_t at = 0; at + 4 <= bytes.size(); at += 4) numbers.push_back(get32(bytes, at));
}

}  // namespace

CompoundFile Opener::open() {
  readHeader();
  readFollowers();
  readDirectory();
  readTree();
  readSmallOnes();
  return std::move(file_);
}

void Opener::readHeader() {
  const base::ByteSpan bytes = file_.bytes_.view;
  if (!isCompoundFile(bytes)) throw damaged("it has no header");
  file_.shift_ = get16(bytes, header::kSectorShift);
  if ((file_.shift_ != kShiftOfVersion3 && file_.shift_ != kShiftOfVersion4) ||
      get16(bytes, header::kSmallShiftAt) != kSmallShift || get32(bytes, header::kSmallBelow) != kSmall)
    throw damaged("its header names sizes that no such file has");
}

base::ByteSpan Opener::sector(std::uint32_t number) const {
  const base::ByteSpan bytes = file_.bytes_.view;
  const std::uint64_t from = (std::uint64_t{number} + 1) << file_.shift_;
  if (number > kLastSector || from >= bytes.size()) return {};
  return bytes.subspan(from, std::min<std::uint64_t>(sectorSize(), bytes.size() - from));
}

/// The table lies in sectors that the header names, and after 109 of them a chain of lists.
void Opener::readFollowers() {
  const base::ByteSpan bytes = file_.bytes_.view;
  const std::uint32_t count = get32(bytes, header::kTables);
  if (count > sectorsFor(bytes.size(), file_.shift_)) throw damaged("its table of sectors is larger than it");
  std::vector<std::uint32_t> tables;
  appendNumbers(tables, bytes.subspan(header::kList, header::kListed * 4));
  std::uint32_t list = get32(bytes, header::kLists);
  while (tables.size() < count) {
    const base::ByteSpan numbers = sector(list);
    if (numbers.size() < sectorSize()) throw damaged("its table of sectors is cut off");
    appendNumbers(tables, numbers.first(sectorSize() - 4));
    list = get32(numbers, sectorSize() - 4);
  }
  tables.resize(count);
  file_.followers_.reserve(std::size_t{count} * (sectorSize() / 4));
  for (const std::uint32_t table : tables) {
    const base::ByteSpan numbers = sector(table);
    if (numbers.empty()) throw damaged("its table of sectors is cut off");
    appendNumbers(file_.followers_, numbers);
    if (numbers.size() < sectorSize()) break;
  }
}

std::vector<std::uint8_t> Opener::chain(std::uint32_t first, const char* what) const {
  const auto runs = follow(file_.followers_, first);
  if (!runs) throw damaged(std::string(what) + " is broken off or runs in circles");
  std::vector<std::uint8_t> all;
  for (const Run& run : *runs) {
    for (std::uint32_t i = 0; i < run.count; ++i) {
      const base::ByteSpan bytes = sector(run.first + i);
      if (bytes.empty()) throw damaged(std::string(what) + " is cut off");
      all.insert(all.end(), bytes.begin(), bytes.end());
    }
  }
  return all;
}

void Opener::readDirectory() {
  file_.directory_ = chain(get32(file_.bytes_.view, header::kDirectory), "its directory");
  file_.directory_.resize(file_.directory_.size() / entry::kSize * entry::kSize);
  if (file_.directory_.empty()) throw damaged("its directory is empty");
}

Entry Opener::entryAt(Id id) const {
  const base::ByteSpan bytes = base::ByteSpan(file_.directory_).subspan(id * entry::kSize, entry::kSize);
  Entry found;
  const std::uint8_t type = bytes[entry::kType];
  if (type == entry::kStream) found.kind = Entry::Kind::stream;
  if (type == entry::kStorage || type == entry::kRootStorage) found.kind = Entry::Kind::storage;
  const std::size_t units = std::max<std::size_t>(get16(bytes, entry::kNameSize) / 2, 1) - 1;
  for (std::size_t i = 0; i < std::min(units, entry::kLongestName); ++i)
    found.name.push_back(static_cast<char16_t>(get16(bytes, i * 2)));
  found.first = get32(bytes, entry::kStart);
  // The upper half of a size is no more than what lay there in version 3.
  found.size = file_.shift_ == kShiftOfVersion3 ? get32(bytes, entry::kStreamSize)
                                                : base::get64(bytes, entry::kStreamSize);
  return found;
}

/// Entries that lie in one storage are a binary tree, whose root the storage names.
void Opener::readTree() {
  const std::size_t count = file_.directory_.size() / entry::kSize;
  file_.entries_.resize(count);
  file_.entries_[kRoot] = entryAt(kRoot);
  if (file_.directory_[entry::kType] != entry::kRootStorage) throw damaged("its directory has no root");
  struct Link {
    std::uint32_t id;
    Id storage;
  };
  const auto linkAt = [&](Id id, std::size_t at) { return get32(file_.directory_, id * entry::kSize + at); };
  std::vector<Link> links = {{linkAt(kRoot, entry::kChild), kRoot}};
  while (!links.empty()) {
    const Link link = links.back();
    links.pop_back();
    if (link.id == kFree) continue;
    if (link.id >= count || link.id == kRoot || file_.entries_[link.id].kind != Entry::Kind::unused)
      throw damaged("its directory contradicts itself");
    Entry& found = file_.entries_[link.id] = entryAt(link.id);
    found.storage = link.storage;
    if (found.kind == Entry::Kind::unused) throw damaged("its directory names an entry that is not in use");
    links.push_back({linkAt(link.id, entry::kLeft), link.storage});
    links.push_back({linkAt(link.id, entry::kRight), link.storage});
    if (found.kind == Entry::Kind::storage) links.push_back({linkAt(link.id, entry::kChild), link.id});
  }
}

/// A gap here is noticed when a small stream is read.
void Opener::readSmallOnes() {
  const base::ByteSpan bytes = file_.bytes_.view;
  const Entry& root = file_.entries_[kRoot];
  if (get32(bytes, header::kSmallTables) == 0 || root.size == 0) return;
  try {
    appendNumbers(file_.smallOnes_, chain(get32(bytes, header::kSmallTable), "its table of small streams"));
    file_.small_ = base::Bytes::of(chain(root.first, "the sectors of its small streams"));
  } catch (const errors::DocumentError&) {
    file_.smallOnes_.clear();
  }
}

}  // namespace pluvo::cfb
