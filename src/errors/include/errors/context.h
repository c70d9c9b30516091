#pragma once

#include "errors/fault.h"
#include "errors/guarded.h"

#include <memory>
#include <string>

namespace pluvo::errors {

class clsErrorLogging;

/// The state that procedures of one dialog share. There are no globals, so that documents can be worked on in
/// parallel, each with its own context.
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

  void enter(Tag tag) { locationTag = tag.text; }
  /// Hands the fault to the reporter with the stop preface and the current tag. Without a reporter the fault
  /// travels on.
  void report(const Fault& fault);
};

}  // namespace pluvo::errors
