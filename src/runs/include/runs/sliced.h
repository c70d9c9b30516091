#pragma once

#include "runs/plan.h"

#include <string>

namespace pluvo::runs {

/// The work of a run, as a text: its requests as they are saved, and the options that make a
/// difference to a document. Runs of one text are runs of one request.
std::string requestTextOf(const Plan& plan);

/// SHA-256 of it, in hexadecimal digits.
std::string requestDigestOf(const Plan& plan);
std::string requestDigestOf(const std::string& requestText);

/// Whether a run may have this name.
bool isRunName(const std::string& name);

}  // namespace pluvo::runs
