#include "runs/not_reached_json.h"

#include "base/json.h"
#include "elsewhere/words.h"

#include <string_view>

namespace pluvo::runs {
namespace {

/// An object of what is counted, by the names of the kinds.
template <class Kind, class Counts>
std::string countsInJson(std::string_view name, const Counts& counts) {
  std::string members;
  for (std::size_t i = 0; i < counts.size(); ++i) {
    if (counts.at(i) == 0) continue;
    members += (members.empty() ? "" : ",") + base::jsonQuoted(elsewhere::keyOf(static_cast<Kind>(i))) + ":" +
               std::to_string(counts.at(i));
  }
  return members.empty() ? members : ",\"" + std::string(name) + "\":{" + members + "}";
}

std::string countsInJson(const elsewhere::Elsewhere& found) {
  return countsInJson<formats::Story>("elsewhere", found.stories) +
         countsInJson<formats::Unreached>("unreached", found.unreached);
}

}  // namespace

std::string notReachedInJson(const elsewhere::Elsewhere& found) {
  std::string parts;
  for (const auto& [part, why] : found.damaged) {
    parts += (parts.empty() ? "" : ",") + ("{\"part\":" + base::jsonQuoted(part)) +
             ",\"message\":" + base::jsonQuoted(why) + "}";
  }
  return countsInJson(found) + (parts.empty() ? parts : ",\"unreadable\":[" + parts + "]");
}

std::string notLookedIntoInJson(const elsewhere::Elsewhere& found) {
  std::string names;
  for (std::size_t i = 0; i < found.notLookedInto.size(); ++i) {
    if (!found.notLookedInto.at(i)) continue;
    names += (names.empty() ? "" : ",") + base::jsonQuoted(elsewhere::keyOf(static_cast<formats::Opaque>(i)));
  }
  return names.empty() ? names : ",\"notLookedInto\":[" + names + "]";
}

std::string notReachedInJson(const Totals& totals) {
  if (totals.notReached == 0) return {};
  return countsInJson(totals.elsewhere) + ",\"not_reached\":" + std::to_string(totals.notReached);
}

}  // namespace pluvo::runs
