#pragma once

#include "document/document.h"

#include <functional>
#include <string_view>
#include <vector>

namespace pluvo::document {

/// What of a document is not as it was meant, where what was written is read anew: a noun for a sentence;
/// empty where story by story and layer by layer all is the same. Asks nothing that the writer went by. Calls
/// pause every few megabytes.
std::string_view differenceOf(const Document::Snapshot& meant, const std::vector<Content>& readBack,
                              const std::function<void()>& pause);

}  // namespace pluvo::document
