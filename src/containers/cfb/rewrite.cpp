#include "base/little_endian.h"
#include "cfb/compound_file.h"
#include "layout.h"

#include <algorithm>
#include <array>
#include <deque>
#include <numeric>
#include <utility>

namespace pluvo::cfb {

namespace {

using base::put;

constexpr std::uint64_t kMostBytes = std::uint64_t{1} << 31U;

std::uint64_t sizeOf(std::span<const base::ByteSpan> pieces) {
  return std::accumulate(pieces.begin(), pieces.end(), std::uint64_t{0},
                         [](std::uint64_t sum, base::ByteSpan piece) { return sum + piece.size(); });
}

/// A table of followers in the making: chains without gaps, one after the other.
class Followers {
 public:
  std::uint32_t next() const { return static_cast<std::uint32_t>(numbers_.size()); }
  /// Returns where the chain begins.
  std::uint32_t addChain(std::uint64_t sectors) {
    if (sectors == 0) return kEndOfChain;
    const std::uint32_t first = next();
    for (std::uint64_t i = 1; i < sectors; ++i) numbers_.push_back(next() + 1);
    numbers_.push_back(kEndOfChain);
    return first;
  }
  void add(std::uint64_t sectors, std::uint32_t what) { numbers_.insert(numbers_.end(), sectors, what); }
  const std::vector<std::uint32_t>& numbers() const { return numbers_; }

 private:
  std::vector<std::uint32_t> numbers_;
};

/// So many sectors of table and lists hold themselves and so many others.
struct TableSize {
  std::uint64_t tables = 0;
  std::uint64_t lists = 0;
};
TableSize tableFor(std::uint64_t sectors, unsigned shift) {
  const std::uint64_t perSector = std::uint64_t{1} << (shift - 2);
  TableSize size;
  while (true) {
    TableSize next;
    next.tables = (sectors + size.tables + size.lists + perSector - 1) / perSector;
    const std::uint64_t beyond = std::max<std::uint64_t>(next.tables, header::kListed) - header::kListed;
    next.lists = (beyond + perSector - 2) / (perSector - 1);
    if (next.tables == size.tables && next.lists == size.lists) return size;
    size = next;
  }
}

}  // namespace

/// Lays all sectors out, then writes them: streams, small streams and their table, the directory, the lists
/// and the table of sectors.
class Rewriter {
 public:
  Rewriter(const CompoundFile& file, std::span<const Change> changes, base::Output& out)
      : file_(file), changes_(changes), out_(out), directory_(file.directory_) {}

  void write() {
    layOut();
    writeHeader();
    for (const Id id : large_) writeStream(id);
    if (!small_.empty()) {
      for (const Id id : small_) writeStream(id);
      fill(smallFollowers_.numbers().size() << kSmallShift);
      writeNumbers(smallFollowers_.numbers());
    }
    writePadded(directory_);
    writeLists();
    writeNumbers(followers_.numbers());
  }

 private:
  std::uint64_t sectorSize() const { return std::uint64_t{1} << file_.shift_; }
  std::uint64_t sectorsOf(std::uint64_t bytes) const { return sectorsFor(bytes, file_.shift_); }

  const Change* changeOf(Id id) const {
    const auto found = std::ranges::find(changes_, id, &Change::stream);
    return found == changes_.end() ? nullptr : &*found;
  }
  std::uint64_t sizeOfStream(Id id) const {
    const Change* const change = changeOf(id);
    return change != nullptr ? sizeOf(change->pieces) : file_.entries_[id].size;
  }

  void layOut() {
    std::uint64_t bytes = 0;
    for (Id id = 0; id < file_.entries_.size(); ++id) {
      const Entry& entry = file_.entries_[id];
      if (entry.kind != Entry::Kind::stream) continue;
      // No sector belongs to two streams, so together they are no larger than the file.
      if (changeOf(id) == nullptr) bytes += entry.size;
      if (entry.size > file_.bytes_.view.size() || bytes > file_.bytes_.view.size())
        throw damaged("its streams are larger than it");
      (sizeOfStream(id) < kSmall ? small_ : large_).push_back(id);
    }
    for (const Id id : large_) place(id, followers_.addChain(sectorsOf(sizeOfStream(id))));
    for (const Id id : small_) place(id, smallFollowers_.addChain(sectorsFor(sizeOfStream(id), kSmallShift)));
    const std::uint64_t small = std::uint64_t{smallFollowers_.next()} << kSmallShift;
    place(kRoot, small, followers_.addChain(sectorsOf(small)));
    smallTable_ = followers_.addChain(sectorsOf(smallFollowers_.numbers().size() * 4));
    directoryAt_ = followers_.addChain(sectorsOf(directory_.size()));
    size_ = tableFor(followers_.next(), file_.shift_);
    listsAt_ = followers_.next();
    followers_.add(size_.lists, kListSector);
    tablesAt_ = followers_.next();
    followers_.add(size_.tables, kTableSector);
    if ((std::uint64_t{followers_.next()} + 1) << file_.shift_ >= kMostBytes)
      throw errors::DocumentError(errors::Problem::tooLarge,
                                  "The document would be larger than 2 GiB, which its format cannot hold; "
                                  "divide it, or save it in another format.");
    tidyDirectory();
  }

