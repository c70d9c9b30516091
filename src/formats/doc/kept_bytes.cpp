#include "kept_bytes.h"

#include "base/little_endian.h"
#include "data_stretches.h"
#include "used_bytes.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace pluvo::doc {

using base::ByteSpan;
using base::get16;
using base::get32;

namespace {

struct Stretch {
  std::size_t from = 0;
  std::size_t to = 0;
};

/// Stretches in their order, asked for ascending places.
class Stretches {
 public:
  void add(std::size_t from, std::size_t to) { all_.push_back({from, to}); }
  void sort() {
    std::ranges::sort(all_, {}, &Stretch::from);
    std::size_t reached = 0;
    for (Stretch& each : all_) each.to = reached = std::max(reached, each.to);
  }
  bool hold(std::size_t at) {
    while (next_ < all_.size() && all_[next_].from <= at) ++next_;
    return next_ > 0 && at < all_[next_ - 1].to;
  }

 private:
  std::vector<Stretch> all_;
  std::size_t next_ = 0;
};

/// An information block: the numbers that count in it, and where its tables lie.
struct Block {
  static constexpr std::size_t kUsed = 0x40;

  Block(ByteSpan document, std::size_t from) : at(from), used(get32(document, from + kUsed)) {
    std::size_t next = from + 0x20;
    next += 2 + std::size_t{get16(document, next)} * 2;
    next += 2 + std::size_t{get16(document, next)} * 4;
    const std::size_t count = get16(document, next);
    for (std::size_t i = 0; i < count; ++i)
      tables.push_back({get32(document, next + 2 + i * 8), get32(document, next + 6 + i * 8)});
    end = next + 2 + count * 8;
    // One more count, and numbers that later versions of Word have.
    if (end + 2 <= document.size())
      end = std::min(document.size(), end + 2 + get16(document, end) * std::size_t{2});
  }

  struct Table {
    std::uint32_t at = 0;
    std::uint32_t size = 0;
    bool operator==(const Table&) const = default;
  };
  Table table(doc::Table which) const {
    const auto number = static_cast<std::size_t>(which);
    return number < tables.size() ? tables[number] : Table{};
  }

  std::size_t at;
  std::uint32_t used;
  std::vector<Table> tables;
  std::size_t end = 0;
};

/// Where a template's second block lies, the one of its glossary.
std::optional<std::size_t> glossaryOf(const Text& text) {
  if (!text.fib.has(Fib::kTemplate) || text.fib.glossary() == 0) return std::nullopt;
  return text.fib.glossary() * FormattedPages::kPage;
}

void addPieces(const Text& text, Stretches& stretches) {
  for (const Piece& piece : text.pieces.pieces()) stretches.add(piece.offset, piece.end());
}

void addOthers(const Text& text, Stretches& stretches) {
  forEachUsedStretch(text, [&](std::size_t from, std::size_t to) { stretches.add(from, to); });
}

/// The lists' levels follow their table, where no length tells of them.
bool keepsLists(ByteSpan before, const Block& blockBefore, ByteSpan after, const Block& blockAfter) {
  constexpr auto kLists = static_cast<Table>(73);
  const Block::Table lists = blockBefore.table(kLists);
  if (lists.size == 0 || lists.at > before.size()) return true;
  if (blockAfter.table(kLists) != lists) return false;
  std::size_t end = before.size();
  for (const Block::Table& each : blockBefore.tables)
    if (each.size > 0 && each.at > lists.at) end = std::min<std::size_t>(end, each.at);
  return end <= after.size() && std::ranges::equal(before.subspan(lists.at, end - lists.at),
                                                   after.subspan(lists.at, end - lists.at));
}

/// The places in which two streams differ, of which the second is as long or longer: visit(place) until it
/// returns true.
template <class Visit>
void forEachDifference(ByteSpan before, ByteSpan after, Visit visit) {
  constexpr std::size_t kAtOnce = 4096;
  for (std::size_t from = 0; from < before.size(); from += kAtOnce) {
    const std::size_t count = std::min(kAtOnce, before.size() - from);
    const std::uint8_t* const block = before.data() + from;
    if (std::equal(block, block + count, after.data() + from)) continue;
    for (std::size_t at = from; at < from + count; ++at)
      if (before[at] != after[at] && visit(at)) return;
  }
}

}  // namespace

std::string firstMoved(const Text& original, const Text& edited) {
  if (edited.document.size() < original.document.size() || edited.data.size() < original.data.size())
    return "stream Data or WordDocument lost something";
  const Block before(original.document, 0);
  const Block after(edited.document, 0);
  if (!keepsLists(original.tables, before, edited.tables, after)) return "table of lists lost its levels";

  Stretches usedData;
  const bool isDataSame = std::ranges::equal(original.data, edited.data.first(original.data.size()));
  const auto addData = [&](const Text& text) {
    if (isDataSame) return;
    forEachDataStretch(text, [&](const DataStretch& each) { usedData.add(each.from, each.to); });
  };
  addData(edited);
  Stretches used;
  Stretches blocks;
  blocks.add(0, before.end);
  addPieces(edited, used);
  addOthers(edited, used);
  if (const auto glossary = glossaryOf(original)) {
    const Text second(edited.document, edited.tables, edited.data, *glossary);
    addPieces(second, used);
    addOthers(second, used);
    addData(second);
    const Block block(edited.document, *glossary);
    blocks.add(block.at, block.end);
    for (const Table table : {Table::characterPages, Table::paragraphPages})
      if (block.table(table) != after.table(table) || block.used != after.used)
        return "second information block contradicts the first one";
  }
  for (Stretches* each : {&used, &blocks, &usedData}) each->sort();
  std::string moved;
  const auto note = [&](const char* stream, std::size_t at) {
    moved = std::string("stream ") + stream + " changed where it must not (" + std::to_string(at) + ")";
  };
  forEachDifference(original.data, edited.data, [&](std::size_t at) {
    if (edited.data[at] != 0 || usedData.hold(at)) note("Data", at);
    return !moved.empty();
  });
  if (!moved.empty()) return moved;
  forEachDifference(original.document, edited.document, [&](std::size_t at) {
    const bool isBlanked = edited.document[at] == 0 && !used.hold(at);
    if (!isBlanked && !blocks.hold(at)) note("WordDocument", at);
    return !moved.empty();
  });
  return moved;
}

}  // namespace pluvo::doc
