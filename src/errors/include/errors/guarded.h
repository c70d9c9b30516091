#pragma once

#include "errors/fault.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

namespace pluvo::errors {

/// The exception being handled, as a fault. To be called in a catch block only.
Fault faultInFlight();

/// Reports that fault. A call, so that procedures that mostly go well keep no place for a fault.
template <class Trail>
[[gnu::noinline, gnu::cold]] Fault reportInFlight(Trail& trail) {
  Fault fault = faultInFlight();
  trail.report(fault);
  return fault;
}

/// A location tag. The length of a literal is known before the program runs; g++ would count it at every
/// call.
struct Tag {
  template <std::size_t kSize>
  constexpr Tag(const char16_t (&literal)[kSize]) : text(literal, kSize - 1) {}
  constexpr Tag(std::u16string_view tag) : text(tag) {}

  std::u16string_view text;
};

/// The frame every procedure works in: enters the tag, does the work, and on a fault reports it once and
/// returns the default result. What reporting throws travels on.
///
/// A Trail has enter(Tag) and report(const Fault&), such as a Context.
template <class Trail, class Work>
auto guarded(Trail& trail, Tag tag, Work&& work) -> decltype(work()) {
  trail.enter(tag);
  try {
    return std::forward<Work>(work)();
  } catch (...) {
    reportInFlight(trail);
  }
  return decltype(work())();
}

/// The same for a procedure that goes on where it left off: under the tag entered last.
template <class Trail, class Work>
void guardedOn(Trail& trail, Work&& work) {
  try {
    return std::forward<Work>(work)();
  } catch (...) {
    reportInFlight(trail);
  }
}

/// The same for a procedure whose caller must know how it went: the fault, already reported.
template <class Trail, class Work>
std::optional<Fault> faultOf(Trail& trail, Tag tag, Work&& work) {
  trail.enter(tag);
  try {
    std::forward<Work>(work)();
    return std::nullopt;
  } catch (...) {
    return reportInFlight(trail);
  }
}

}  // namespace pluvo::errors
