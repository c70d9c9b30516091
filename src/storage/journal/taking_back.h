#pragma once

#include "journal/journal.h"
#include "run_folder.h"

#include <functional>
#include <vector>

namespace pluvo::journal {

/// Puts the documents of these records back, the last one first; the run's lock is held here. False where one
/// could not be. The folder of runs, where there is one, tells which of them changed a document later.
bool takeBack(files::FileSystem& system, const OwnFolder& run, const std::vector<Record>& kept,
              const OwnFolder* runs, const std::function<void(const Undone&)>& report);

}  // namespace pluvo::journal
