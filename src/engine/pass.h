#pragma once

#include "counts.h"
#include "engine/pass_observer.h"
#include "errors/context.h"
#include "forms/message_boxes.h"
#include "locator.h"
#include "operations.h"
#include "prepared_search.h"
#include "text_behind.h"

namespace pluvo::engine {

/// A whole pass over the active document in one call: each block located, confirmed where that is asked for,
/// operated on. The search resumes behind the block as it stands then, so that what was put there is not
/// found again.
class Pass {
 public:
  Pass(errors::Context& context, word::Application& application, forms::MessageBoxes& boxes,
       const PreparedSearch& search, WorkingRanges& ranges, Counts& counts)
      : context_(context),
        application_(application),
        boxes_(boxes),
        search_(search),
        ranges_(ranges),
        counts_(counts) {}

  /// Throws the faults that no step reports.
  void run(bool confirmEach, PassObserver& observer);

 private:
  enum class Decision { operate, skip, stop };

  Decision confirm();
  void resumeBehindOperation(const Operations& operations, const TextBehind& behind, Locator& locator);

  errors::Context& context_;
  word::Application& application_;
  forms::MessageBoxes& boxes_;
  const PreparedSearch& search_;
  WorkingRanges& ranges_;
  Counts& counts_;
};

/// The current block as an observer is shown it.
Block blockOf(const PreparedSearch& search, const WorkingRanges& ranges, const Operations& operations);

}  // namespace pluvo::engine
