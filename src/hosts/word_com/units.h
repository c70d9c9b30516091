#pragma once

#include "dispatch.h"
#include "word/enums.h"

#include <cstdint>

namespace pluvo::word_com {

/// How many units of its kind an object of Word says it has.
std::int32_t countOfUnits(const Object& object, word::WdUnits unit);

}  // namespace pluvo::word_com
