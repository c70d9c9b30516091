#pragma once

#include "automation.h"

namespace pluvo::stand_in {

/// Puts the arguments of a call, which come last first and may be named, into the places of the parameters.
/// Throws Failure.
Arguments take(const std::vector<Parameter>& parameters, const DISPPARAMS& given);

}  // namespace pluvo::stand_in
