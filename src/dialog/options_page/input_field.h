#pragma once

#include <optional>
#include <string>

namespace pluvo::dialog {

/// The first field of a file of fields between commas, without the double-quote marks around it: it ends at a
/// comma or with the line. Nothing where the file cannot be opened. Throws Fault kInputPastEnd where it is
/// empty, kPathFileAccess where it cannot be read.
std::optional<std::u16string> firstInputField(const std::u16string& path);

}  // namespace pluvo::dialog
