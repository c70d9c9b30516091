#pragma once

#include "formats/registry.h"

namespace pluvo::store {

formats::Registry knownFormats();

}  // namespace pluvo::store
