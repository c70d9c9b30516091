#pragma once

#include "code_pages/coding.h"
#include "errors/document_error.h"

#include <optional>
#include <string>
#include <string_view>

namespace pluvo::code_pages {

/// An encoding, and the name by which it is told.
struct Named {
  Coding coding;
  std::string name;
};

/// For any name it goes by. Throws errors::DocumentError (encoding) for one that is unknown or has shift
/// states (ISO-2022, HZ, UTF-7 and the like): the sentence says so.
Named encodingOf(std::string_view name);
/// The same; nothing where it would throw.
std::optional<Named> knownEncoding(std::string_view name);

/// The message on an encoding with shift states.
errors::DocumentError statefulEncoding(std::string_view name);

inline Named utf8Named() { return {{Encoding::utf8, nullptr}, "UTF-8"}; }
inline Named windows1252Named() { return {{Encoding::windows1252, nullptr}, "Windows-1252"}; }

}  // namespace pluvo::code_pages
