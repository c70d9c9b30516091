#include "new_pages.h"

#include "base/little_endian.h"
#include "new_properties.h"

#include <algorithm>

namespace pluvo::doc {

using Entry = FormattedPages::Entry;

namespace {

std::string tableOf(const std::vector<Entry>& entries, std::uint32_t end) {
  std::vector<std::uint8_t> bytes(entries.size() * 8 + 4);
  const std::span<std::uint8_t> all(bytes);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    base::put(all, i * 4, entries[i].from);
    base::put(all, (entries.size() + 1) * 4 + i * 4, entries[i].page);
  }
  base::put(all, entries.size() * 4, end);
  return stringOf(bytes);
}

}  // namespace

std::string NewPages::write(std::vector<std::uint8_t>& stream) const {
  PageWriter writer(old_.of(), stream);
  std::vector<Entry> entries = old_.entries();
  std::uint32_t end = newText_.from();
  if (!entries.empty()) {
    end = entries.back().from;
    entries.pop_back();
  }
  std::vector<bool> replaced(entries.size());
  recolour(writer, replaced);
  if (!newText_.empty()) {
    newText_.writePages(old_.of(), std::min(end, newText_.from()), writer);
    end = newText_.end();
  }
  std::vector<Entry> all = writer.entries();
  for (std::size_t i = 0; i < entries.size(); ++i)
    if (!replaced[i]) all.push_back(entries[i]);
  std::ranges::stable_sort(all, {}, &Entry::from);
  return tableOf(all, end);
}

/// Writes the pages anew on which text gets another highlight.
void NewPages::recolour(PageWriter& writer, std::vector<bool>& replaced) const {
  FormattedPages::Place place;
  auto next = recoloured_.begin();
  const auto skipTo = [&](std::uint32_t at) {
    while (next != recoloured_.end() && next->to <= at) ++next;
  };
  for (std::size_t entry = 0; entry < replaced.size() && next != recoloured_.end(); ++entry) {
    const std::uint32_t end = old_.entries()[entry + 1].from;
    if (next->from >= end) {
      writer.endPage();
      continue;
    }
    replaced[entry] = true;
    for (std::uint32_t at = old_.entries()[entry].from; at < end;) {
      skipTo(at);
      FormattedPages::Run run = old_.at(at, place);
      run.from = at;
      run.to = std::min(run.to, end);
      const bool isWithin = next != recoloured_.end() && next->from <= at;
      if (next != recoloured_.end()) run.to = std::min(run.to, isWithin ? next->to : next->from);
      std::string properties;
      if (isWithin) {
        properties = withoutHighlight(run.properties);
        if (next->colour != 0 || styles_.haveHighlight()) properties += highlightProperty(next->colour);
        run.properties = bytesOf(properties);
      }
      writer.add(run);
      at = run.to;
    }
    skipTo(end);
  }
  writer.endPage();
}

}  // namespace pluvo::doc
