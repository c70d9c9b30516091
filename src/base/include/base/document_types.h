#pragma once

#include <array>
#include <string_view>

namespace pluvo::base {

/// The endings that names of documents have, in whatever program they were written.
inline constexpr std::array<std::string_view, 10> kDocumentTypes = {"doc",  "docx", "docm", "dot", "dotx",
                                                                    "dotm", "txt",  "rtf",  "htm", "html"};

}  // namespace pluvo::base
