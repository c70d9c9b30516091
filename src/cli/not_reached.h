#pragma once

#include "plan.h"
#include "runs/outcome.h"

namespace pluvo::cli {

/// Says what the requests of a run did not reach, and what to do about it. With --strict it is an error,
/// which also a quiet run prints.
void sayNotReached(const Plan& plan, const runs::Totals& totals);

/// Whether that makes the run a failure.
bool failsStrictly(const Plan& plan, const runs::Totals& totals);

}  // namespace pluvo::cli
