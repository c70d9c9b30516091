#include "layout.h"

#include <algorithm>

namespace pluvo::cfb {

namespace {

bool meet(std::vector<Run> runs) {
  std::ranges::sort(runs, {}, &Run::first);
  return std::ranges::adjacent_find(
             runs, [](const Run& a, const Run& b) { return b.first - a.first < a.count; }) != runs.end();
}

}  // namespace

std::optional<std::vector<Run>> follow(std::span<const std::uint32_t> followers, std::uint32_t first,
                                       std::optional<std::uint64_t> count) {
  std::vector<Run> runs;
  std::uint32_t sector = first;
  for (std::uint64_t done = 0; count ? done < *count : sector != kEndOfChain; ++done) {
    if (sector >= followers.size() || done > followers.size()) return std::nullopt;
    if (!runs.empty() && runs.back().first + runs.back().count == sector) {
      ++runs.back().count;
    } else {
      runs.push_back({sector, 1});
    }
    sector = followers[sector];
  }
  if (meet(runs)) return std::nullopt;
  return runs;
}

}  // namespace pluvo::cfb
