#include "not_reached.h"

#include "base/shown.h"
#include "document/place_names.h"
#include "elsewhere/words.h"
#include "printer.h"

#include <algorithm>
#include <string_view>

namespace pluvo::cli {
namespace {

/// Whether --in would have some request work there.
bool canBeAsked(const Plan& plan, document::Place place) {
  const word::StoryKinds kinds = document::kindsIn(place);
  return std::ranges::any_of(plan.requests,
                             [kinds](auto& request) { return (request.stories & kinds) != kinds; });
}

std::string whatToDo(const Plan& plan, const elsewhere::Elsewhere& found) {
  const auto occurs = [&](formats::Unreached kind) {
    return found.unreached.at(static_cast<std::size_t>(kind)) > 0;
  };
  std::string names;
  std::int64_t rest =
      occurrencesIn(found) + static_cast<std::int64_t>(found.damaged.size()) + blocksIn(found);
  for (const document::Place place : document::kAllPlaces) {
    const std::int64_t blocks = found.stories.at(static_cast<std::size_t>(place));
    if (blocks == 0 || !canBeAsked(plan, place)) continue;
    names += (names.empty() ? "" : ",") + std::string(keyOf(place));
    rest -= blocks;
  }
  std::string advice = " See to it in a word processor.";
  if (!names.empty()) {
    advice =
        " Requests work there with " + (plan.isOfSavedRequests ? "in = \"" + names + "\"" : "--in " + names);
    advice += rest == 0 ? "." : "; see to the rest in a word processor.";
  }
  if (occurs(formats::Unreached::fieldCodes)) advice += " Field codes are reached with --field-codes.";
  if (occurs(formats::Unreached::fieldResults)) advice += " Field results are reached without --field-codes.";
  return advice;
}

}  // namespace

void sayNotReached(const Plan& plan, const runs::Totals& totals) {
  if (totals.notReached == 0 || (!plan.strict && (plan.quiet || plan.json))) return;
  std::string line = elsewhere::inWords(totals.elsewhere) + ".";
  if (plan.selection.several()) {
    line = "Not reached in " + base::counted(totals.notReached, "document") + ": " + line +
           (plan.report ? " The report says in which." : " To see in which, add --report FILE.");
  } else {
    line = plan.selection.paths.front() + ": not reached: " + line;
    if (const std::string damage = damageInWords(totals.elsewhere); !damage.empty()) line += " " + damage;
  }
  line += whatToDo(plan, totals.elsewhere);
  plan.strict ? sayError(line) : sayNote(line);
}

bool failsStrictly(const Plan& plan, const runs::Totals& totals) {
  return plan.strict && totals.notReached > 0;
}

}  // namespace pluvo::cli
