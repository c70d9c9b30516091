#include "not_reached.h"

#include "base/shown.h"
#include "document/place_names.h"
#include "elsewhere/words.h"
#include "printer.h"

#include <algorithm>
#include <string_view>

namespace pluvo::cli {
namespace {

/// The places with blocks that some request was not asked to work in, as --in has them.
std::string placesToAsk(const Plan& plan, const elsewhere::Elsewhere& found) {
  std::string places;
  for (const document::Place place : document::kAllPlaces) {
    const auto isAsked = [&](auto& request) {
      return (request.stories & document::kindsIn(place)) == document::kindsIn(place);
    };
    if (found.stories.at(static_cast<std::size_t>(place)) == 0 || std::ranges::all_of(plan.requests, isAsked))
      continue;
    places += (places.empty() ? "" : ",") + std::string(keyOf(place));
  }
  return places;
}

std::string whatToDo(const Plan& plan, const elsewhere::Elsewhere& found) {
  const auto occurs = [&](formats::Unreached kind) {
    return found.unreached.at(static_cast<std::size_t>(kind)) > 0;
  };
  const std::string places = placesToAsk(plan, found);
  std::string advice = " See to it in a word processor.";
  if (!places.empty()) {
    advice = " Requests work there with " +
             (plan.isOfSavedRequests ? "in = \"" + places + "\"" : "--in " + places);
    const bool isAll = occurrencesIn(found) == 0 && found.damaged.empty();
    advice += isAll ? "." : "; see to the rest in a word processor.";
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
