#pragma once

#include "errors/problem.h"

#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <string_view>

namespace pluvo::errors {

/// Numbers of the faults that this program raises itself. A word processor adds its own (see word/faults.h).
enum FaultNumber : std::int32_t {
  kOverflow = 6,  ///< a value does not fit the width it is stored in
  kOutOfMemory = 7,
  kSubscriptOutOfRange = 9,
  kTypeMismatch = 13,  ///< a text that should be a number is not one
  kInputPastEnd = 62,  ///< a file ends before the value that is read
  kPathFileAccess = 75,
  kPathNotFound = 76,
  kObjectNotSet = 91,      ///< a member of an object that is not there
  kInvalidUseOfNull = 94,  ///< a choice that was not made, where one is needed
};

/// A run-time fault: what the reporter prints. Thrown by value, caught in the procedure it reaches, reported
/// once, and never let across a public boundary of the engine or the dialog.
struct Fault : std::exception {
  Fault() = default;
  /// Copies the texts here, so that the place that throws holds no string of its own.
  Fault(std::int32_t faultNumber, std::u16string_view faultDescription,
        std::u16string_view faultSource = u"PLUVO", std::u16string_view faultHelpFile = {},
        std::int32_t faultHelpContext = 0);

  std::int32_t number = 0;
  std::u16string description;
  std::u16string source;
  std::u16string helpFile;
  std::int32_t helpContext = 0;

  /// The problem of a document that it stands for, where that is known; a word processor tells only the
  /// number.
  std::optional<Problem> problem;

  /// The same with its problem.
  Fault with(Problem known) &&;

  const char* what() const noexcept override { return "pluvo::errors::Fault"; }
};

/// The faults with a number of their own, worded in one place.
Fault overflow();
Fault outOfMemory();
Fault subscriptOutOfRange();
Fault typeMismatch();
Fault invalidUseOfNull();
Fault objectNotSet();

}  // namespace pluvo::errors
