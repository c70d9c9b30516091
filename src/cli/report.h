#pragma once

#include "files/file_system.h"
#include "parse.h"
#include "run.h"

namespace pluvo::cli {

/// pluvo report RUN|FILE...: tells what became of slices. Throws UsageError.
ExitStatus report(const TypedCommandLine& line, files::FileSystem& system);

}  // namespace pluvo::cli
