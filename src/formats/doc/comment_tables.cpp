#include "comment_tables.h"

#include "new_properties.h"
#include "plc.h"
#include "plc_writer.h"
#include "string_tables.h"

#include <algorithm>
#include <optional>
#include <set>
#include <string>

namespace pluvo::doc {

namespace {

constexpr std::size_t kReplies = 112, kNames = 37, kBegins = 42, kEnds = 43;
constexpr std::size_t kCommentElement = 30, kTag = 26;

/// A comment names the one it replies to by the number of comments between.
void removeReplies(const std::vector<bool>& gone, NewTables& tables) {
  constexpr std::size_t kSize = 18, kDepth = 6, kParent = 10;
  const base::ByteSpan old = tables.now(kReplies);
  if (old.size() != gone.size() * kSize) return;
  std::vector<std::int32_t> place(gone.size());
  std::int32_t count = 0;
  for (std::size_t i = 0; i < gone.size(); ++i) place[i] = gone[i] ? count : count++;
  std::string kept;
  for (std::size_t i = 0; i < gone.size(); ++i) {
    if (gone[i]) continue;
    std::vector<std::uint8_t> reply(old.begin() + static_cast<std::ptrdiff_t>(i * kSize),
                                    old.begin() + static_cast<std::ptrdiff_t>((i + 1) * kSize));
    const std::span<std::uint8_t> bytes(reply);
    const auto offset = static_cast<std::int32_t>(base::get32(bytes, kParent));
    const std::int64_t parent = static_cast<std::int64_t>(i) + offset;
    const bool hasParent = offset != 0 && parent >= 0 && parent < static_cast<std::int64_t>(gone.size());
    if (hasParent && !gone[static_cast<std::size_t>(parent)]) {
      base::put(bytes, kParent, place[static_cast<std::size_t>(parent)] - place[i]);
    } else if (hasParent) {
      base::put(bytes, kDepth, std::uint32_t{0});
      base::put(bytes, kParent, std::uint32_t{0});
    }
    kept.append(reply.begin(), reply.end());
  }
  tables.replace(kReplies, kept);
}

/// The bookmarks of comments have no names but tags, by which comments refer to them.
void removeBookmarks(const std::set<std::uint32_t>& tags, NewTables& tables) {
  constexpr std::size_t kHead = 6, kName = 12, kTagInName = 4;
  const base::ByteSpan names = tables.now(kNames);
  const Plc begins(tables.now(kBegins), 4);
  const Plc ends(tables.now(kEnds), 0);
  const bool fits = names.size() == kHead + begins.count() * kName && ends.count() == begins.count() &&
                    names.size() > kHead && base::get16(names, 4) == kName - 2;
  if (!fits) return;
  std::vector<bool> endGoes(ends.count());
  std::vector<bool> goes(begins.count());
  for (std::size_t i = 0; i < begins.count(); ++i) {
    goes[i] = tags.contains(base::get32(names, kHead + i * kName + kTagInName));
    const std::size_t end = base::get16(begins.element(i), 0);
    if (end >= endGoes.size()) return;
    if (goes[i]) endGoes[end] = true;
  }
  PlcWriter keptBegins;
  PlcWriter keptEnds;
  std::string keptNames;
  for (std::size_t i = 0; i < begins.count(); ++i) {
    if (!endGoes[i]) keptEnds.add(ends.place(i), {});
    if (goes[i]) continue;
    std::string element = stringOf(begins.element(i));
    const std::size_t end = base::get16(begins.element(i), 0);
    const auto removed =
        std::count(endGoes.begin(), endGoes.begin() + static_cast<std::ptrdiff_t>(end), true);
    const std::size_t moved = end - static_cast<std::size_t>(removed);
    element[0] = static_cast<char>(moved & 0xFFU);
    element[1] = static_cast<char>(moved >> 8U);
    keptBegins.add(begins.place(i), bytesOf(element));
    keptNames += stringOf(names.subspan(kHead + i * kName, kName));
  }
  const std::size_t count = keptBegins.count();
  const std::string head = stringOf(names.first(2)) + static_cast<char>(count & 0xFFU) +
                           static_cast<char>(count >> 8U) + stringOf(names.subspan(4, 2));
  tables.replace(kBegins, keptBegins.bytes(begins.place(begins.count())));
  tables.replace(kEnds, keptEnds.bytes(ends.place(ends.count())));
  tables.replace(kNames, count > 0 ? head + keptNames : "");
}

}  // namespace

void removeComments(const std::vector<bool>& gone, NewTables& tables) {
  if (std::ranges::find(gone, true) == gone.end()) return;
  const Plc marks(tables.old(Table::commentReferences), kCommentElement);
  std::set<std::uint32_t> tags;
  for (std::size_t i = 0; i < gone.size() && i < marks.count(); ++i)
    if (gone[i]) tags.insert(base::get32(marks.element(i), kTag));
  removeReplies(gone, tables);
  removeBookmarks(tags, tables);
}

}  // namespace pluvo::doc
