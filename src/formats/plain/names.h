#pragma once

#include "encoding.h"
#include "errors/document_error.h"

#include <optional>
#include <string>
#include <string_view>

namespace pluvo::plain {

/// An encoding, and the name by which it is told.
struct Named {
  Coding coding;
  std::string name;
};

/// See plain/encodings.h. Throws errors::DocumentError (encoding).
Named encodingOf(std::string_view name);
/// The same; nothing where it would throw.
std::optional<Named> knownEncoding(std::string_view name);

/// What is said of an encoding that changes what bytes mean on the way.
errors::DocumentError statefulEncoding(std::string_view name);

inline Named utf8Named() { return {{Encoding::utf8, nullptr}, "UTF-8"}; }
inline Named windows1252Named() { return {{Encoding::windows1252, nullptr}, "Windows-1252"}; }

}  // namespace pluvo::plain
