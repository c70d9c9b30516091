#pragma once

#include "files/file_system.h"
#include "plan.h"
#include "runs/run.h"

#include <string>

namespace pluvo::cli {

/// Status with which the program ends.
enum ExitStatus : int { kFound = 0, kNoneFound = 1, kFailed = 2 };

/// The message on a run that cannot begin.
std::string sentenceFor(const runs::CannotBegin& refused);

/// Works on every document of the plan, several at the same time, and prints what came of each in their
/// order. A document that fails is reported and the rest go on. After an interrupt the documents at hand are
/// finished and the others left in a list. Throws UsageError before anything is opened, std::system_error
/// when standard output takes no more.
ExitStatus run(Plan plan, files::FileSystem& system);

}  // namespace pluvo::cli
