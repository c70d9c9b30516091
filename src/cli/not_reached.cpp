#include "not_reached.h"

#include "base/json.h"
#include "elsewhere/words.h"
#include "printer.h"

#include <string_view>

namespace pluvo::cli {
namespace {

std::string whatToDo(const elsewhere::Elsewhere& found) {
  const auto occurs = [&](formats::Unreached kind) {
    return found.unreached.at(static_cast<std::size_t>(kind)) > 0;
  };
  std::string advice = " Requests work in main text alone; see to the rest in a word processor.";
  if (occurs(formats::Unreached::fieldCodes)) advice += " Field codes are reached with --field-codes.";
  if (occurs(formats::Unreached::fieldResults)) advice += " Field results are reached without --field-codes.";
  return advice;
}

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

bool tellsNotReached(const Plan& plan) { return !plan.quiet || plan.json || plan.strict || plan.report; }

void sayNotReached(const Plan& plan, const Totals& totals, const std::string& path) {
  if (totals.notReached == 0 || (!plan.strict && (plan.quiet || plan.json))) return;
  std::string line = elsewhere::inWords(totals.elsewhere) + ".";
  if (plan.selection.several()) {
    line = "Not reached in " + counted(totals.notReached, "document") + ": " + line +
           (plan.report ? " The report says in which." : " To see in which, add --report FILE.");
  } else {
    line = path + ": not reached: " + line;
    if (const std::string damage = damageInWords(totals.elsewhere); !damage.empty()) line += " " + damage;
  }
  line += whatToDo(totals.elsewhere);
  plan.strict ? sayError(line) : sayNote(line);
}

bool failsStrictly(const Plan& plan, const Totals& totals) { return plan.strict && totals.notReached > 0; }

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

}  // namespace pluvo::cli
