#pragma once

#include "journal/named_runs.h"
#include "run_folder.h"

#include <optional>
#include <string>
#include <string_view>

namespace pluvo::journal {

/// "3-of-8"
std::string sliceName(std::uint32_t number, std::uint32_t slices);

/// The facts that slices share, from the run's folder; nothing where there are none.
std::optional<NamedRequest> requestIn(files::FileSystem& system, const OwnFolder& run,
                                      const std::string& name);
/// Puts it there, unless another program came first.
void putRequest(files::FileSystem& system, const OwnFolder& run, const NamedRequest& request);

/// The name of this machine, or "unknown".
std::string thisMachine();

std::string textOf(files::FileSystem& system, const files::Place& place);
void writeText(files::FileSystem& system, files::Handle file, std::string_view text);

}  // namespace pluvo::journal
