#pragma once

#include "files/saving.h"
#include "run_under_way.h"

#include <memory>

namespace pluvo::journal {

/// Keeps the original of a document that is being replaced, and records it. Throws std::system_error. The
/// run's mutex is held here; the result must not outlive the run.
std::unique_ptr<files::Keeping> keepOriginal(RunUnderWay& run, const files::Replacement& replacement);

/// Records that the original is not kept: there is no room for it, or the run keeps none.
std::unique_ptr<files::Keeping> leaveOriginal(RunUnderWay& run, const files::Replacement& replacement);

}  // namespace pluvo::journal