  void place(Id id, std::uint32_t first) { place(id, sizeOfStream(id), first); }
  void place(Id id, std::uint64_t size, std::uint32_t first) {
    put(entryOf(id), entry::kStart, first);
    put(entryOf(id), entry::kStreamSize, size);
  }
  std::span<std::uint8_t> entryOf(Id id) {
    return std::span(directory_).subspan(id * entry::kSize, entry::kSize);
  }

  /// Clears unused entries and the rest of names: they may still hold deleted text.
  void tidyDirectory() {
    directory_.resize(sectorsOf(directory_.size()) << file_.shift_);
    for (Id id = 0; id < directory_.size() / entry::kSize; ++id) {
      const auto bytes = entryOf(id);
      if (id < file_.entries_.size() && file_.entries_[id].kind != Entry::Kind::unused) {
        std::ranges::fill(bytes.subspan(file_.entries_[id].name.size() * 2,
                                        entry::kNameSize - file_.entries_[id].name.size() * 2),
                          0);
        continue;
      }
      std::ranges::fill(bytes, 0);
      for (const std::size_t link : {entry::kLeft, entry::kRight, entry::kChild}) put(bytes, link, kFree);
    }
  }

  void writeHeader() {
    std::vector<std::uint8_t> bytes(sectorSize());
    std::ranges::copy(file_.bytes_.view.first(header::kSize), bytes.begin());
    const auto number = [&](std::size_t at, std::uint64_t value) {
      put(std::span(bytes), at, static_cast<std::uint32_t>(value));
    };
    const bool isVersion3 = sectorSize() == header::kSize;
    number(header::kDirectorySectors, isVersion3 ? 0 : sectorsOf(directory_.size()));
    number(header::kTables, size_.tables);
    number(header::kDirectory, directoryAt_);
    number(header::kSmallTable, smallTable_);
    number(header::kSmallTables, sectorsOf(smallFollowers_.numbers().size() * 4));
    number(header::kLists, size_.lists == 0 ? kEndOfChain : listsAt_);
    number(header::kListCount, size_.lists);
    for (std::uint32_t i = 0; i < header::kListed; ++i)
      number(header::kList + i * std::size_t{4}, i < size_.tables ? tablesAt_ + i : kFree);
    out_.write(bytes);
  }

  void writeStream(Id id) {
    const std::uint64_t size = sizeOfStream(id);
    if (const Change* const change = changeOf(id)) {
      for (const base::ByteSpan piece : change->pieces) out_.write(piece);
    } else {
      out_.write(file_.read(id).view);
    }
    fill(size, size < kSmall ? kSmallShift : file_.shift_);
  }

  /// Zeros up to the end of the sector in which so many bytes end.
  void fill(std::uint64_t bytes) { fill(bytes, file_.shift_); }
  void fill(std::uint64_t bytes, unsigned shift) {
    static constexpr std::array<std::uint8_t, 4096> kZeros = {};
    out_.write(base::ByteSpan(kZeros).first((sectorsFor(bytes, shift) << shift) - bytes));
  }
  void writePadded(base::ByteSpan bytes) {
    out_.write(bytes);
    fill(bytes.size());
  }

  /// Numbers that a table has no use for say that their sectors are free.
  void writeNumbers(std::span<const std::uint32_t> numbers) {
    const std::uint64_t all = sectorsOf(numbers.size() * 4) << (file_.shift_ - 2);
    std::vector<std::uint8_t> bytes(all * 4);
    for (std::uint64_t i = 0; i < all; ++i)
      put(std::span(bytes), i * 4, i < numbers.size() ? numbers[i] : kFree);
    out_.write(bytes);
  }

  void writeLists() {
    const std::uint64_t perList = sectorSize() / 4 - 1;
    for (std::uint64_t list = 0, done = header::kListed; list < size_.lists; ++list) {
      std::vector<std::uint32_t> numbers;
      for (std::uint64_t i = 0; i < perList; ++i, ++done)
        numbers.push_back(done < size_.tables ? tablesAt_ + static_cast<std::uint32_t>(done) : kFree);
      numbers.push_back(list + 1 < size_.lists ? listsAt_ + static_cast<std::uint32_t>(list) + 1
                                               : kEndOfChain);
      writeNumbers(numbers);
    }
  }

  const CompoundFile& file_;
  std::span<const Change> changes_;
  base::Output& out_;
  std::vector<std::uint8_t> directory_;
  std::vector<Id> large_;
  std::vector<Id> small_;
  Followers followers_;
  Followers smallFollowers_;
  TableSize size_;
  std::uint32_t smallTable_ = kEndOfChain;
  std::uint32_t directoryAt_ = kEndOfChain;
  std::uint32_t listsAt_ = kEndOfChain;
  std::uint32_t tablesAt_ = kEndOfChain;
};

void rewrite(const CompoundFile& file, std::span<const Change> changes, base::Output& out) {
  Rewriter(file, changes, out).write();
}

}  // namespace pluvo::cfb
