#pragma once

#include "base/json.h"
#include "runs/outcome.h"

#include <string>

/// Outcomes for programs.
namespace pluvo::runs {

/// `"error":{"code":...,"message":...},"encoding":"UTF-8"`, null where there is none.
void addErrorAndEncoding(base::JsonObject& object, const Outcome& outcome);
/// `"elsewhere":{...},"unreached":{...},"unreadable":[...]`, each where there is something to tell.
void addNotReached(base::JsonObject& object, const elsewhere::Elsewhere& found);
/// `"notLookedInto":["pictures"]`, where there is something.
void addNotLookedInto(base::JsonObject& object, const elsewhere::Elsewhere& found);
/// `{"files":3,...,"not_reached":1}`: what became of all documents.
std::string summaryInJson(const Totals& totals);

}  // namespace pluvo::runs
