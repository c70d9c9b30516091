#pragma once

#include "engine/pass_result.h"
#include "forms/form.h"
#include "forms/message_boxes.h"

#include <optional>
#include <string>

namespace pluvo::dialog {

/// The pass's line of the run summary; with the document's name in a multi-file run.
std::u16string summaryLine(const engine::PassResult& done, const std::optional<std::u16string>& documentName);

/// Tells the user what the pass did: the statistics, or hints where no block was found. The statistics set
/// cancel to whether the user wants a multi-file run ended.
void showSummary(const engine::PassResult& done, forms::MessageBoxes& boxes, forms::FormHost& host,
                 bool& cancel);

}  // namespace pluvo::dialog
