#include "errors/numbers.h"

#include "errors/fault.h"

#include <limits>

namespace pluvo::errors {

std::int16_t narrow(std::int32_t value) {
  if (value < std::numeric_limits<std::int16_t>::min() || value > std::numeric_limits<std::int16_t>::max())
    throw overflow();
  return static_cast<std::int16_t>(value);
}

}  // namespace pluvo::errors
