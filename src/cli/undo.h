#pragma once

#include "files/file_system.h"
#include "parse.h"
#include "run.h"

namespace pluvo::cli {

/// pluvo undo [RUN], pluvo undo --list: takes a run back, the last one where none is named, or shows which
/// there are. Throws UsageError.
ExitStatus undo(const TypedCommandLine& line, files::FileSystem& system);

}  // namespace pluvo::cli
