#pragma once

#include "asking.h"
#include "document_run.h"

#include <optional>

namespace pluvo::runs {

/// Lifts the protection of a document, where it has one, by one of the plan's passwords, else by one that is
/// answered. Where none does, what to tell. The budgets of the document and of the run, which its jobs share,
/// end the trying of the plan's.
std::optional<Failure> liftProtection(const store::StoredDocument& stored, const Surroundings& around,
                                      Asking& asking);

}  // namespace pluvo::runs
