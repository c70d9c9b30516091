#pragma once

#include "outcome.h"
#include "plan.h"

#include <string>

namespace pluvo::cli {

/// Whether anybody hears of what requests did not reach; looking for it costs.
bool tellsNotReached(const Plan& plan);

/// Says what the requests of a run did not reach, and what to do about it: with --strict as an error, which
/// also a quiet run says, and otherwise to people alone. The path is that of a single document.
void sayNotReached(const Plan& plan, const Totals& totals, const std::string& path);

/// Whether that makes the run a failure.
bool failsStrictly(const Plan& plan, const Totals& totals);

// The same for programs, as the members that end an object, each where there is something to tell.
/// `,"elsewhere":{...},"unreached":{...},"unreadable":[...]`
std::string notReachedInJson(const elsewhere::Elsewhere& found);
/// `,"notLookedInto":["pictures"]`
std::string notLookedIntoInJson(const elsewhere::Elsewhere& found);
/// `,"elsewhere":{...},"unreached":{...},"not_reached":3`: counts of all documents, and of how many.
std::string notReachedInJson(const Totals& totals);

}  // namespace pluvo::cli
