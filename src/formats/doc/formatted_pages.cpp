#include "formatted_pages.h"

#include "base/little_endian.h"
#include "damage.h"

#include <algorithm>
#include <limits>

namespace pluvo::doc {

using base::get16;
using base::get32;

namespace {

constexpr std::uint32_t kNumber = 0x3FFFFF;
constexpr std::uint32_t kEnd = std::numeric_limits<std::uint32_t>::max();

/// A place of one byte, and how high the paragraph is.
constexpr std::size_t kParagraphElement = 13;

}  // namespace

FormattedPages::FormattedPages(Of of, base::ByteSpan document, base::ByteSpan table)
    : of_(of), document_(document) {
  if (table.size() < 4) return;
  const std::size_t count = (table.size() - 4) / 8;
  for (std::size_t i = 0; i < count; ++i) {
    const Entry entry = {get32(table, i * 4), get32(table, (count + 1) * 4 + i * 4) & kNumber};
    const bool isInOrder = entries_.empty() || entry.from >= entries_.back().from;
    if (!isInOrder || (std::size_t{entry.page} + 1) * kPage > document.size())
      throw damaged("table of formatting is damaged");
    entries_.push_back(entry);
  }
  const std::uint32_t end = get32(table, count * 4);
  if (!entries_.empty() && end < entries_.back().from) throw damaged("table of formatting is damaged");
  entries_.push_back({end, 0});
  // Some programs write tables with other places than the pages have. A table without any page is damaged.
  std::size_t entry = 0;
  while (entry < count && !isPage(entry)) ++entry;
  if (count > 0 && entry == count) throw damaged("table of formatting is damaged");
}

/// Whether there are runs, front to back.
bool FormattedPages::isPage(std::size_t entry) const {
  const base::ByteSpan page = document_.subspan(std::size_t{entries_[entry].page} * kPage, kPage);
  const std::size_t count = page[kPage - 1];
  const std::size_t element = of_ == Of::characters ? 1 : kParagraphElement;
  if (count == 0 || (count + 1) * 4 + count * element > kPage - 1) return false;
  for (std::size_t i = 0; i < count; ++i)
    if (get32(page, i * 4) >= get32(page, (i + 1) * 4)) return false;
  return true;
}

FormattedPages::Run FormattedPages::at(std::uint32_t byte, Place& last) const {
  const auto holds = [&](std::size_t entry) {
    return entry + 1 < entries_.size() && entries_[entry].from <= byte && byte < entries_[entry + 1].from;
  };
  if (!holds(last.entry)) {
    last.run = 0;
    if (!holds(++last.entry)) {
      const auto after = std::ranges::upper_bound(entries_, byte, {}, &Entry::from);
      if (after == entries_.begin()) return {0, entries_.empty() ? kEnd : after->from, 0, {}};
      last.entry = static_cast<std::size_t>(after - entries_.begin()) - 1;
      if (after == entries_.end()) return {entries_[last.entry].from, kEnd, 0, {}};
    }
  }
  return onPage(byte, last);
}

FormattedPages::Extent FormattedPages::soundPageAt(std::uint32_t byte) const {
  const auto after = std::ranges::upper_bound(entries_, byte, {}, &Entry::from);
  if (after == entries_.begin() || after == entries_.end()) return {};
  const auto entry = static_cast<std::size_t>(after - entries_.begin()) - 1;
  if (!isPage(entry)) return {};
  const base::ByteSpan page = document_.subspan(std::size_t{entries_[entry].page} * kPage, kPage);
  const Extent extent{entries_[entry].from, after->from};
  const std::size_t end = page[kPage - 1] * std::size_t{4};
  return get32(page, 0) == extent.from && get32(page, end) == extent.to ? extent : Extent{};
}

FormattedPages::Run FormattedPages::onPage(std::uint32_t byte, Place& place) const {
  const base::ByteSpan page = document_.subspan(std::size_t{entries_[place.entry].page} * kPage, kPage);
  Run run{entries_[place.entry].from, entries_[place.entry + 1].from, 0, {}};
  const std::size_t count = page[kPage - 1];
  const std::size_t element = of_ == Of::characters ? 1 : kParagraphElement;
  if ((count + 1) * 4 + count * element > kPage - 1) return run;
  const auto isAfter = [&](std::size_t i) { return get32(page, i * 4) > byte; };
  // The first place that is after the byte.
  std::size_t low = 0;
  std::size_t high = count + 1;
  if (place.run < count && !isAfter(place.run)) low = place.run + 1;
  if (low < count && !isAfter(low)) ++low;
  if (low <= count && isAfter(low)) high = low;
  while (low < high) {
    const std::size_t middle = (low + high) / 2;
    if (isAfter(middle)) {
      high = middle;
    } else {
      low = middle + 1;
    }
  }
  if (low > 0) run.from = std::max(run.from, get32(page, (low - 1) * 4));
  if (low <= count) run.to = std::min(run.to, get32(page, low * 4));
  if (low == 0 || low > count) return run;
  place.run = low - 1;
  return withProperties(page, low - 1, run);
}

FormattedPages::Run FormattedPages::withProperties(base::ByteSpan page, std::size_t index, Run run) const {
  const std::size_t places = (std::size_t{page[kPage - 1]} + 1) * 4;
  const std::size_t element = of_ == Of::characters ? 1 : kParagraphElement;
  const std::size_t at = std::size_t{page[places + index * element]} * 2;
  if (at == 0) return run;
  const std::size_t room = kPage - 1;
  if (of_ == Of::characters) {
    const std::size_t size = page[at];
    if (size <= room - at - 1) run.properties = page.subspan(at + 1, size);
    return run;
  }
  // Half of its size stands in a byte; where that is 0, in the next one.
  std::size_t from = at + 1;
  std::size_t size = page[at] * std::size_t{2};
  if (size > 0) {
    --size;
  } else if (from < room) {
    size = page[from++] * std::size_t{2};
  }
  if (size < 2 || from > room || size > room - from) return run;
  run.style = get16(page, from);
  run.properties = page.subspan(from + 2, size - 2);
  return run;
}

}  // namespace pluvo::doc
