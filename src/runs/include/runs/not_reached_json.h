#pragma once

#include "runs/outcome.h"

#include <string>

/// What requests did not reach, for programs: members that end an object, each where there is something to
/// tell.
namespace pluvo::runs {

/// `,"elsewhere":{...},"unreached":{...},"unreadable":[...]`
std::string notReachedInJson(const elsewhere::Elsewhere& found);
/// `,"notLookedInto":["pictures"]`
std::string notLookedIntoInJson(const elsewhere::Elsewhere& found);
/// `,"elsewhere":{...},"unreached":{...},"not_reached":3`: counts of all documents, and of how many.
std::string notReachedInJson(const Totals& totals);

}  // namespace pluvo::runs
