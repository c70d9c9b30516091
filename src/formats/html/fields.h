#pragma once

#include "walker.h"

#include <cstddef>
#include <vector>

namespace pluvo::formats::html {

/// Where marks of fields begin that do not belong together: a field begins, is separated and ends outside all
/// tables or in the same one. In ascending order.
std::vector<std::size_t> strayFieldMarks(const Page& page, const Part& part);

}  // namespace pluvo::formats::html
