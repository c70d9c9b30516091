#include "elsewhere/words.h"

#include "document/place_names.h"

#include <algorithm>
#include <numeric>
#include <string_view>
#include <vector>

namespace pluvo::elsewhere {
namespace {

/// "a", "a and b", "a, b and c"
std::string listed(const std::vector<std::string>& items) {
  std::string list;
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (i > 0) list += i + 1 == items.size() ? " and " : ", ";
    list += items[i];
  }
  return list;
}

template <class Counts>
std::int64_t sumOf(const Counts& counts) {
  return std::accumulate(counts.begin(), counts.end(), std::int64_t{0});
}

}  // namespace

std::int64_t blocksIn(const Elsewhere& found) { return sumOf(found.stories); }

std::int64_t occurrencesIn(const Elsewhere& found) { return sumOf(found.unreached); }

bool needsCare(const Elsewhere& found) { return found.any() || !found.damaged.empty(); }

std::string blocksInWords(const Elsewhere& found) {
  std::vector<std::string> items;
  for (std::size_t i = 0; i < found.stories.size(); ++i) {
    const std::int64_t count = found.stories.at(i);
    if (count == 0) continue;
    const std::string noun = !items.empty() ? "" : count == 1 ? " block" : " blocks";
    items.push_back(std::to_string(count) + noun + " in " +
                    std::string(wordsOf(static_cast<document::Place>(i))));
  }
  return listed(items);
}

std::string occurrencesInWords(const Elsewhere& found) {
  std::vector<std::string> items;
  for (std::size_t i = 0; i < found.unreached.size(); ++i) {
    if (const std::int64_t count = found.unreached.at(i); count > 0)
      items.push_back(std::string(wordsOf(static_cast<formats::Unreached>(i))) + " (" +
                      std::to_string(count) + ")");
  }
  return listed(items);
}

std::string notLookedIntoInWords(const Elsewhere& found) {
  std::vector<std::string> items;
  for (std::size_t i = 0; i < found.notLookedInto.size(); ++i) {
    if (found.notLookedInto.at(i)) items.emplace_back(wordsOf(static_cast<formats::Opaque>(i)));
  }
  return listed(items);
}

std::string damageInWords(const Elsewhere& found) {
  constexpr std::size_t kMostNamed = 10;
  std::string words;
  for (std::size_t i = 0; i < std::min(found.damaged.size(), kMostNamed); ++i) {
    const auto& [part, why] = found.damaged[i];
    if (i > 0) words += ' ';
    if (why.find(part) == std::string::npos) words += part + ": ";
    words += why;
  }
  if (found.damaged.size() > kMostNamed)
    words += " And " + std::to_string(found.damaged.size() - kMostNamed) + " more.";
  return words;
}

std::string inWords(const Elsewhere& found) {
  std::string words = blocksInWords(found);
  const auto add = [&](const std::string& clause) { words += (words.empty() ? "" : "; ") + clause; };
  if (const std::string places = occurrencesInWords(found); !places.empty())
    add((words.empty() ? "the beginning occurs in " : "the beginning also occurs in ") + places);
  if (const std::size_t parts = found.damaged.size(); parts > 0)
    add(std::to_string(parts) + (parts == 1 ? " part" : " parts") + " could not be read");
  return words;
}

}  // namespace pluvo::elsewhere
