#pragma once

#include "engine/request.h"
#include "memory/document.h"

#include <cstdint>
#include <memory>

namespace pluvo::elsewhere {

/// How many blocks of the request a document has: a pass of the engine that changes nothing. Throws what
/// stops a pass.
std::int64_t countBlocks(const std::shared_ptr<memory::MemoryDocument>& document,
                         const engine::Request& request);

}  // namespace pluvo::elsewhere
