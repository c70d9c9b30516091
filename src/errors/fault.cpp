#include "errors/fault.h"

#include <utility>

namespace pluvo::errors {

Fault::Fault(std::int32_t faultNumber, std::u16string_view faultDescription, std::u16string_view faultSource,
             std::u16string_view faultHelpFile, std::int32_t faultHelpContext)
    : number(faultNumber),
      description(faultDescription),
      source(faultSource),
      helpFile(faultHelpFile),
      helpContext(faultHelpContext) {}

Fault Fault::with(Problem known) && {
  problem = known;
  return std::move(*this);
}

Fault overflow() { return {kOverflow, u"Overflow"}; }
Fault outOfMemory() { return Fault(kOutOfMemory, u"Out of memory").with(Problem::tooLarge); }
Fault subscriptOutOfRange() { return {kSubscriptOutOfRange, u"Subscript out of range"}; }
Fault invalidUseOfNull() { return {kInvalidUseOfNull, u"Invalid use of Null"}; }
Fault typeMismatch() { return {kTypeMismatch, u"Type mismatch"}; }
Fault objectNotSet() { return {kObjectNotSet, u"Object variable or With block variable not set"}; }

}  // namespace pluvo::errors
