#include "base/suggest.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace pluvo::base {
namespace {

constexpr std::size_t kMostSlips = 2;
// Nothing as long as this is a slip of an option's name; keeps the cost of nonsense small.
constexpr std::size_t kLongestWord = 40;

/// Edit distance with swapped neighbours as one edit.
std::size_t slipsBetween(std::string_view a, std::string_view b) {
  std::vector<std::size_t> beforeLast(b.size() + 1);
  std::vector<std::size_t> last(b.size() + 1);
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    beforeLast = std::exchange(last, row);
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t wrong = last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, wrong});
      const bool swapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (swapped) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
    }
  }
  return row[b.size()];
}

}  // namespace

std::vector<std::string_view> suggestionsFor(std::string_view typed,
                                             const std::vector<std::string_view>& candidates) {
  std::vector<std::string_view> begun;
  if (typed.empty() || typed.size() > kLongestWord) return begun;
  for (const std::string_view candidate : candidates) {
    if (candidate.substr(0, typed.size()) == typed) begun.push_back(candidate);
  }
  if (!begun.empty()) return begun;

  // A short word is another word after two slips.
  const std::size_t allowed = typed.size() < 4 ? 1 : kMostSlips;
  std::vector<std::pair<std::size_t, std::string_view>> near;
  for (const std::string_view candidate : candidates) {
    const std::size_t slips = slipsBetween(typed, candidate);
    if (slips <= allowed) near.emplace_back(slips, candidate);
  }
  std::stable_sort(near.begin(), near.end(), [](auto& a, auto& b) { return a.first < b.first; });
  std::vector<std::string_view> words;
  words.reserve(near.size());
  for (const auto& [slips, word] : near) words.push_back(word);
  return words;
}

std::string joinedWithOr(const std::vector<std::string_view>& words) {
  std::string joined;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (i > 0) joined += i + 1 == words.size() ? " or " : ", ";
    joined += words[i];
  }
  return joined;
}

std::string didYouMean(std::string_view typed, const std::vector<std::string_view>& candidates) {
  const auto words = suggestionsFor(typed, candidates);
  return words.empty() ? "" : " Did you mean " + joinedWithOr(words) + "?";
}

}  // namespace pluvo::base
