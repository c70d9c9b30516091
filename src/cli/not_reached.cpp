#include "not_reached.h"

#include "base/shown.h"
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
  line += whatToDo(totals.elsewhere);
  plan.strict ? sayError(line) : sayNote(line);
}

bool failsStrictly(const Plan& plan, const runs::Totals& totals) {
  return plan.strict && totals.notReached > 0;
}

}  // namespace pluvo::cli
