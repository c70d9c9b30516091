#include "errors/context.h"

#include "base/utf.h"
#include "errors/clsErrorLogging.h"

#include <new>

namespace pluvo::errors {

void Context::report(const Fault& fault) {
  currentFault = fault;
  if (!reporter) throw fault;
  reporter->ProcessErrors(stopPreface + locationTag);
}

Fault faultInFlight() {
  constexpr std::int32_t kInternalError = 51;
  try {
    throw;
  } catch (const Fault& fault) {
    return fault;
  } catch (const std::bad_alloc&) {
    return outOfMemory();
  } catch (const std::exception& error) {
    return {kInternalError, base::utf16(error.what())};
  } catch (...) {
    return {kInternalError, u"Internal error"};
  }
}

}  // namespace pluvo::errors
