#include "new_tables.h"

#include "new_properties.h"

#include <algorithm>

namespace pluvo::doc {

base::ByteSpan NewTables::now(std::size_t number) const {
  const auto changed = changed_.find(number);
  return changed == changed_.end() ? old(number) : bytesOf(changed->second);
}

bool NewTables::overlapsOthers(std::size_t number) const {
  const Fib::Extent& own = fib_.extents()[number];
  const auto endOf = [](const Fib::Extent& extent) { return std::uint64_t{extent.at} + extent.length; };
  const auto overlaps = [&](const Fib::Extent& other) {
    return &other != &own && other.length > 0 && other.at < endOf(own) && own.at < endOf(other);
  };
  return std::ranges::any_of(fib_.extents(), overlaps) ||
         (glossary_ != nullptr && std::ranges::any_of(glossary_->extents(), overlaps));
}

NewTables::Written NewTables::write() const {
  Written written{{tables_.begin(), tables_.end()}, fib_.extents()};
  std::vector<std::uint8_t>& stream = written.stream;
  auto& extents = written.extents;
  std::vector<std::size_t> waiting;
  for (const auto& [number, bytes] : changed_) {
    if (number >= extents.size()) continue;
    Fib::Extent& extent = extents[number];
    if (old(number).empty() && bytes.empty()) continue;
    const bool ownsPlace = extent.length > 0 && !overlapsOthers(number);
    const bool fits = ownsPlace && bytes.size() <= extent.length;
    if (ownsPlace) {
      const auto place = stream.begin() + static_cast<std::ptrdiff_t>(extent.at);
      std::fill_n(place, extent.length, std::uint8_t{0});
      if (fits) std::ranges::copy(bytes, place);
    }
    if (fits) {
      extent.length = static_cast<std::uint32_t>(bytes.size());
    } else if (bytes.empty()) {
      extent.length = 0;
    } else {
      waiting.push_back(number);
    }
  }
  // What lay at the end makes room.
  for (bool shrank = true; shrank;) {
    shrank = false;
    for (const std::size_t number : waiting) {
      const Fib::Extent& extent = extents[number];
      const bool isLast = extent.length > 0 && extent.at + std::size_t{extent.length} == stream.size();
      if (!isLast || overlapsOthers(number)) continue;
      stream.resize(extent.at);
      shrank = true;
    }
  }
  for (const std::size_t number : waiting) {
    const std::string& bytes = changed_.at(number);
    stream.resize(stream.size() + stream.size() % 2);
    extents[number] = {static_cast<std::uint32_t>(stream.size()), static_cast<std::uint32_t>(bytes.size())};
    stream.insert(stream.end(), bytes.begin(), bytes.end());
  }
  return written;
}

}  // namespace pluvo::doc
