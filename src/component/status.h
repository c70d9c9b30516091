#pragma once

#include "errors/fault.h"

#include <windows.h>

#include <utility>

namespace pluvo::component {

/// The fault in flight as a status, with its texts left on the thread for the caller. To be called in a catch
/// block only.
HRESULT statusInFlight() noexcept;

/// The work's status; of a fault, its own.
template <class Work>
HRESULT guardedStatus(Work&& work) noexcept {
  try {
    return std::forward<Work>(work)();
  } catch (...) {
    return statusInFlight();
  }
}

}  // namespace pluvo::component
