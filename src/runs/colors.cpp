#include "runs/colors.h"

#include "base/ascii.h"

#include <algorithm>

namespace pluvo::runs {
namespace {

struct ColorName {
  std::string_view name;
  word::WdColorIndex color;
};

constexpr ColorName kColors[] = {
    {"yellow", word::wdYellow},
    {"pink", word::wdPink},
    {"green", word::wdGreen},
    {"blue", word::wdBlue},
    {"red", word::wdRed},
    {"none", word::wdNoHighlight},
    {"black", word::wdBlack},
    {"turquoise", word::wdTurquoise},
    {"bright-green", word::wdBrightGreen},
    {"white", word::wdWhite},
    {"dark-blue", word::wdDarkBlue},
    {"teal", word::wdTeal},
    {"violet", word::wdViolet},
    {"dark-red", word::wdDarkRed},
    {"dark-yellow", word::wdDarkYellow},
    {"gray-50", word::wdGray50},
    {"gray-25", word::wdGray25},
};

/// Small letters and digits alone, spelled the American way.
std::string plain(std::string_view name) {
  std::string plain;
  for (const char c : base::asciiLower(name)) {
    if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) plain += c;
  }
  if (plain.rfind("grey", 0) == 0) plain[2] = 'a';
  return plain;
}

}  // namespace

std::optional<word::WdColorIndex> colorNamed(std::string_view name) {
  const std::string wanted = plain(name);
  const auto* found = std::find_if(std::begin(kColors), std::end(kColors),
                                   [&](const ColorName& each) { return plain(each.name) == wanted; });
  if (found == std::end(kColors)) return std::nullopt;
  return found->color;
}

std::string nameOf(word::WdColorIndex color) {
  const auto* found = std::find_if(std::begin(kColors), std::end(kColors),
                                   [&](const ColorName& each) { return each.color == color; });
  return found == std::end(kColors) ? "" : std::string(found->name);
}

const std::vector<std::string_view>& colorNames() {
  static const std::vector<std::string_view> names = [] {
    std::vector<std::string_view> all;
    for (const ColorName& each : kColors) all.push_back(each.name);
    return all;
  }();
  return names;
}

}  // namespace pluvo::runs
