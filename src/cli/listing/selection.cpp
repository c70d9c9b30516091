#include "listing/selection.h"

#include "errors/text.h"
#include "numbers.h"
#include "usage_error.h"

#include <cctype>
#include <charconv>
#include <ctime>
#include <utility>

namespace pluvo::cli {
namespace {

constexpr std::string_view kDefaultTypes = "doc,docx,dot,dotx,docm,txt,rtf,htm,html";
constexpr int kMostLevels = 32000;

std::vector<std::string> divided(std::string_view list, std::string_view option) {
  std::vector<std::string> parts;
  std::size_t from = 0;
  while (from <= list.size()) {
    const std::size_t comma = std::min(list.find(',', from), list.size());
    if (comma == from) throw UsageError(std::string(option) + " has nothing between two commas.");
    parts.emplace_back(list.substr(from, comma - from));
    from = comma + 1;
  }
  return parts;
}

std::vector<std::string> typesFrom(std::string_view list) {
  std::vector<std::string> types = divided(list, "--types");
  for (std::string& type : types) {
    if (type.rfind("*.", 0) == 0) type.erase(0, 2);
    if (type.rfind('.', 0) == 0) type.erase(0, 1);
    for (char& c : type) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  return types;
}

std::vector<std::u16string> masksFrom(const std::optional<std::string>& list, std::string_view option) {
  std::vector<std::u16string> masks;
  if (!list) return masks;
  for (const std::string& mask : divided(*list, option)) masks.push_back(errors::nameText(mask));
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

Selection selectionFrom(const TypedOptions& typed, std::vector<std::string> paths) {
  Selection selection;
  selection.paths = std::move(paths);
  selection.filesFrom = typed.filesFrom;
  selection.nullEnded = typed.null;
  selection.recursive = typed.recursive;
  selection.follow = typed.follow;
  if (!typed.recursive) refuseWithoutFolders(typed);
  if (typed.null && !typed.filesFrom)
    throw UsageError("--null tells how names end in --files-from; add that.");
  if (typed.levels)
    selection.levels = static_cast<std::int16_t>(numberFrom(*typed.levels, "--levels", 0, kMostLevels));
  selection.types = typesFrom(typed.types ? *typed.types : kDefaultTypes);
  selection.masks = masksFrom(typed.mask, "--mask");
  selection.excluded = masksFrom(typed.exclude, "--exclude");
  if (typed.newerThan) selection.newerThan = newerThanFrom(*typed.newerThan);
  if (selection.paths.empty() && !selection.filesFrom) {
    throw UsageError("Name the documents to work on, behind the options.");
  }
  return selection;
}

}  // namespace pluvo::cli
