#pragma once

#include "errors/fault.h"

#include <optional>
#include <utility>

namespace pluvo::multifile {

/// Does the work; the fault that stopped it, if one did.
template <class Work>
std::optional<errors::Fault> faultOf(Work&& work) {
  try {
    std::forward<Work>(work)();
    return std::nullopt;
  } catch (const errors::Fault& fault) {
    return fault;
  }
}

}  // namespace pluvo::multifile
