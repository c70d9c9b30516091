#pragma once

#include "errors/fault.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace pluvo::errors {

class clsErrorLogging;

/// What the procedures of one engine (or one dialog) share. There are no globals, so that documents can be
/// worked on in parallel, each with its own engine and context.
struct Context {
  Context() = default;
  Context(const Context&) = delete;  // the reporter looks at the current fault where it lies
  Context& operator=(const Context&) = delete;

  /// The tag of the procedure entered last; every procedure stores its own on entry.
  std::u16string locationTag;
  /// Opens every report.
  std::u16string stopPreface;
  /// One line a pass; see the statistics report.
  std::u16string runSummary;
  /// The run-time's current fault, which the reporter prints.
  Fault currentFault;
  std::shared_ptr<clsErrorLogging> reporter;

  /// Hands the fault to the reporter with the stop preface and the current tag. Without a reporter the fault
  /// travels on.
  void report(const Fault& fault);
};

/// The exception being handled, as a fault. To be called in a catch block only.
Fault faultInFlight();

/// A location tag. The length of a literal is known before the program runs; g++ would count it at every
/// call.
struct Tag {
  template <std::size_t kSize>
  constexpr Tag(const char16_t (&literal)[kSize]) : text(literal, kSize - 1) {}
  constexpr Tag(std::u16string_view tag) : text(tag) {}

  std::u16string_view text;
};

/// The frame every procedure works in: stores the tag, does the work, and on a fault reports it once and
/// returns the default result. A fault inside the reporter itself travels on.
template <class Work>
auto guarded(Context& context, Tag tag, Work&& work) -> decltype(work()) {
  context.locationTag = tag.text;
  std::optional<Fault> fault;
  try {
    return std::forward<Work>(work)();
  } catch (...) {
    fault = faultInFlight();
  }
  context.report(*fault);
  return decltype(work())();
}

/// The same for a procedure whose caller must know how it went: the fault, already reported.
template <class Work>
std::optional<Fault> attempt(Context& context, Tag tag, Work&& work) {
  context.locationTag = tag.text;
  std::optional<Fault> fault;
  try {
    std::forward<Work>(work)();
    return std::nullopt;
  } catch (...) {
    fault = faultInFlight();
  }
  context.report(*fault);
  return fault;
}

}  // namespace pluvo::errors
