#pragma once

#include "base/json.h"
#include "base/json_value.h"
#include "runs/outcome.h"
#include "runs/slice_report.h"

#include <optional>
#include <string>

/// Outcomes for programs.
namespace pluvo::runs {

/// `"found":3,...,"error":{"code":...,"message":...},"encoding":"UTF-8"`, null where there is none; then
/// `"elsewhere":{...},"unreached":{...},"unreadable":[...],"notLookedInto":["pictures"]`, each where there is
/// something to tell.
void addResult(base::JsonObject& object, const Outcome& outcome);
/// All that became of a document: an object. What few documents have stands at its end, where there is any.
std::string inJson(const Outcome& outcome);
/// The same read back. Nothing where the text is no such object.
std::optional<Outcome> outcomeFrom(const base::JsonValue& json);

/// `{"run":"NAME","number":3,"of":8,"stage":"ended",...}`
std::string inJson(const SliceTold& slice);

/// `{"files":3,...,"not_reached":1}`: what became of all documents.
base::JsonObject summaryInJson(const Totals& totals);

}  // namespace pluvo::runs
