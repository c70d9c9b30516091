#pragma once

#include "document/document.h"

#include <functional>
#include <string_view>
#include <vector>

namespace pluvo::document {

/// Compares a document with its new version, read anew. Gives the first thing that differs, as a noun for a
/// sentence. Empty where text, highlight and structure are the same in every story that has not gone with its
/// anchors. Visibility is not compared: text that joins another paragraph may be shown or hidden by that
/// paragraph's style. Asks nothing that the writer went by. Calls pause every few megabytes, from several
/// threads where the text is large.
std::string_view differenceOf(const Document::Snapshot& meant, const std::vector<Content>& readBack,
                              const std::function<void()>& pause);

}  // namespace pluvo::document
