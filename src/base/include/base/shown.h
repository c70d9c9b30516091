#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace pluvo::base {

/// Whether a terminal acts on it, or shows what follows in another order: C0, C1 and bidirectional controls.
bool isControl(char32_t code);

/// Bytes as a message or a list may show them to a person. Controls become ?, bytes that are no UTF-8 become
/// U+FFFD. Whatever comes from a name, a document, an argument or a file goes through this.
std::string shown(std::string_view bytes);

/// "1 block", "2 blocks"
std::string counted(std::int64_t count, std::string_view noun);

}  // namespace pluvo::base
