#include "errors/fault.h"

#include <utility>

namespace pluvo::errors {

Fault::Fault(std::int32_t faultNumber, std::u16string faultDescription, std::u16string faultSource,
             std::u16string faultHelpFile, std::int32_t faultHelpContext)
    : number(faultNumber),
      description(std::move(faultDescription)),
      source(std::move(faultSource)),
      helpFile(std::move(faultHelpFile)),
      helpContext(faultHelpContext) {}

Fault overflow() { return {kOverflow, u"Overflow"}; }
Fault outOfMemory() { return {kOutOfMemory, u"Out of memory"}; }
Fault subscriptOutOfRange() { return {kSubscriptOutOfRange, u"Subscript out of range"}; }
Fault invalidUseOfNull() { return {kInvalidUseOfNull, u"Invalid use of Null"}; }
Fault typeMismatch() { return {kTypeMismatch, u"Type mismatch"}; }
Fault objectNotSet() { return {kObjectNotSet, u"Object variable or With block variable not set"}; }

}  // namespace pluvo::errors
