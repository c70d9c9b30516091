#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace pluvo::base {

/// The candidates that a mistyped word may stand for, nearest first. Those that it begins, else those at most
/// two slips away: a letter too many, too few, wrong, or swapped with its neighbour.
std::vector<std::string_view> suggestionsFor(std::string_view typed,
                                             const std::vector<std::string_view>& candidates);

/// " Did you mean a, b or c?", or nothing.
std::string didYouMean(std::string_view typed, const std::vector<std::string_view>& candidates);

/// "a", "a or b", "a, b or c".
std::string joinedWithOr(const std::vector<std::string_view>& words);

}  // namespace pluvo::base
