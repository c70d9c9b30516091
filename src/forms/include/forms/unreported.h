#pragma once

#include "errors/context.h"
#include "forms/message_boxes.h"

#include <optional>
#include <utility>

namespace pluvo::forms {

/// For renderers: passes on the user's actions. A fault arrives here only where the reporter itself failed,
/// perhaps for want of memory. The user is told all the same, and the dialog goes on.
template <class Doing>
void userDid(MessageBoxes& boxes, Doing&& doing) {
  errors::Fault fault;
  try {
    std::forward<Doing>(doing)();
    return;
  } catch (...) {
    fault = errors::faultInFlight();
  }
  boxes.show(fault.description, Buttons::ok, std::nullopt);
}

}  // namespace pluvo::forms
