#include "selection.h"

#include "base/ascii.h"
#include "numbers.h"
#include "usage_error.h"

#include <charconv>
#include <ctime>
#include <utility>

namespace pluvo::cli {
namespace {

constexpr int kMostLevels = 32000;

/// The items between commas, without blanks around them.
std::vector<std::string> divided(std::string_view list, const std::string& option) {
  constexpr std::string_view kBlanks = " \t";
  std::vector<std::string> parts;
  std::size_t from = 0;
  while (from <= list.size()) {
    const std::size_t comma = std::min(list.find(',', from), list.size());
    const std::size_t begin = std::min(list.find_first_not_of(kBlanks, from), comma);
    if (begin == comma)
      throw UsageError(list.find_first_not_of(kBlanks) == std::string_view::npos
                           ? option + " is empty; leave it out, or say which."
                           : option + " has nothing between two commas.");
    parts.emplace_back(list.substr(begin, list.find_last_not_of(kBlanks, comma - 1) + 1 - begin));
    from = comma + 1;
  }
  return parts;
}

void refuseType(const std::string& typed) {
  throw UsageError("--types takes endings of names such as docx, or * for every kind that is known, not '" +
                   typed + "'; for other patterns there is --mask.");
}

std::vector<std::string> typesFrom(std::string_view list) {
  std::vector<std::string> types;
  for (const std::string& typed : divided(list, "--types")) {
    if (typed == "*" || typed == "*.*") {
      const std::vector<std::string> every = runs::everyType();
      types.insert(types.end(), every.begin(), every.end());
      continue;
    }
    const std::size_t front = typed.starts_with("*.") ? 2 : typed.starts_with('.') ? 1 : 0;
    const std::string type = base::asciiLower(typed.substr(front));
    if (type.find_first_of("*?/.") != std::string::npos) refuseType(typed);
    types.push_back(type);
  }
  return types;
}

std::vector<runs::PathMask> masksFrom(const std::optional<std::string>& list, const std::string& option) {
  std::vector<runs::PathMask> masks;
  if (!list) return masks;
  try {
    for (const std::string& mask : divided(*list, option)) masks.emplace_back(mask);
  } catch (const runs::MaskError& refused) {
    throw UsageError(option + ": " + refused.what());
  }
  return masks;
}

/// "90m", "12h", "7d" ago.
std::optional<std::int64_t> agoFrom(const std::string& typed) {
  std::int64_t count = 0;
  const char* const last = typed.data() + typed.size();
  const auto [stopped, error] = std::from_chars(typed.data(), last, count);
  if (error != std::errc{} || stopped + 1 != last || count < 0 || count > 1'000'000) return std::nullopt;
  const std::int64_t seconds = *stopped == 'm' ? 60 : *stopped == 'h' ? 3600 : *stopped == 'd' ? 86400 : 0;
  if (seconds == 0) return std::nullopt;
  return std::time(nullptr) - count * seconds;
}

/// "2026-11-30", "2026-11-30T14:30", "2026-11-30 14:30:05": local time.
std::optional<std::int64_t> timeFrom(const std::string& typed) {
  for (const char* const form :
       {"%Y-%m-%d", "%Y-%m-%dT%H:%M", "%Y-%m-%d %H:%M", "%Y-%m-%dT%H:%M:%S", "%Y-%m-%d %H:%M:%S"}) {
    std::tm parts = {};
    const char* const end = strptime(typed.c_str(), form, &parts);
    if (end == nullptr || *end != 0) continue;
    parts.tm_isdst = -1;
    const std::tm asked = parts;
    const std::time_t time = std::mktime(&parts);
    // The 31st of November is no day, whatever mktime makes of it.
    if (time != -1 && parts.tm_mday == asked.tm_mday && parts.tm_mon == asked.tm_mon) return time;
  }
  return std::nullopt;
}

std::int64_t newerThanFrom(const std::string& typed) {
  if (const auto time = agoFrom(typed)) return *time;
  if (const auto time = timeFrom(typed)) return *time;
  throw UsageError(
      "--newer-than is a day as 2026-11-30, with a time as 2026-11-30T14:30, or an age as 90m, " +
      std::string("12h or 7d, not '") + typed + "'.");
}

void refuseWithoutFolders(const TypedOptions& typed) {
  const auto refuse = [](const std::optional<std::string>& option, const char* name) {
    if (option) throw UsageError(std::string(name) + " is about files found in folders; add --recursive.");
  };
  if (typed.follow) throw UsageError("--follow is about links found in folders; add --recursive.");
  refuse(typed.levels, "--levels");
  refuse(typed.types, "--types");
  refuse(typed.mask, "--mask");
  refuse(typed.exclude, "--exclude");
}

}  // namespace

runs::Selection selectionFrom(const TypedOptions& typed, std::vector<std::string> paths) {
  runs::Selection selection;
  selection.paths = std::move(paths);
  if (typed.filesFrom) selection.listed.emplace();
  selection.recursive = typed.recursive;
  selection.follow = typed.follow;
  if (!typed.recursive) refuseWithoutFolders(typed);
  if (typed.null && !typed.filesFrom)
    throw UsageError("--null tells how names end in --files-from; add that.");
  if (typed.levels)
    selection.levels = static_cast<std::int16_t>(numberFrom(*typed.levels, "--levels", 0, kMostLevels));
  if (typed.types) selection.types = typesFrom(*typed.types);
  selection.masks = masksFrom(typed.mask, "--mask");
  selection.excluded = masksFrom(typed.exclude, "--exclude");
  if (typed.newerThan) selection.newerThan = newerThanFrom(*typed.newerThan);
  if (selection.paths.empty() && !typed.filesFrom) {
    throw UsageError("Name the documents to work on, after the options.");
  }
  return selection;
}

}  // namespace pluvo::cli
